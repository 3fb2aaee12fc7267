// Which charts a report has, in page order.
#include "render/chart_blocks.h"

#include <string_view>

#include "queries/records/panel_words.h"
#include "render/device_charts.h"
#include "render/summary_charts.h"

namespace quillon {
namespace {

struct Block {
  std::string_view kind;
  PanelWords words;
};

constexpr Block kPortBlocks[] = {
    {"volume", kVolumeWords},
    {"broadcast", kBroadcastWords},
    {"errors", kErrorsWords},
};
constexpr Block kSwitchSummaryBlocks[] = {
    {"volume", kVolumeWords},
    {"broadcast", kBroadcastWords},
    {"errors", kErrorsWords},
    {"ports", kPortsWords},
};

}  // namespace

void PortChartBlocks(const RenderContext& context, ConnectionId slot, std::string& chartHtml) {
  for (const Block& block : kPortBlocks) {
    ChartHeader45_Switch(context, slot, context.LangWord(block.words.head),
                         context.LangWord(block.words.left), context.LangWord(block.words.right),
                         chartHtml);
    ChartData45_Switch(context, slot, block.kind, chartHtml);
  }
}

void SwitchSummaryBlocks(const RenderContext& context, ConnectionId slot, std::string& pageHtml) {
  for (const Block& block : kSwitchSummaryBlocks) {
    ChartHeader45d_SwitchSum(context, slot, context.LangWord(block.words.head),
                             context.LangWord(block.words.left),
                             context.LangWord(block.words.right), pageHtml);
    ChartData45d_SwitchSum(context, slot, block.kind, pageHtml);
  }
}

}  // namespace quillon
