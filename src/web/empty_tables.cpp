// Emptying table records.
#include "web/empty_tables.h"

namespace quillon {

void EmptyTables(ReportRecords& records, ConnectionId slot) {
  for (SwitchTableRow& row : records.SwitchTableRep[slot].rows) row.recNo = 0;
  for (DiskTableRow& row : records.DiskTableRep[slot].rows) row.recNo = 0;
}

}  // namespace quillon
