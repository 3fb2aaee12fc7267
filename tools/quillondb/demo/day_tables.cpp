// The rows of one day, and the days that the rotations hold.
#include "quillondb/demo/day_tables.h"

#include <string>

#include "import/schema/databases.h"
#include "quillondb/demo/rotation.h"

namespace quillon {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::local_days;

constexpr const char* kNeverUsed = "2000-01-01 00:00:00";

void WriteSwitchDay(const SqliteFile& history, const std::string& table,
                    const std::vector<DemoPort>& ports, local_days today, int daysAgo) {
  SqliteStatement insert = history.Prepare(
      "INSERT INTO " + QuotedName(table) +
      " (RecNo, IfIndex, InErrorsTot24H, OutErrorsTot24H, InBroadCastPpm24H, InMultiCastPpm24H,"
      " InHCOctetsMb24H, OutHCOctetsMb24H, IsTrunk) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
  for (const DemoPort& port : ports) {
    if (!WasReported(port, daysAgo)) continue;
    const PortFigures figures = FiguresOf(port, today - days(daysAgo));
    insert.Run(port.recNo, port.ifIndex, figures.inErrors, figures.outErrors, figures.broadcastPpm,
               figures.multicastPpm, figures.inMb, figures.outMb, port.isTrunk);
  }
}

// The change of the used share since an earlier day. A day without an import gives 0, and a
// storage that was not there yet counts as having grown from nothing, as in the import.
std::int64_t Trend(const DemoStorage& storage, local_days today, int daysAgo, int period) {
  const int before = daysAgo + period;
  if (!ImportRan(before)) return 0;
  const std::int64_t now = FiguresOf(storage, today, daysAgo).usedPercent;
  if (!WasReported(storage, before)) return now;
  return now - FiguresOf(storage, today, before).usedPercent;
}

void WriteDiskDay(const SqliteFile& history, const std::string& table,
                  const std::vector<DemoStorage>& storages, local_days today, int daysAgo) {
  SqliteStatement insert = history.Prepare(
      "INSERT INTO " + QuotedName(table) +
      " (RecNo, DevName, StorDescr, Type, TotalM, UsedM, FreeM, UsedProc, Trend14d, Trend30d)"
      " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
  for (const DemoStorage& storage : storages) {
    if (!WasReported(storage, daysAgo)) continue;
    const StorageFigures figures = FiguresOf(storage, today, daysAgo);
    insert.Run(storage.recNo, storage.device, storage.name, TypeOf(storage),
               figures.freeM + figures.usedM, figures.usedM, figures.freeM, figures.usedPercent,
               Trend(storage, today, daysAgo, 14), Trend(storage, today, daysAgo, 30));
  }
}

// Stamps the control rows of one rotation and has each table that was used filled.
template <typename WriteDay>
void WriteRotation(const SqliteFile& history, const DayTableKind& kind, local_days today,
                   WriteDay writeDay) {
  SqliteStatement stamp =
      history.Prepare("UPDATE " + std::string(kind.controlTable) + " SET " +
                      std::string(kind.dateColumn) + " = ? WHERE HistTable = ?");
  for (const DayTableUse& use : ReplayRotation(DayTables(history, kind.controlTable))) {
    if (!use.importDaysAgo) {
      stamp.Run(kNeverUsed, use.table);
      continue;
    }
    stamp.Run(DateTimeText(ImportMoment(today, *use.importDaysAgo) - hours(23)), use.table);
    writeDay(use.table, *use.importDaysAgo);
  }
}

}  // namespace

void WriteDayTables(const SqliteFile& history, const std::vector<DemoPort>& ports,
                    const std::vector<DemoStorage>& storages, local_days today) {
  WriteRotation(history, kDayTableKinds[0], today, [&](const std::string& table, int daysAgo) {
    WriteSwitchDay(history, table, ports, today, daysAgo);
  });
  WriteRotation(history, kDayTableKinds[1], today, [&](const std::string& table, int daysAgo) {
    WriteDiskDay(history, table, storages, today, daysAgo);
  });
}

}  // namespace quillon
