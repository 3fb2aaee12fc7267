// The search for switch ports by device and port.
#pragma once

#include <string>
#include <string_view>

#include "platform/listener.h"
#include "queries/query_context.h"

namespace quillon {

// Whose text the patterns of a search are: bytes of the pages' charset out of a request, or names
// out of the database, which are found although the charset cannot show them.
enum class PatternSource { kRequest, kDatabase };

// Fills SwitchTableRep of the slot, 1 to 20, with the first ports that match both patterns, as many
// as it has rows, in the order of the engine. A device pattern of digits, dots and stars with at
// least one dot is looked for in the addresses, any other in the names; the port pattern in
// `portColumn`, "IfDescr" or "IfAlias". In the patterns "*" stands for any run of characters; an
// empty one becomes "*" in the caller's variable. They stand in the selects as they came, so a
// quote in them makes the search fail. The caller has set each recNo of the slot to 0.
// A failure is reported; what was filled until then stays.
void SqlSearchDevicePort(QueryContext& context, ConnectionId slot, std::string& devPattern,
                         std::string& portPattern, std::string_view portColumn,
                         PatternSource source = PatternSource::kRequest);

}  // namespace quillon
