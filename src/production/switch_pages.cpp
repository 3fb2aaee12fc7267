// Lists with the charts of their ports, and summaries.
#include "production/switch_pages.h"

#include <cstdint>

#include "production/page_build.h"
#include "production/page_count.h"
#include "production/port_charts.h"
#include "queries/port_name.h"
#include "queries/switch_lists.h"
#include "queries/switch_summary.h"
#include "queries/switch_top10.h"
#include "render/chart_blocks.h"
#include "render/chart_names.h"
#include "render/switch_tables.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

void CreatePortCharts(ProductionContext& context, std::int32_t recNo, std::int32_t ifIndex) {
  context.loop.DelayMs(kChartPauseMs);
  std::string device;
  std::string port;
  SqlPortNameLookup(context.queries, recNo, ifIndex, device, port);
  StorePage(context, PortChartsFile(recNo, ifIndex),
            PortCharts(context, recNo, ifIndex, device, port));
}

// The kind of ports that the name of a summary tells; null for another name.
const SwitchPortKind* KindOfSummary(const std::string& file) {
  for (const SwitchPortKind& kind : kSwitchPortKinds) {
    if (file.find(kind.summaryReport) != std::string::npos) return &kind;
  }
  return nullptr;
}

}  // namespace

void AutoCreateTop10_Switch(ProductionContext& context, std::string_view kind,
                            std::string_view field, const std::string& file) {
  ErrorExit(context.diagnostics, kPageModule, "AutoCreateTop10_Switch", [&] {
    const SwitchPortKind& ports = kind == kAccessPorts.name ? kAccessPorts : kTrunkPorts;
    SwitchTableRecord& record = context.records.SwitchTableRep[BackgroundSlot];
    EmptyRows(record);
    SqlTop10SwitchStats(context.queries, BackgroundSlot, field, ports.isTrunk);
    std::string page = PageOfReport(context, ports.top10Report);
    TableHeader_Switch(context.render, BackgroundSlot, page);
    TableData_Switch(context.render, BackgroundSlot, kind, file, page);
    StorePage(context, file, page);

    // Row by row out of the record: a request with the number of the slot may fill it anew in a
    // pause.
    for (int n = 1; n <= record.rows.size(); ++n) {
      const SwitchTableRow& row = record.rows[n];
      if (row.recNo != 0) CreatePortCharts(context, row.recNo, row.ifIndex);
    }
  });
}

void AutoCreateSum_Switch(ProductionContext& context, const std::string& file) {
  ErrorExit(context.diagnostics, kPageModule, "AutoCreateSum_Switch", [&] {
    const SwitchPortKind* ports = KindOfSummary(file);
    if (ports != nullptr) SqHist45dSwitchSum(context.queries, BackgroundSlot, ports->isTrunk);
    std::string page =
        PageOfReport(context, ports != nullptr ? ports->summaryReport : std::string_view());
    SwitchSummaryBlocks(context.render, BackgroundSlot, page);
    StorePage(context, file, page);
  });
}

}  // namespace quillon
