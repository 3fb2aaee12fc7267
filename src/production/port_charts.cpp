// Query and charts of a port.
#include "production/port_charts.h"

#include "queries/switch_hist45.h"
#include "render/chart_blocks.h"

namespace quillon {

std::string PortCharts(ProductionContext& context, std::int32_t recNo, std::int32_t ifIndex,
                       const std::string& device, const std::string& port) {
  SqHist45SwitchControl(context.queries, BackgroundSlot, recNo, ifIndex, device, port, true);
  std::string charts;
  PortChartBlocks(context.render, BackgroundSlot, charts);
  return charts;
}

}  // namespace quillon
