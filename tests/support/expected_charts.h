// The charts of a report about ports, put together out of the rendering procedures, which have
// tests of their own. The records of the slot say what they show.
#pragma once

#include <string>
#include <string_view>

#include "platform/listener.h"
#include "render/device_charts.h"
#include "render/render_context.h"
#include "render/summary_charts.h"

namespace quillon {

// Numbers of the words over a chart, and its kind.
struct ExpectedChart {
  int title;
  int left;
  int right;
  std::string_view kind;
};

// The charts of a port, below each other.
inline std::string ExpectedPortCharts(const RenderContext& render, ConnectionId slot) {
  constexpr ExpectedChart kCharts[] = {
      {12, 22, 23, "volume"}, {13, 24, 25, "broadcast"}, {14, 26, 27, "errors"}};
  std::string charts;
  for (const ExpectedChart& chart : kCharts) {
    ChartHeader45_Switch(render, slot, render.LangWord(chart.title), render.LangWord(chart.left),
                         render.LangWord(chart.right), charts);
    ChartData45_Switch(render, slot, chart.kind, charts);
  }
  return charts;
}

// The charts of all ports of a kind, below each other.
inline std::string ExpectedSummaryCharts(const RenderContext& render, ConnectionId slot) {
  constexpr ExpectedChart kCharts[] = {{12, 22, 23, "volume"},
                                       {13, 24, 25, "broadcast"},
                                       {14, 26, 27, "errors"},
                                       {48, 49, 50, "ports"}};
  std::string charts;
  for (const ExpectedChart& chart : kCharts) {
    ChartHeader45d_SwitchSum(render, slot, render.LangWord(chart.title),
                             render.LangWord(chart.left), render.LangWord(chart.right), charts);
    ChartData45d_SwitchSum(render, slot, chart.kind, charts);
  }
  return charts;
}

}  // namespace quillon
