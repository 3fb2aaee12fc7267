// Differences against two earlier day tables.
#include "import/disk_trends.h"

#include <string>

#include "import/disk_trend_value.h"
#include "import/history_table.h"
#include "import/row_pauses.h"
#include "service/debug_dump.h"
#include "service/error_exit.h"
#include "service/report_day.h"

namespace quillon {
namespace {

constexpr std::chrono::days kShortSpan{14};
constexpr std::chrono::days kLongSpan{30};
constexpr std::int16_t kRowPauseMs = 50;  // each row costs two selects

// A day that is looked for in the rotation.
struct WantedTable {
  DateTime day;
  std::string table;
  std::string dateText;  // "" where the day was not found

  bool IsFound() const { return !dateText.empty(); }
};

struct TrendTables {
  WantedTable ofDay;
  WantedTable before14d;
  WantedTable before30d;
};

// The last of two rows of a day wins: the walk goes on.
TrendTables FindTables(ImportContext& context, DateTime now) {
  const DateTime day = HistoryDay(now);
  TrendTables tables{{day, {}, {}}, {day - kShortSpan, {}, {}}, {day - kLongSpan, {}, {}}};
  HistoryTable history(context, "Disk_HistCtrl");
  Recordset& control = history.rows;
  for (; !control.Eof(); control.MoveNext()) {
    const Value date = control.Field("StorageDate");
    for (WantedTable* wanted : {&tables.ofDay, &tables.before14d, &tables.before30d}) {
      if (!date.IsOfDay(wanted->day)) continue;
      wanted->table = control.Field("HistTable").AsText();
      wanted->dateText = DayText(wanted->day);
    }
  }
  return tables;
}

// One of the two trends.
class Trend {
 public:
  Trend(std::string_view field, const WantedTable& before) : field_(field), before_(before) {}

  // `old` is what was read last, whichever trend it was for.
  void Set(TrendReading& reading, Recordset& row, std::int16_t& old) {
    if (!before_.IsFound()) return row.SetField(field_, Value::Integer(0));
    DiskReadTrendValue(reading, before_.table, row.Field("RecNo").AsLong(),
                       row.Field("StorDescr").AsText(), old);
    row.SetField(field_, Value::Real(row.Field("UsedProc").AsNumber() - old));
    ++updates_;
  }
  int updates() const { return updates_; }

 private:
  std::string_view field_;
  const WantedTable& before_;
  int updates_ = 0;
};

void SetTrends(ImportContext& context, const std::string& table, Trend& trend14d, Trend& trend30d) {
  HistoryTable day(context, table);
  Connection oldHistory;
  oldHistory.Open(context.settings.ConnHistory);
  Recordset& rows = day.rows;
  WriteGroup writes(context, day.connection);
  RowPauses pauses(context.loop, writes, kRowPauseMs);
  TrendReading reading{context, oldHistory, writes};
  std::int16_t old = 0;
  for (; !rows.Eof(); rows.MoveNext()) {
    trend14d.Set(reading, rows, old);
    trend30d.Set(reading, rows, old);
    writes.Begin();
    rows.Update();
    pauses.RowDone();
  }
  writes.Commit();
}

void WriteDump(const ImportContext& context, std::int64_t startTick, const TrendTables& tables,
               const Trend& trend14d, const Trend& trend30d) {
  DebugDump dump(context.settings, "\\Debug\\WebSqlFixTrend.txt");
  dump.ExecTime(context.clock.TickMs() - startTick);
  dump.Field("TableDate", tables.ofDay.dateText);
  dump.Field("TableDate14d", tables.before14d.dateText);
  dump.Field("TableDate30d", tables.before30d.dateText);
  dump.Field("SqlUpdates14d", std::to_string(trend14d.updates()));
  dump.Field("SqlUpdates30d", std::to_string(trend30d.updates()));
  dump.Row("");
  dump.Write();
}

}  // namespace

void DiskFixTrendValues(ImportContext& context) {
  ErrorExit(context.diagnostics, "modImport", "DiskFixTrendValues", [&] {
    const std::int64_t startTick = context.clock.TickMs();
    const TrendTables tables = FindTables(context, ReportDay(context.settings, context.clock));
    if (!tables.ofDay.IsFound()) return;
    Trend trend14d("Trend14d", tables.before14d);
    Trend trend30d("Trend30d", tables.before30d);
    SetTrends(context, tables.ofDay.table, trend14d, trend30d);
    if (context.settings.DebugMode) WriteDump(context, startTick, tables, trend14d, trend30d);
  });
}

}  // namespace quillon
