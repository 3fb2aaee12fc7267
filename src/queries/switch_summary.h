// The last 45 days of all access ports or all trunk ports together.
#pragma once

#include "platform/listener.h"
#include "queries/query_context.h"

namespace quillon {

// Fills Hist45dSwitchRep of `slot`, 1 to 20, from the daily sums in History.mdb. All 45 positions
// are written. Waits 10 ms a day: events run inside. A failure is reported and leaves what was
// filled.
void SqHist45dSwitchSum(QueryContext& context, ConnectionId slot, bool isTrunk);

}  // namespace quillon
