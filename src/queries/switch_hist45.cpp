// The port history: find the days' tables, fetch the days, then axes, bars and texts.
#include "queries/switch_hist45.h"

#include <fmt/format.h>

#include <array>

#include "platform/text_encoding.h"
#include "queries/chart_dump.h"
#include "queries/chart_texts.h"
#include "queries/device_days.h"
#include "queries/page_field.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

constexpr ControlTable kControl = {"VLAN_HistCtrl", "TrafficDate"};
constexpr std::string_view kRatePattern = "### ##0";

// One column of a day table and where its figure goes.
struct Series {
  std::string_view column;
  Panel Hist45SwitchRecord::*panel;
  Days<std::string> Panel::*figures;
  Days<std::string> Panel::*bars;
  bool minusOneIsMissing;  // the product's mark of a figure that it does not have
};

constexpr Series kSeries[] = {
    {"inHCOctetsMb24H", &Hist45SwitchRecord::Volume, &Panel::Left, &Panel::LeftBar, true},
    {"outHCOctetsMb24H", &Hist45SwitchRecord::Volume, &Panel::Right, &Panel::RightBar, true},
    {"inBroadCastPpm24H", &Hist45SwitchRecord::Broadcast, &Panel::Left, &Panel::LeftBar, false},
    {"inMultiCastPpm24H", &Hist45SwitchRecord::Broadcast, &Panel::Right, &Panel::RightBar, true},
    {"inErrorsTot24H", &Hist45SwitchRecord::Errors, &Panel::Left, &Panel::LeftBar, false},
    {"outErrorsTot24H", &Hist45SwitchRecord::Errors, &Panel::Right, &Panel::RightBar, false},
};

std::array<Panel*, 3> PanelsOf(Hist45SwitchRecord& record) {
  return {&record.Volume, &record.Broadcast, &record.Errors};
}

void BeginReport(const QueryContext& context, const std::string& device, const std::string& port,
                 Hist45SwitchRecord& record) {
  record.Device = device;
  record.Port = port;
  BeginPanel(context, kVolumeWords, record.Volume);
  BeginPanel(context, kBroadcastWords, record.Broadcast);
  BeginPanel(context, kErrorsWords, record.Errors);
}

// Behind the bars, which need the axis tops as numbers.
void LabelAxes(const QueryContext& context, Hist45SwitchRecord& record) {
  LabelVolumeAxes(context, std::array{&record.Volume});
  LabelCountAxes(context, std::array{&record.Broadcast, &record.Errors});
}

void ShowFigures(const QueryContext& context, Hist45SwitchRecord& record) {
  for (int position = 1; position <= record.TrafficDate.kSize; ++position) {
    ShowVolume(context, kRatePattern, record.Volume.Left[position]);
    ShowVolume(context, kRatePattern, record.Volume.Right[position]);
    ShowCount(context, kPortPackets, record.Broadcast.Left[position]);
    ShowCount(context, kPortPackets, record.Broadcast.Right[position]);
    ShowCount(context, kPortErrors, record.Errors.Left[position]);
    ShowCount(context, kPortErrors, record.Errors.Right[position]);
  }
}

void WriteDump(const QueryContext& context, std::int64_t startTick, const std::string& device,
               const std::string& port, const Hist45SwitchRecord& record) {
  DebugDump dump(context.settings, kDeviceDump);
  dump.ExecTime(context.clock.TickMs() - startTick);
  dump.Field("Device(recNo)", device);
  dump.Field("Port(ifIndex)", port);
  DumpPanelHead(dump, "Volume", record.Volume);
  DumpPanelHead(dump, "Broadcast", record.Broadcast);
  DumpPanelHead(dump, "Errors", record.Errors);
  dump.Field("Device", record.Device);
  dump.Field("Port", record.Port);
  DumpDays(context, record.TrafficDate, &record.HistTable,
           {&record.Volume, &record.Broadcast, &record.Errors}, dump);
  dump.Write();
}

}  // namespace

void SqHist45SwitchControl(QueryContext& context, ConnectionId slot, std::int32_t recNo,
                           std::int32_t ifIndex, const std::string& devName,
                           const std::string& portName, bool background) {
  ErrorExit(context.diagnostics, kQueryModule, "SqHist45SwitchControl", [&] {
    const std::int64_t startTick = context.clock.TickMs();
    const std::string device = PageText(devName, context.settings.CharSet);
    const std::string port = PageText(portName, context.settings.CharSet);
    Hist45SwitchRecord& record = context.records.Hist45SwitchRep[slot];
    {
      ReusedConnection history(context.settings.ConnHistory);
      FindDayTables(context, history, kControl, record.TrafficDate, record.HistTable);
      BeginReport(context, device, port, record);
      FetchDays(context, record.HistTable, PanelsOf(record), background, [&](int position) {
        SqlHist45SwitchStats(context, history, slot, position, record.HistTable[position], recNo,
                             ifIndex);
      });
    }
    RoundAxisTops(context, PanelsOf(record));
    SetBars(PanelsOf(record));
    LabelAxes(context, record);
    ShowFigures(context, record);
    if (!context.settings.DebugMode) return;
    WriteDump(context, startTick, fmt::format("{} ({})", device, recNo),
              fmt::format("{} ({})", port, ifIndex), record);
  });
}

void SqlHist45SwitchStats(QueryContext& context, ReusedConnection& history, ConnectionId slot,
                          int position, const std::string& histTable, std::int32_t recNo,
                          std::int32_t ifIndex) {
  ErrorExit(context.diagnostics, kQueryModule, "SqlHist45SwitchStats", [&] {
    auto connection = history.Take();
    Recordset port = connection->Execute(
        fmt::format("SELECT * FROM {} WHERE RecNo={} AND IfIndex={}", histTable, recNo, ifIndex));
    Hist45SwitchRecord& record = context.records.Hist45SwitchRep[slot];
    if (port.Eof()) {
      for (Panel* panel : PanelsOf(record)) SetMissing(*panel, position);
    } else {
      for (const Series& series : kSeries) {
        Panel& panel = record.*series.panel;
        const std::string figure = PageField(context, port, series.column);
        const bool missing = series.minusOneIsMissing && figure == "-1";
        (panel.*series.figures)[position] = missing ? "-" : figure;
        (panel.*series.bars)[position] = kSmallestBar;
      }
    }
    port.Close();
    history.Keep(std::move(connection));
  });
}

}  // namespace quillon
