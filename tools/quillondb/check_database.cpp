// One database file against the shape that it has to have.
#include "quillondb/check_database.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "platform/failure.h"
#include "quillondb/check_days.h"
#include "quillondb/check_fields.h"
#include "quillondb/check_indexes.h"
#include "quillondb/check_rotation.h"
#include "quillondb/check_settings.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

// The tables of one row, which the service reads without asking whether it is there.
constexpr std::array<std::string_view, 5> kOneRowTables = {"Settings_General", "Settings_WebServer",
                                                           "Settings_SnmpAgent",
                                                           "Settings_SmtpServer", "General_Info"};

void CheckMode(const fs::path& path, const std::string& place, std::vector<std::string>& findings) {
  constexpr fs::perms kOthers = fs::perms::group_all | fs::perms::others_all;
  if ((fs::status(path).permissions() & kOthers) == fs::perms::none) return;
  findings.push_back(place + "other users can reach the file; set its mode to 0600");
}

void CheckIntegrity(const SqliteFile& file, const std::string& place,
                    std::vector<std::string>& findings) {
  SqliteStatement rows = file.Prepare("PRAGMA integrity_check");
  while (rows.Step()) {
    if (rows.Text(0) != "ok") findings.push_back(place + "damaged: " + rows.Text(0));
  }
}

void CheckJournalMode(const SqliteFile& file, const std::string& place,
                      std::vector<std::string>& findings) {
  SqliteStatement mode = file.Prepare("PRAGMA journal_mode");
  if (!mode.Step() || mode.Text(0) == "wal") return;
  findings.push_back(place + "the journal mode is " + mode.Text(0) +
                     " instead of wal, so programs lock each other out; run"
                     " 'PRAGMA journal_mode=WAL' in it");
}

void CheckOneRow(const SqliteFile& file, const std::string& place, const TableShape& table,
                 std::vector<std::string>& findings) {
  const std::string from = " FROM " + table.name;
  const std::int64_t rows = file.Count("SELECT COUNT(*)" + from);
  if (rows != 1) {
    findings.push_back(place + table.name + " has " + std::to_string(rows) +
                       " rows where exactly one belongs");
  }
  for (const ColumnShape& column : table.columns) {
    if (file.Count("SELECT COUNT(*)" + from + " WHERE " + column.name + " IS NULL") > 0) {
      findings.push_back(place + column.name + " in " + table.name + " is null");
    }
  }
}

void CheckRows(const SqliteFile& file, const std::string& place, const TableShape& table,
               std::vector<std::string>& findings) {
  if (std::ranges::find(kOneRowTables, table.name) != kOneRowTables.end()) {
    CheckOneRow(file, place, table, findings);
  }
  CheckFields(file, place, table.name, findings);
  CheckSettings(file, place, table, findings);
}

// `reference` is a new database of the same kind.
void CheckTables(const SqliteFile& file, const SqliteFile& reference, const std::string& place,
                 std::string_view fileName, std::vector<std::string>& findings) {
  for (const TableShape& table : ExpectedTables(fileName)) {
    if (!CheckTable(file, place, table, findings)) continue;
    CheckIndexes(file, place, table.name, IndexesOf(reference, table.name), findings);
    CheckRows(file, place, table, findings);
    CheckDays(file, place, table.name, findings);
    for (const DayTableKind& kind : kDayTableKinds) {
      if (kind.controlTable == table.name) CheckRotation(file, reference, place, kind, findings);
    }
  }
}

void CheckOpened(const SqliteFile& file, const std::string& place, const Database& database,
                 std::vector<std::string>& findings) {
  const SqliteFile reference = SqliteFile::InMemory();
  database.build(reference, "");
  CheckIntegrity(file, place, findings);
  CheckJournalMode(file, place, findings);
  CheckTables(file, reference, place, database.fileName, findings);
}

}  // namespace

bool CheckTable(const SqliteFile& file, const std::string& place, const TableShape& expected,
                std::vector<std::string>& findings) {
  const std::vector<ColumnShape> columns = ColumnsOf(file, expected.name);
  if (columns.empty()) {
    findings.push_back(place + "the table " + expected.name + " is missing");
    return false;
  }
  const std::size_t before = findings.size();
  for (const ColumnShape& wanted : expected.columns) {
    const auto column = std::ranges::find(columns, wanted.name, &ColumnShape::name);
    if (column == columns.end()) {
      findings.push_back(place + "the column " + wanted.name + " of " + expected.name +
                         " is missing");
    } else if (column->declaredType != wanted.declaredType) {
      findings.push_back(place + "the column " + wanted.name + " of " + expected.name +
                         " is declared as " + column->declaredType + " instead of " +
                         wanted.declaredType);
    }
  }
  return findings.size() == before;
}

void CheckDatabase(const std::string& directory, const Database& database,
                   std::vector<std::string>& findings) {
  const std::string name(database.fileName);
  const std::string place = name + ": ";
  const fs::path path = fs::path(directory) / name;
  std::error_code ignored;
  if (!fs::is_regular_file(path, ignored)) {
    findings.push_back(place + "the file is missing; 'quillondb create' makes new databases");
    return;
  }
  CheckMode(path, place, findings);
  try {
    CheckOpened(SqliteFile::Open(path), place, database, findings);
  } catch (const DatabaseFailure& failure) {
    findings.emplace_back(failure.what());
  }
}

}  // namespace quillon
