// The first step of every request.
#pragma once

#include "platform/listener.h"
#include "queries/records/report_records.h"

namespace quillon {

// Empties the tables of the slot, 1 to 20: a row whose recNo stays 0 is not printed.
void EmptyTables(ReportRecords& records, ConnectionId slot);

}  // namespace quillon
