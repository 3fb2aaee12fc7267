// All per-connection records, slots 1 to 20. They live as long as the process and are
// never cleared as a whole: a field that a report does not reach keeps what an earlier
// report of the slot left.
#pragma once

#include "queries/records/disk_table.h"
#include "queries/records/switch_table.h"

namespace quillon {

struct ReportRecords {
  Slots<SwitchTableRecord> SwitchTableRep;
  Slots<DiskTableRecord> DiskTableRep;
};

}  // namespace quillon
