// The last 45 days of all storages together: physical and virtual memory, Windows and Unix disks.
#pragma once

#include "platform/listener.h"
#include "queries/query_context.h"

namespace quillon {

// Fills Hist45dDiskRep of `slot`, 1 to 20, from the daily sums in History.mdb. All 45 positions are
// written. Waits 10 ms a day: events run inside. A failure is reported and leaves what was filled.
void SqlHist45dDiskSum(QueryContext& context, ConnectionId slot);

}  // namespace quillon
