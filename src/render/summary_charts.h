// The 45-day summary charts: all ports of a kind, all storages. The bands name no device; the rest
// is as in device_charts.h.
#pragma once

#include <string>
#include <string_view>

#include "platform/listener.h"
#include "render/render_context.h"

namespace quillon {

void ChartHeader45d_SwitchSum(const RenderContext& context, ConnectionId slot,
                              std::string_view title, std::string_view leftWord,
                              std::string_view rightWord, std::string& pageHtml);
// The report's word comes from the caller: the slot has no effect.
void ChartHeader45d_DiskSum(const RenderContext& context, ConnectionId slot, std::string_view title,
                            std::string_view reportWord, std::string_view leftWord,
                            std::string_view rightWord, std::string& pageHtml);

// "volume", "broadcast", "errors" or "ports".
void ChartData45d_SwitchSum(const RenderContext& context, ConnectionId slot,
                            std::string_view chartKind, std::string& pageHtml);
// "physical", "virtual", "windows" or "unix".
void ChartData45d_DiskSum(const RenderContext& context, ConnectionId slot,
                          std::string_view chartKind, std::string& pageHtml);

}  // namespace quillon
