// The worst switch ports of the newest day by one metric: ten, or as many as the record has rows.
#pragma once

#include <string>
#include <string_view>

#include "platform/listener.h"
#include "queries/query_context.h"

namespace quillon {

// Fills SwitchTableRep of `slot`, 1 to 20, from Reports.mdb. `field` is the column to
// sort by, largest first: "InHCOctetsMb24H", "OutHCOctetsMb24H", "InBroadCastPpm24H",
// "InMultiCastPpm24H", "InErrorsTot24H" or "OutErrorsTot24H". The caller has set each
// recNo of the slot to 0: only rows that are found are written. A failure is reported
// and leaves what was filled. No event runs inside but in the wait of such a report.
void SqlTop10SwitchStats(QueryContext& context, ConnectionId slot, std::string_view field,
                         bool isTrunk);

}  // namespace quillon
