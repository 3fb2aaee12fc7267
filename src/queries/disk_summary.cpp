// The summary of all storages: read the sums, then axes, bars and texts, four panels alike.
#include "queries/disk_summary.h"

#include <array>

#include "queries/chart_dump.h"
#include "queries/chart_texts.h"
#include "queries/daily_sums.h"
#include "queries/page_field.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

// A kind of storage: its panel, the word of its report, the words of the panel, its columns.
struct Kind {
  std::string_view name;
  Panel Hist45dDiskRecord::*panel;
  int report;
  PanelWords words;
  std::string_view total;
  std::string_view used;
  std::string_view number;
};

constexpr Kind kKinds[] = {
    {"Physical", &Hist45dDiskRecord::Physical, kPhysicalReport, kPhysicalWords, "TotalMPhysical",
     "UsedMPhysical", "NumPhysical"},
    {"Virtual", &Hist45dDiskRecord::Virtual, kVirtualReport, kVirtualWords, "TotalMVirtual",
     "UsedMVirtual", "NumVirtual"},
    {"Windows", &Hist45dDiskRecord::Windows, kWindowsReport, kWindowsWords, "TotalMWindows",
     "UsedMWindows", "NumWindows"},
    {"Unix", &Hist45dDiskRecord::Unix, kUnixReport, kUnixWords, "TotalMUnix", "UsedMUnix",
     "NumUnix"},
};

std::array<Panel*, std::size(kKinds)> PanelsOf(Hist45dDiskRecord& record) {
  return {&record.Physical, &record.Virtual, &record.Windows, &record.Unix};
}

// All figures come first: a null among them leaves the bars of the day as they were.
void FillDay(const QueryContext& context, const Recordset* sums, int position,
             Hist45dDiskRecord& record) {
  if (sums == nullptr) {
    for (Panel* panel : PanelsOf(record)) {
      SetMissing(*panel, position);
      panel->Num[position] = "-";
    }
    return;
  }
  for (const Kind& kind : kKinds) {
    Panel& panel = record.*kind.panel;
    panel.Left[position] = PageField(context, *sums, kind.total);
    panel.Right[position] = PageField(context, *sums, kind.used);
    panel.Num[position] = PageField(context, *sums, kind.number);
  }
  for (Panel* panel : PanelsOf(record)) SetSmallestBars(*panel, position);
}

void BeginReport(const QueryContext& context, Hist45dDiskRecord& record) {
  for (const Kind& kind : kKinds) {
    (record.*kind.panel).Report = context.LangWord(kind.report);
    BeginPanel(context, kind.words, record.*kind.panel);
  }
}

void WriteDump(const QueryContext& context, std::int64_t startTick,
               const Hist45dDiskRecord& record) {
  DebugDump dump(context.settings, kSummaryDump);
  dump.ExecTime(context.clock.TickMs() - startTick);
  for (const Kind& kind : kKinds) {
    dump.Field(std::string(kind.name) + "Report", (record.*kind.panel).Report);
    DumpPanelHead(dump, kind.name, record.*kind.panel);
  }
  DumpDays(context, record.StorageDate, nullptr,
           {&record.Physical, &record.Virtual, &record.Windows, &record.Unix}, dump);
  dump.Write();
}

}  // namespace

void SqlHist45dDiskSum(QueryContext& context, ConnectionId slot) {
  ErrorExit(context.diagnostics, kQueryModule, "SqlHist45dDiskSum", [&] {
    const std::int64_t startTick = context.clock.TickMs();
    Hist45dDiskRecord& record = context.records.Hist45dDiskRep[slot];
    ReadDailySums(context, "SELECT * FROM Disk_HistSum ORDER BY StorageDate DESC", "StorageDate",
                  record.StorageDate, [&](int position, const Recordset* sums) {
                    FillDay(context, sums, position, record);
                  });
    BeginReport(context, record);
    RaiseAxisTopsAndWait(context, PanelsOf(record));
    RoundAxisTops(context, PanelsOf(record));
    SetBars(PanelsOf(record));
    LabelVolumeAxes(context, PanelsOf(record));  // behind the bars, which need numbers
    ShowStorages(context, PanelsOf(record));
    if (context.settings.DebugMode) WriteDump(context, startTick, record);
  });
}

}  // namespace quillon
