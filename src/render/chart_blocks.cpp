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
constexpr Block kMemoryBlocks[] = {
    {"physical", kPhysicalWords},
    {"virtual", kVirtualWords},
};
constexpr Block kSwitchSummaryBlocks[] = {
    {"volume", kVolumeWords},
    {"broadcast", kBroadcastWords},
    {"errors", kErrorsWords},
    {"ports", kPortsWords},
};

// A chart of all storages of a class tells the class beside its title.
struct DiskSummaryBlock {
  Block block;
  int reportWord;
};

constexpr DiskSummaryBlock kDiskSummaryBlocks[] = {
    {{"physical", kPhysicalWords}, kPhysicalReport},
    {{"virtual", kVirtualWords}, kVirtualReport},
    {{"windows", kWindowsWords}, kWindowsReport},
    {{"unix", kUnixWords}, kUnixReport},
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

void MemoryChartBlocks(const RenderContext& context, ConnectionId slot, std::string& chartHtml) {
  for (const Block& block : kMemoryBlocks) {
    ChartHeader45_Mem(context, slot, context.LangWord(block.words.head),
                      context.LangWord(block.words.left), context.LangWord(block.words.right),
                      chartHtml);
    ChartData45_Mem(context, slot, block.kind, chartHtml);
  }
}

void DiskChartBlock(const RenderContext& context, ConnectionId slot, std::string& chartHtml) {
  ChartHeader45_Disk(context, slot, context.LangWord(kDiskWords.head),
                     context.LangWord(kDiskWords.left), context.LangWord(kDiskWords.right),
                     chartHtml);
  ChartData45_Disk(context, slot, chartHtml);
}

void SwitchSummaryBlocks(const RenderContext& context, ConnectionId slot, std::string& pageHtml) {
  for (const Block& block : kSwitchSummaryBlocks) {
    ChartHeader45d_SwitchSum(context, slot, context.LangWord(block.words.head),
                             context.LangWord(block.words.left),
                             context.LangWord(block.words.right), pageHtml);
    ChartData45d_SwitchSum(context, slot, block.kind, pageHtml);
  }
}

void DiskSummaryBlocks(const RenderContext& context, ConnectionId slot, std::string& pageHtml) {
  for (const auto& [block, reportWord] : kDiskSummaryBlocks) {
    ChartHeader45d_DiskSum(context, slot, context.LangWord(block.words.head),
                           context.LangWord(reportWord), context.LangWord(block.words.left),
                           context.LangWord(block.words.right), pageHtml);
    ChartData45d_DiskSum(context, slot, block.kind, pageHtml);
  }
}

}  // namespace quillon
