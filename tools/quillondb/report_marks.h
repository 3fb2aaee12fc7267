// The marks that tell the service that the report of the day is finished.
#pragma once

#include <string>

#include "import/schema/sqlite_file.h"
#include "platform/date_time.h"

namespace quillon {

// The display pattern of dates in the settings of an installation.
std::string ReadDatumFormat(const std::string& directory);

// Sets LastReport to `now`, and ReportStart and ReportEnd to the period from yesterday's to
// today's report, each at 3 o'clock. A failure where General_Info has no row.
void WriteReportMarks(const SqliteFile& history, DateTime now, const std::string& datumFormat);

// The same for the installation in the directory.
void MarkReportDone(const std::string& directory, DateTime now);

}  // namespace quillon
