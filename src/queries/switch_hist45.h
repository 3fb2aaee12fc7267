// The last 45 days of one switch port.
#pragma once

#include <cstdint>
#include <string>

#include "platform/listener.h"
#include "queries/query_context.h"
#include "queries/reused_connection.h"

namespace quillon {

// Fills Hist45SwitchRep of `slot`, 1 to 20, from History.mdb: days, axes, bars and texts. The names
// are database text. Positions for which the control table has no rows left keep what an earlier
// report of the slot left there. Waits 10 ms a day, with `background` 20 ms more for each day that
// has a table: events run inside, and where one of them fills the same slot, the two reports mix.
// A failure is reported and leaves what was filled.
void SqHist45SwitchControl(QueryContext& context, ConnectionId slot, std::int32_t recNo,
                           std::int32_t ifIndex, const std::string& devName,
                           const std::string& portName, bool background);

// One day of the port: six values and six bars at `position`, 1 to 45, from `histTable`; dashes
// where the table has no such port. A failure is reported and leaves the position half filled.
void SqlHist45SwitchStats(QueryContext& context, ReusedConnection& history, ConnectionId slot,
                          int position, const std::string& histTable, std::int32_t recNo,
                          std::int32_t ifIndex);

}  // namespace quillon
