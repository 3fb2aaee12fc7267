// The switch port tables: header band, top-10 table, search result. The figures come
// as finished texts out of SwitchTableRep; nothing is computed here.
#pragma once

#include <string>
#include <string_view>

#include "platform/listener.h"
#include "render/render_context.h"

namespace quillon {

// Appends the band that tells the report, its criteria and its period. `slot` is 1 to 20.
void TableHeader_Switch(const RenderContext& context, ConnectionId slot, std::string& pageHtml);

// Appends the top-10 table of the slot, with heads that link to the six lists of the
// same port kind, "access" or "trunk". `pageName` is the name under which the finished
// page is stored: it rides in the links to the ports' charts.
void TableData_Switch(const RenderContext& context, ConnectionId slot, std::string_view portKind,
                      std::string_view pageName, std::string& pageHtml);

// Appends the same table for a search result: its heads carry no links.
void TableDataSwitch_Search(const RenderContext& context, ConnectionId slot,
                            std::string_view pageName, std::string& pageHtml);

}  // namespace quillon
