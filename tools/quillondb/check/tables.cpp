// The tables against those of a new database, `reference`, one after the other.
#include "quillondb/check/tables.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "quillondb/check/database.h"
#include "quillondb/check/days.h"
#include "quillondb/check/fields.h"
#include "quillondb/check/findings.h"
#include "quillondb/check/indexes.h"
#include "quillondb/check/rotation.h"
#include "quillondb/check/settings.h"

namespace quillon {
namespace {

// The tables of one row, which the service reads without asking whether it is there.
constexpr std::array<std::string_view, 5> kOneRowTables = {"Settings_General", "Settings_WebServer",
                                                           "Settings_SnmpAgent",
                                                           "Settings_SmtpServer", "General_Info"};

void CheckJournalMode(const SqliteFile& file, const std::string& place, FindingLines& findings) {
  SqliteStatement mode = file.Prepare("PRAGMA journal_mode");
  if (!mode.Step() || mode.Text(0) == "wal") return;
  findings.push_back(place + "the journal mode is " + mode.Text(0) +
                     " instead of wal, so programs lock each other out; run"
                     " 'PRAGMA journal_mode=WAL' in it");
}

// A trigger would change what the service writes, or keep it from writing.
void CheckTriggers(const SqliteFile& file, const std::string& place, FindingLines& findings) {
  FindingLines found;
  SqliteStatement triggers =
      file.Prepare("SELECT name, tbl_name FROM sqlite_schema WHERE type = 'trigger'");
  while (triggers.Step()) {
    found.push_back(
        fmt::format("{}the trigger {} meddles with what is written into {}; run"
                    " 'DROP TRIGGER \"{}\"' in it",
                    place, triggers.Text(0), triggers.Text(1), triggers.Text(0)));
  }
  AppendFirst(place, found, findings);
}

void CheckNumber(std::int64_t rows, const std::string& place, const std::string& table,
                 FindingLines& findings) {
  if (rows == 1) return;
  const std::string finding =
      fmt::format("{}{} has {} rows where exactly one belongs", place, table, rows);
  findings.push_back(rows == 0 ? finding + std::string(kRestore)
                               : finding + "; keep the first, which counts, and delete all others");
}

// The value of a new installation is always a good one.
void CheckNull(const SqliteFile& file, const SqliteFile& reference, const std::string& place,
               const std::string& table, const std::string& column, FindingLines& findings) {
  const std::string nulls = fmt::format("SELECT COUNT(*) FROM {} WHERE {} IS NULL", table, column);
  if (file.Count(nulls) == 0) return;
  SqliteStatement usual = reference.Prepare(fmt::format("SELECT quote({}) FROM {}", column, table));
  const std::string value = usual.Step() ? usual.Text(0) : "''";
  findings.push_back(fmt::format(
      "{0}{1} in {2} is null; for the value of a new installation run \"UPDATE {2} SET {1} = {3}\""
      " in it",
      place, column, table, value));
}

void CheckOneRow(const SqliteFile& file, const SqliteFile& reference, const std::string& place,
                 const TableShape& table, FindingLines& findings) {
  CheckNumber(file.Count("SELECT COUNT(*) FROM " + table.name), place, table.name, findings);
  for (const ColumnShape& column : table.columns) {
    CheckNull(file, reference, place, table.name, column.name, findings);
  }
}

void CheckRows(const SqliteFile& file, const SqliteFile& reference, const std::string& place,
               const TableShape& table, FindingLines& findings) {
  if (std::ranges::find(kOneRowTables, table.name) != kOneRowTables.end()) {
    CheckOneRow(file, reference, place, table, findings);
  }
  CheckFields(file, place, table.name, findings);
  CheckSettings(file, place, table, findings);
  CheckDays(file, place, table.name, findings);
  for (const DayTableKind& kind : kDayTableKinds) {
    if (kind.controlTable == table.name) CheckRotation(file, reference, place, kind, findings);
  }
}

// True for a table of the right shape.
bool HasShape(const SqliteFile& file, const std::string& place, const TableShape& table,
              FindingLines& findings) {
  FindingLines lost;
  const bool isWhole = CheckTable(file, place, table, lost);
  for (const std::string& finding : lost) findings.push_back(finding + std::string(kRestore));
  return isWhole;
}

}  // namespace

bool CheckTables(const SqliteFile& file, const Database& database, const std::string& directory,
                 FindingLines& findings) {
  const std::string place = std::string(database.fileName) + ": ";
  const SqliteFile reference = SqliteFile::InMemory();
  database.build(reference, directory);
  CheckJournalMode(file, place, findings);
  CheckTriggers(file, place, findings);
  bool haveShape = true;
  for (const TableShape& table : ExpectedTables(database.fileName)) {
    if (!HasShape(file, place, table, findings)) {
      haveShape = false;
      continue;
    }
    CheckIndexes(file, place, table.name, IndexesOf(reference, table.name), findings);
    CheckRows(file, reference, place, table, findings);
  }
  return haveShape;
}

}  // namespace quillon
