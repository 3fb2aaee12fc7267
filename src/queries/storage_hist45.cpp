// The histories of memory and of one disk: the steps of the port history, on disk day tables.
#include "queries/storage_hist45.h"

#include <fmt/format.h>

#include <array>

#include "platform/number_text.h"
#include "platform/text_encoding.h"
#include "queries/chart_dump.h"
#include "queries/chart_texts.h"
#include "queries/device_days.h"
#include "queries/page_field.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

constexpr ControlTable kControl = {"Disk_HistCtrl", "StorageDate"};
constexpr int kMemoryWord = 75;

std::array<Panel*, 2> PanelsOf(Hist45MemRecord& record) {
  return {&record.Physical, &record.Virtual};
}

std::array<Panel*, 1> PanelsOf(Hist45DiskRecord& record) {
  return {&record.Disk};
}

// The sizes of one storage on one day; dashes where the day table does not have it.
void FetchStorage(const QueryContext& context, Connection& history, const std::string& histTable,
                  std::int32_t recNo, std::string_view storDescr, int position, Panel& panel) {
  const Recordset storage = history.Execute(fmt::format(
      "SELECT * FROM {} WHERE RecNo={} AND StorDescr='{}'", histTable, recNo, storDescr));
  if (storage.Eof()) return SetMissing(panel, position);
  panel.Left[position] = PageField(context, storage, "TotalM");
  panel.Right[position] = PageField(context, storage, "UsedM");
  SetSmallestBars(panel, position);
}

// As SetBars, but a used size that is no number sets the bar of the whole size: its own keeps the
// height that the fetch gave it. Wanted as it is.
void SetPhysicalBars(Panel& panel, int position) {
  panel.LeftBar[position] = BarHeight(panel.Left[position], panel.YaxisMax);
  const std::string& used = panel.Right[position];
  (IsNumeric(used) ? panel.RightBar : panel.LeftBar)[position] = BarHeight(used, panel.YaxisMax);
}

// The lines that stand first in the dumps of both. `device` is the name with the number.
void DumpHead(const QueryContext& context, std::int64_t startTick, std::string_view device,
              std::string_view storage, DebugDump& dump) {
  dump.ExecTime(context.clock.TickMs() - startTick);
  dump.Field("Device(recNo)", device);
  dump.Field("Storage", storage);
}

void WriteDump(const QueryContext& context, std::int64_t startTick, std::string_view device,
               const Hist45MemRecord& record) {
  DebugDump dump(context.settings, kDeviceDump);
  DumpHead(context, startTick, device, "Memory", dump);
  DumpPanelHead(dump, "Physical", record.Physical);
  DumpPanelHead(dump, "Virtual", record.Virtual);
  dump.Field("Device", record.Device);
  DumpDays(context, record.StorageDate, &record.HistTable, {&record.Physical, &record.Virtual},
           dump);
  dump.Write();
}

void WriteDump(const QueryContext& context, std::int64_t startTick, std::string_view device,
               std::string_view storage, const Hist45DiskRecord& record) {
  DebugDump dump(context.settings, kDeviceDump);
  DumpHead(context, startTick, device, storage, dump);
  DumpPanelHead(dump, "Disk", record.Disk);
  dump.Field("Device", record.Device);
  DumpDays(context, record.StorageDate, &record.HistTable, {&record.Disk}, dump);
  dump.Write();
}

}  // namespace

void SqlHist45MemControl(QueryContext& context, ConnectionId slot, std::int32_t recNo,
                         const std::string& devName, bool background) {
  ErrorExit(context.diagnostics, kQueryModule, "SqlHist45MemControl", [&] {
    const std::int64_t startTick = context.clock.TickMs();
    const std::string device = PageText(devName, context.settings.CharSet);
    Hist45MemRecord& record = context.records.Hist45MemRep[slot];
    {
      ReusedConnection history(context.settings.ConnHistory);
      FindDayTables(context, history, kControl, record.StorageDate, record.HistTable);
      record.Device = device;
      record.Storage = context.LangWord(kMemoryWord);
      BeginPanel(context, kPhysicalWords, record.Physical);
      BeginPanel(context, kVirtualWords, record.Virtual);
      FetchDays(context, record.HistTable, PanelsOf(record), background, [&](int position) {
        SqlHist45MemStats(context, history, slot, position, record.HistTable[position], recNo);
      });
    }
    RoundAxisTops(context, PanelsOf(record));
    for (int position = 1; position <= record.StorageDate.kSize; ++position) {
      SetPhysicalBars(record.Physical, position);
      SetBars(record.Virtual, position);
    }
    LabelVolumeAxes(context, PanelsOf(record));
    ShowStorages(context, PanelsOf(record));
    if (!context.settings.DebugMode) return;
    WriteDump(context, startTick, fmt::format("{} ({})", device, recNo), record);
  });
}

void SqlHist45MemStats(QueryContext& context, ReusedConnection& history, ConnectionId slot,
                       int position, const std::string& histTable, std::int32_t recNo) {
  ErrorExit(context.diagnostics, kQueryModule, "SqlHist45MemStats", [&] {
    auto connection = history.Take();
    Hist45MemRecord& record = context.records.Hist45MemRep[slot];
    FetchStorage(context, *connection, histTable, recNo, "Physical", position, record.Physical);
    FetchStorage(context, *connection, histTable, recNo, "Virtual", position, record.Virtual);
    history.Keep(std::move(connection));
  });
}

void SqlHist45DiskControl(QueryContext& context, ConnectionId slot, std::int32_t recNo,
                          const std::string& devName, const std::string& storDescr,
                          bool background) {
  ErrorExit(context.diagnostics, kQueryModule, "SqlHist45DiskControl", [&] {
    const std::int64_t startTick = context.clock.TickMs();
    const std::string device = PageText(devName, context.settings.CharSet);
    const std::string storage = PageText(storDescr, context.settings.CharSet);
    Hist45DiskRecord& record = context.records.Hist45DiskRep[slot];
    {
      ReusedConnection history(context.settings.ConnHistory);
      FindDayTables(context, history, kControl, record.StorageDate, record.HistTable);
      record.Device = device;
      record.Storage = storage;
      BeginPanel(context, kDiskWords, record.Disk);
      FetchDays(context, record.HistTable, PanelsOf(record), background, [&](int position) {
        SqlHist45DiskStats(context, history, slot, position, record.HistTable[position], recNo,
                           storDescr);
      });
    }
    RoundAxisTops(context, PanelsOf(record));
    SetBars(PanelsOf(record));
    LabelVolumeAxes(context, PanelsOf(record));
    ShowStorages(context, PanelsOf(record));
    if (!context.settings.DebugMode) return;
    WriteDump(context, startTick, fmt::format("{} ({})", device, recNo), storage, record);
  });
}

void SqlHist45DiskStats(QueryContext& context, ReusedConnection& history, ConnectionId slot,
                        int position, const std::string& histTable, std::int32_t recNo,
                        const std::string& storDescr) {
  ErrorExit(context.diagnostics, kQueryModule, "SqlHist45DiskStats", [&] {
    auto connection = history.Take();
    FetchStorage(context, *connection, histTable, recNo, storDescr, position,
                 context.records.Hist45DiskRep[slot].Disk);
    history.Keep(std::move(connection));
  });
}

}  // namespace quillon
