// The marks of the day: whether reports come, and whether they are imported.
#pragma once

#include <string>
#include <vector>

#include "import/schema/sqlite_file.h"
#include "platform/date_time.h"

namespace quillon {

// Appends a line where the last report is old or of a day to come, and where it should have been
// imported by now. A history that has seen no report at all is a new one, of which there is
// nothing to say. What cannot be read is found with the database.
void CheckMarks(const SqliteFile& history, DateTime now, std::vector<std::string>& findings);

}  // namespace quillon
