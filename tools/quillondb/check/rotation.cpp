// Control rows and the day tables behind them.
#include "quillondb/check/rotation.h"

#include <fmt/format.h>

#include <map>

#include "import/schema/shapes.h"
#include "quillondb/check/database.h"
#include "quillondb/check/findings.h"
#include "quillondb/check/indexes.h"

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
    findings.push_back(fmt::format(
        "{}{} has {} rows instead of {}; {}", place, control, rows, kDayTables,
        rows > kDayTables
            ? "keep one for each day table, and delete all others"
            : "add one with the date '2000-01-01 00:00:00' for each day table that none names"));
  }
  if (history.Count(count + " WHERE " + date + " IS NULL") > 0) {
    findings.push_back(fmt::format(
        "{0}{1} in {2} is null; its day table is never used, so run \"UPDATE {2} SET {1} ="
        " '2000-01-01 00:00:00' WHERE {1} IS NULL\" in it",
        place, date, control));
  }
}

// How often each day table is named. A row that names none is found with the fields.
std::map<std::string, int> NamedTables(const SqliteFile& history, const DayTableKind& kind) {
  std::map<std::string, int> rowsNaming;
  for (const std::string& table : DayTables(history, kind.controlTable)) ++rowsNaming[table];
  rowsNaming.erase("");
  return rowsNaming;
}

// Tables that several rows name: the day of one is overwritten by that of the other.
void CheckNames(const std::map<std::string, int>& tables, const std::string& place,
                const std::string& control, std::vector<std::string>& findings) {
  std::vector<std::string> found;
  for (const auto& [table, rows] : tables) {
    if (rows == 1) continue;
    found.push_back(
        fmt::format("{}{} rows of {} name the table {}; let one of them name it, and each other"
                    " one a day table that none names",
                    place, rows, control, table));
  }
  AppendFirst(place, found, findings);
}

void CheckDayTables(const SqliteFile& history, const SqliteFile& reference,
                    const std::string& place, const std::string& control,
                    const std::map<std::string, int>& tables, std::vector<std::string>& findings) {
  const std::string here = place + control + ": ";
  const std::vector<ColumnShape> columns = ExpectedDayColumns(control);
  const std::vector<std::string> indexes =
      IndexesOf(reference, DayTables(reference, control).front());
  std::vector<std::string> lost;
  std::vector<std::string> slow;
  for (const auto& [table, rows] : tables) {
    if (!CheckTable(history, here, {table, columns}, lost)) continue;
    CheckIndexes(history, here, table, indexes, slow);
  }
  for (std::string& finding : lost) finding += kRestore;
  AppendFirst(here, lost, findings);
  AppendFirst(here, slow, findings);
}

}  // namespace

void CheckRotation(const SqliteFile& history, const SqliteFile& reference, const std::string& place,
                   const DayTableKind& kind, std::vector<std::string>& findings) {
  CheckControlRows(history, place, kind, findings);
  const std::map<std::string, int> tables = NamedTables(history, kind);
  const std::string control(kind.controlTable);
  CheckNames(tables, place, control, findings);
  CheckDayTables(history, reference, place, control, tables, findings);
}

}  // namespace quillon
