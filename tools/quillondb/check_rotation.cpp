// Control rows and the day tables behind them.
#include "quillondb/check_rotation.h"

#include <map>

#include "import/schema/shapes.h"
#include "quillondb/check_database.h"
#include "quillondb/check_indexes.h"

namespace quillon {
namespace {

// As many as the days that the reports reach back.
constexpr std::int64_t kDayTables = 45;

void CheckControlRows(const SqliteFile& history, const std::string& place, const DayTableKind& kind,
                      std::vector<std::string>& findings) {
  const std::string control(kind.controlTable);
  const std::string date(kind.dateColumn);
  const std::string count = "SELECT COUNT(*) FROM " + control;
  if (const std::int64_t rows = history.Count(count); rows != kDayTables) {
    findings.push_back(place + control + " has " + std::to_string(rows) + " rows instead of " +
                       std::to_string(kDayTables));
  }
  if (history.Count(count + " WHERE " + date + " IS NULL") > 0) {
    findings.push_back(place + date + " in " + control + " is null; its day table is never used");
  }
}

// How often each day table is named. A row that names none is found with the fields.
std::map<std::string, int> NamedTables(const SqliteFile& history, const DayTableKind& kind) {
  std::map<std::string, int> rowsNaming;
  for (const std::string& table : DayTables(history, kind.controlTable)) ++rowsNaming[table];
  rowsNaming.erase("");
  return rowsNaming;
}

void CheckDayTables(const SqliteFile& history, const SqliteFile& reference,
                    const std::string& place, const DayTableKind& kind,
                    std::vector<std::string>& findings) {
  const std::string control(kind.controlTable);
  const std::string here = place + control + ": ";
  const std::vector<ColumnShape> columns = ExpectedDayColumns(control);
  const std::vector<std::string> indexes =
      IndexesOf(reference, DayTables(reference, control).front());
  for (const auto& [table, rows] : NamedTables(history, kind)) {
    if (CheckTable(history, here, {table, columns}, findings)) {
      CheckIndexes(history, here, table, indexes, findings);
    }
    if (rows == 1) continue;
    findings.push_back(place + std::to_string(rows) + " rows of " + control + " name the table " +
                       table);
  }
}

}  // namespace

void CheckRotation(const SqliteFile& history, const SqliteFile& reference, const std::string& place,
                   const DayTableKind& kind, std::vector<std::string>& findings) {
  CheckControlRows(history, place, kind, findings);
  CheckDayTables(history, reference, place, kind, findings);
}

}  // namespace quillon
