// The summary of the ports of a kind: read the sums, then axes, bars and texts.
#include "queries/switch_summary.h"

#include <fmt/format.h>

#include <array>

#include "platform/number_text.h"
#include "queries/chart_dump.h"
#include "queries/chart_texts.h"
#include "queries/daily_sums.h"
#include "queries/page_field.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

constexpr int kAccessReport = 34;
constexpr int kTrunkReport = 35;

constexpr std::string_view kRatePattern = "### ### ##0";

// Errors of all ports are enough for a rate a second, whose pattern is wider in the right series;
// wanted as it is.
constexpr CountRate kPacketRates[] = {{60, kPerSecond, kRatePattern}};
constexpr CountRate kErrorRatesLeft[] = {{86400, kPerSecond, kRatePattern},
                                         {1440, kPerMinute, kRatePattern}};
constexpr CountRate kErrorRatesRight[] = {{86400, kPerSecond, "### ### ### ##0"},
                                          {1440, kPerMinute, kRatePattern}};
constexpr CountUnits kPackets = {kPerMinute, kPacketRates};
constexpr CountUnits kErrorsLeft = {kPerDay, kErrorRatesLeft};
constexpr CountUnits kErrorsRight = {kPerDay, kErrorRatesRight};

// The columns of a panel's two series.
struct Series {
  Panel Hist45dSwitchRecord::*panel;
  std::string_view left;
  std::string_view right;
};

constexpr Series kSeries[] = {
    {&Hist45dSwitchRecord::Volume, "InHCOctetsMb24H", "OutHCOctetsMb24H"},
    {&Hist45dSwitchRecord::Broadcast, "InBroadCastPpm24H", "InMultiCastPpm24H"},
    {&Hist45dSwitchRecord::Errors, "InErrorsTot24H", "OutErrorsTot24H"},
    {&Hist45dSwitchRecord::Ports, "Ports", "PortsInTraffic"},
};

std::array<Panel*, 4> PanelsOf(Hist45dSwitchRecord& record) {
  return {&record.Volume, &record.Broadcast, &record.Errors, &record.Ports};
}

// All figures come first: a null among them leaves the bars of the day as they were.
void FillDay(const QueryContext& context, const Recordset* sums, int position,
             Hist45dSwitchRecord& record) {
  if (sums == nullptr) {
    for (Panel* panel : PanelsOf(record)) SetMissing(*panel, position);
    return;
  }
  for (const Series& series : kSeries) {
    (record.*series.panel).Left[position] = PageField(context, *sums, series.left);
    (record.*series.panel).Right[position] = PageField(context, *sums, series.right);
  }
  for (Panel* panel : PanelsOf(record)) SetSmallestBars(*panel, position);
}

void BeginReport(const QueryContext& context, bool isTrunk, Hist45dSwitchRecord& record) {
  record.Report = context.LangWord(isTrunk ? kTrunkReport : kAccessReport);
  BeginPanel(context, kVolumeWords, record.Volume);
  BeginPanel(context, kBroadcastWords, record.Broadcast);
  BeginPanel(context, kErrorsWords, record.Errors);
  BeginPanel(context, kPortsWords, record.Ports);
}

// Behind the bars, which need the axis tops as numbers.
void LabelAxes(const QueryContext& context, Hist45dSwitchRecord& record) {
  LabelVolumeAxes(context, std::array{&record.Volume});
  LabelCountAxes(context, std::array{&record.Broadcast, &record.Errors, &record.Ports});
}

std::string Grouped(const std::string& number) {
  return Trimmed(DigitPattern(number, "### ### ##0"));
}

// The number of ports, and of those in traffic with their share. The share is of the number as it
// is shown; of no ports at all it is of one.
void ShowPorts(Panel& ports, int position) {
  std::string& all = ports.Left[position];
  if (IsNumeric(all)) all = Grouped(all);
  std::string& inTraffic = ports.Right[position];
  const auto number = ParseNumber(inTraffic);
  if (!number) return;
  const double whole = LeadingNumber(all);
  const double share = whole <= 0 ? *number * 100 : *number / whole * 100;
  inTraffic = Grouped(inTraffic) + "  (" + Trimmed(DigitPattern(share, "#0")) + "%)";
}

void ShowFigures(const QueryContext& context, Hist45dSwitchRecord& record) {
  for (int position = 1; position <= record.TrafficDate.kSize; ++position) {
    ShowVolume(context, kRatePattern, record.Volume.Left[position]);
    ShowVolume(context, kRatePattern, record.Volume.Right[position]);
    ShowCount(context, kPackets, record.Broadcast.Left[position]);
    std::string& multicast = record.Broadcast.Right[position];
    if (multicast == "-1") multicast = "-";
    ShowCount(context, kPackets, multicast);
    ShowCount(context, kErrorsLeft, record.Errors.Left[position]);
    ShowCount(context, kErrorsRight, record.Errors.Right[position]);
    ShowPorts(record.Ports, position);
  }
}

void WriteDump(const QueryContext& context, std::int64_t startTick,
               const Hist45dSwitchRecord& record) {
  DebugDump dump(context.settings, kSummaryDump);
  dump.ExecTime(context.clock.TickMs() - startTick);
  dump.Field("Report", record.Report);
  DumpPanelHead(dump, "Volume", record.Volume);
  DumpPanelHead(dump, "Broadcast", record.Broadcast);
  DumpPanelHead(dump, "Errors", record.Errors);
  DumpPanelHead(dump, "Ports", record.Ports);
  DumpDays(context, record.TrafficDate, nullptr,
           {&record.Volume, &record.Broadcast, &record.Errors, &record.Ports}, dump);
  dump.Write();
}

}  // namespace

void SqHist45dSwitchSum(QueryContext& context, ConnectionId slot, bool isTrunk) {
  ErrorExit(context.diagnostics, kQueryModule, "SqHist45dSwitchSum", [&] {
    const std::int64_t startTick = context.clock.TickMs();
    Hist45dSwitchRecord& record = context.records.Hist45dSwitchRep[slot];
    const std::string select =
        fmt::format("SELECT * FROM VLAN_HistSum WHERE IsTrunk={} ORDER BY TrafficDate DESC",
                    isTrunk ? "True" : "False");
    ReadDailySums(
        context, select, "TrafficDate", record.TrafficDate,
        [&](int position, const Recordset* sums) { FillDay(context, sums, position, record); });
    BeginReport(context, isTrunk, record);
    RaiseAxisTopsAndWait(context, PanelsOf(record));
    RoundAxisTops(context, PanelsOf(record));
    SetBars(PanelsOf(record));
    LabelAxes(context, record);
    ShowFigures(context, record);
    if (context.settings.DebugMode) WriteDump(context, startTick, record);
  });
}

}  // namespace quillon
