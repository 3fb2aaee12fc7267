// Reference databases in memory and the reading of their shape.
#include "import/schema/shapes.h"

#include <algorithm>

#include "import/schema/databases.h"

namespace quillon {
namespace {

constexpr std::string_view kHistoryFile = "History.mdb";

SqliteFile ReferenceDatabase(std::string_view fileName) {
  SqliteFile file = SqliteFile::InMemory();
  for (const Database& database : kDatabases) {
    if (database.fileName == fileName) database.build(file, "");
  }
  return file;
}

std::vector<std::string> TableNames(const SqliteFile& file) {
  std::vector<std::string> names;
  SqliteStatement rows =
      file.Prepare("SELECT name FROM sqlite_schema WHERE type = 'table' ORDER BY rowid");
  while (rows.Step()) names.push_back(rows.Text(0));
  return names;
}

std::vector<std::string> AllDayTables(const SqliteFile& history) {
  std::vector<std::string> names;
  for (const DayTableKind& kind : kDayTableKinds) {
    const std::vector<std::string> tables = DayTables(history, kind.controlTable);
    names.insert(names.end(), tables.begin(), tables.end());
  }
  return names;
}

}  // namespace

std::vector<ColumnShape> ColumnsOf(const SqliteFile& file, std::string_view table) {
  std::vector<ColumnShape> columns;
  SqliteStatement rows = file.Prepare("SELECT name, type FROM pragma_table_info(?1)");
  rows.Bind(1, table);
  while (rows.Step()) columns.push_back({rows.Text(0), rows.Text(1)});
  return columns;
}

std::vector<TableShape> ExpectedTables(std::string_view fileName) {
  const SqliteFile file = ReferenceDatabase(fileName);
  std::vector<std::string> dayTables;
  if (fileName == kHistoryFile) dayTables = AllDayTables(file);
  std::vector<TableShape> shapes;
  for (const std::string& name : TableNames(file)) {
    if (std::ranges::find(dayTables, name) != dayTables.end()) continue;
    shapes.push_back({name, ColumnsOf(file, name)});
  }
  return shapes;
}

std::vector<ColumnShape> ExpectedDayColumns(std::string_view controlTable) {
  const SqliteFile file = ReferenceDatabase(kHistoryFile);
  return ColumnsOf(file, DayTables(file, controlTable).front());
}

}  // namespace quillon
