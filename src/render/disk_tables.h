// The disk and memory tables: header band, top-10 table, search result. The figures come as
// finished texts out of DiskTableRep; nothing is computed here.
#pragma once

#include <string>
#include <string_view>

#include "platform/listener.h"
#include "render/render_context.h"

namespace quillon {

// Appends the band that tells the report, its criteria and its period. `slot` is 1 to 20.
void TableHeader_Disk(const RenderContext& context, ConnectionId slot, std::string& pageHtml);

// Appends the top-10 table of the slot, of the kind "physical", "virtual", "windows" or "unix".
// `sortOrder` is "ASC" or "DESC". `pageName`, disk-<kind>-top10-<field>-<asc or desc>.htm, tells
// the field that the table is sorted by, whose head turns the direction over, and rides in the
// links to the charts.
void TableData_Disk(const RenderContext& context, ConnectionId slot, std::string_view reportKind,
                    std::string_view sortOrder, std::string_view pageName, std::string& pageHtml);

// Appends the table of a search result: its heads carry no links, and disks and memories may stand
// side by side.
void TableData_DiskSearch(const RenderContext& context, ConnectionId slot, std::string& pageHtml);

}  // namespace quillon
