// One database file against the shape that it has to have.
#include "quillondb/check/database.h"

#include <algorithm>

#include "platform/failure.h"

namespace quillon {
namespace {

// What has the name: "table" where it is one, "" where nothing has it.
std::string KindOf(const SqliteFile& file, std::string_view name) {
  SqliteStatement thing = file.Prepare(
      "SELECT CASE WHEN type = 'table' AND rootpage = 0 THEN 'virtual table' ELSE type END"
      " FROM sqlite_schema WHERE name = ?1 COLLATE NOCASE AND type IN ('table', 'view')");
  thing.Bind(1, name);
  return thing.Step() ? thing.Text(0) : "";
}

// The day tables of a history, those of its kind that the rows of a control table name.
void CheckDayTables(const SqliteFile& file, const std::string& place, const DayTableKind& kind,
                    std::vector<std::string>& findings) {
  const std::vector<ColumnShape> columns = ExpectedDayColumns(kind.controlTable);
  for (const std::string& table : DayTables(file, kind.controlTable)) {
    if (!table.empty()) CheckTable(file, place, {table, columns}, findings);
  }
}

void CheckOpenedShape(const SqliteFile& file, const std::string& place, std::string_view fileName,
                      std::vector<std::string>& findings) {
  CheckIntegrity(file, place, findings);
  for (const TableShape& table : ExpectedTables(fileName)) {
    if (!CheckTable(file, place, table, findings)) continue;
    for (const DayTableKind& kind : kDayTableKinds) {
      if (kind.controlTable == table.name) CheckDayTables(file, place, kind, findings);
    }
  }
}

void CheckColumns(const SqliteFile& file, const std::string& place, const TableShape& expected,
                  std::vector<std::string>& findings) {
  const std::vector<ColumnShape> columns = ColumnsOf(file, expected.name);
  for (const ColumnShape& wanted : expected.columns) {
    const std::string name = place + "the column " + wanted.name + " of " + expected.name;
    const auto column = std::ranges::find(columns, wanted.name, &ColumnShape::name);
    if (column == columns.end()) {
      findings.push_back(name + " is missing");
    } else if (column->declaredType != wanted.declaredType) {
      findings.push_back(name + " is declared as " + column->declaredType + " instead of " +
                         wanted.declaredType);
    }
  }
}

}  // namespace

void CheckShape(const std::string& path, const Database& database,
                std::vector<std::string>& findings) {
  try {
    CheckOpenedShape(SqliteFile::Open(path), std::string(database.fileName) + ": ",
                     database.fileName, findings);
  } catch (const DatabaseFailure& failure) {
    findings.emplace_back(failure.what());
  }
}

// Five lines tell the damage as well as a hundred.
void CheckIntegrity(const SqliteFile& file, const std::string& place,
                    std::vector<std::string>& findings) {
  SqliteStatement rows = file.Prepare("PRAGMA integrity_check(5)");
  while (rows.Step()) {
    if (rows.Text(0) != "ok") findings.push_back(place + "damaged: " + rows.Text(0));
  }
}

bool CheckTable(const SqliteFile& file, const std::string& place, const TableShape& expected,
                std::vector<std::string>& findings) {
  const std::string kind = KindOf(file, expected.name);
  const std::size_t before = findings.size();
  if (kind == "table") {
    CheckColumns(file, place, expected, findings);
  } else if (kind.empty()) {
    findings.push_back(place + "the table " + expected.name + " is missing");
  } else {
    findings.push_back(place + expected.name + " is a " + kind + " instead of a table");
  }
  return findings.size() == before;
}

}  // namespace quillon
