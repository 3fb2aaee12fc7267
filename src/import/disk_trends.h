// The trends of disks and memories over 14 and 30 days, from the history itself.
#pragma once

#include "import/import_context.h"

namespace quillon {

// Sets Trend14d and Trend30d in the table of the day (see service/report_day.h): UsedProc less what
// the table of 14 or 30 days earlier holds for the storage, in percent points. A storage that has
// no row there grew from nothing; a day without a table gives 0. The old value counts rounded to a
// whole percent, and one that cannot be read is that of the storage before. With DebugMode on,
// appends to \Debug\WebSqlFixTrend.txt what was compared.
void DiskFixTrendValues(ImportContext& context);

}  // namespace quillon
