// The search for the port on which an address was last seen.
#pragma once

#include <string>

#include "platform/listener.h"
#include "queries/query_context.h"

namespace quillon {

// Fills SwitchTableRep of the slot, 1 to 20, with the ports of the addresses that match, those seen
// last first; of the newest 100 addresses, as many ports as it has rows. `value` is an IP address
// or a MAC address in one of its written forms, 00:11:22:33:44:55, 00-11-22-33-44-55,
// 0011.2233.4455 or pairs with blanks, bytes of the pages' charset, with "*" for any run of
// characters. In the caller's variable it becomes the form that was searched; an empty one becomes
// "*". The caller has set each recNo of the slot to 0. A failure is reported; what was filled until
// then stays.
void SqlSearchMacIp(QueryContext& context, ConnectionId slot, std::string& value);

}  // namespace quillon
