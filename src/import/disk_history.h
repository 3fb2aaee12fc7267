// The history of disks and memories: a rotation of day tables, and the sums of each day.
#pragma once

#include <string>

#include "import/import_context.h"

namespace quillon {

// As SwitchStatsToHist, on Disk_HistCtrl.
void DiskStatsToHist(ImportContext& context);

// Copies the rows of HostDiskInfo whose LastUpdate is of today into the day table, with class and
// total size in megabytes. A storage without a size is left out. A null size is a failure and
// leaves the rows before it; it is reported under the name with the table's behind it.
void DiskStatsCopyToHist_(ImportContext& context, const std::string& table);

// Deletes the rows of Disk_HistSum older than 1200 days, by the real clock.
void ClearDiskHistSum(ImportContext& context);

// Appends a row to Disk_HistSum: sizes and counts of each class in the table of the day (see
// service/report_day.h). Without that table there is no row. A count beyond 16 bits is a failure.
void DiskStatsSum(ImportContext& context);

}  // namespace quillon
