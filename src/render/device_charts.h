// The 45-day charts of one port, of a server's memory and of one disk: for each kind a header band
// and a chart body. They print what the records hold and compute nothing. `slot` is 1 to 20; a
// failure is reported and leaves what was appended before it.
#pragma once

#include <string>
#include <string_view>

#include "platform/listener.h"
#include "render/render_context.h"

namespace quillon {

// Append the band: device, port or storage, the title, the legend in the colours of the bars.
void ChartHeader45_Switch(const RenderContext& context, ConnectionId slot, std::string_view title,
                          std::string_view leftWord, std::string_view rightWord,
                          std::string& chartHtml);
void ChartHeader45_Mem(const RenderContext& context, ConnectionId slot, std::string_view title,
                       std::string_view leftWord, std::string_view rightWord,
                       std::string& chartHtml);
void ChartHeader45_Disk(const RenderContext& context, ConnectionId slot, std::string_view title,
                        std::string_view leftWord, std::string_view rightWord,
                        std::string& chartHtml);

// Append the chart of a kind: "volume", "broadcast" or "errors". Another kind prints an empty
// chart.
void ChartData45_Switch(const RenderContext& context, ConnectionId slot, std::string_view chartKind,
                        std::string& chartHtml);
// "physical" or "virtual".
void ChartData45_Mem(const RenderContext& context, ConnectionId slot, std::string_view chartKind,
                     std::string& chartHtml);
void ChartData45_Disk(const RenderContext& context, ConnectionId slot, std::string& chartHtml);

}  // namespace quillon
