// The walks over the servers and disks of the newest day table.
#include "production/storage_charts.h"

#include <fmt/format.h>

#include <cstdint>
#include <optional>
#include <string>

#include "platform/database.h"
#include "platform/text_encoding.h"
#include "production/page_build.h"
#include "production/page_count.h"
#include "queries/disk_table.h"
#include "queries/storage_hist45.h"
#include "render/chart_blocks.h"
#include "render/chart_names.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

// Hands over each row of a select on the newest day table, after a pause. The select holds no text
// of a request, and its table may have any size.
template <typename CreateChart>
void ForEachStorage(ProductionContext& context, std::string_view columns,
                    std::string_view condition, CreateChart&& createChart) {
  Connection history;
  history.Open(context.settings.ConnHistory);
  const std::optional<std::string> table = FindDiskTable(context.queries, history);
  if (!table) return;
  Recordset rows =
      history.Execute(fmt::format("SELECT {} FROM {}{} ORDER BY RecNo", columns, *table, condition),
                      SelectTime::kUnlimited);
  for (; !rows.Eof(); rows.MoveNext()) {
    context.loop.DelayMs(kChartPauseMs);
    createChart(rows);
  }
}

}  // namespace

void AutoCreateChDa45_Mem(ProductionContext& context) {
  ErrorExit(context.diagnostics, kPageModule, "AutoCreateChDa45_Mem", [&] {
    ForEachStorage(context, "DISTINCT RecNo, DevName", "", [&](const Recordset& server) {
      const std::int32_t recNo = server.Field("RecNo").AsLong();
      SqlHist45MemControl(context.queries, BackgroundSlot, recNo, server.Field("DevName").AsText(),
                          true);
      std::string charts;
      MemoryChartBlocks(context.render, BackgroundSlot, charts);
      StorePage(context, StorageChartsFile(recNo, kMemoryCharts), charts);
    });
  });
}

void AutoCreateChDa45_Disk(ProductionContext& context) {
  ErrorExit(context.diagnostics, kPageModule, "AutoCreateChDa45_Disk", [&] {
    ForEachStorage(context, "RecNo, DevName, StorDescr", kDisksAlone, [&](const Recordset& disk) {
      const std::int32_t recNo = disk.Field("RecNo").AsLong();
      const std::string storDescr = disk.Field("StorDescr").AsText();
      SqlHist45DiskControl(context.queries, BackgroundSlot, recNo, disk.Field("DevName").AsText(),
                           storDescr, true);
      std::string chart;
      DiskChartBlock(context.render, BackgroundSlot, chart);
      const std::string storage = StorageInNames(PageText(storDescr, context.settings.CharSet));
      StorePage(context, StorageChartsFile(recNo, storage), chart);
    });
  });
}

}  // namespace quillon
