// Ordinary tables by their names; day tables by the rows of their control table.
#include "quillondb/jet/database_move.h"

#include <algorithm>

#include "platform/failure.h"
#include "platform/terminal_text.h"

namespace quillon {
namespace {

constexpr std::string_view kHistory = "History.mdb";

const JetTable* FindTable(const std::vector<JetTable>& tables, std::string_view name) {
  const auto found = std::ranges::find_if(
      tables, [&](const JetTable& table) { return SameName(table.name, name); });
  return found == tables.end() ? nullptr : &*found;
}

const DayTableKind* KindOfControl(std::string_view table) {
  for (const DayTableKind& kind : kDayTableKinds) {
    if (kind.controlTable == table) return &kind;
  }
  return nullptr;
}

// The tables of an old file, and those that were looked for in vain.
struct OldTables {
  std::vector<JetTable> all;
  std::vector<std::string> used;
  std::vector<std::string> missing;

  const JetTable* Find(const std::string& name) {
    const JetTable* table = FindTable(all, name);
    (table == nullptr ? missing : used).push_back(name);
    return table;
  }
};

Rotation PlanRotation(JetSource& source, const JetTable& control, const DayTableKind& kind,
                      const SqliteFile& file, OldTables& olds, JetLosses& losses) {
  Rotation rotation{&kind, {}, {}};
  rotation.moves = PlanDays(source, control, kind, DayTables(file, kind.controlTable), losses);
  const std::vector<ColumnShape> columns = ExpectedDayColumns(kind.controlTable);
  for (const DayMove& move : rotation.moves) {
    const JetTable* day = olds.Find(move.oldTable);
    if (day != nullptr) rotation.days.push_back({*day, {move.newTable, columns}});
  }
  return rotation;
}

void RefuseMissing(const JetSource& source, std::string_view fileName, const OldTables& olds) {
  if (olds.missing.empty()) return;
  std::string names;
  for (const std::string& name : olds.missing) names += (names.empty() ? "" : ", ") + name;
  throw FileFailure(source.Name() + " cannot become " + std::string(fileName) +
                    ": it lacks the tables " + TerminalText(names) +
                    "; look whether it is the right file");
}

void TellUnknown(const OldTables& olds, JetLosses& losses) {
  for (const JetTable& table : olds.all) {
    const bool used = std::ranges::any_of(
        olds.used, [&](const std::string& name) { return SameName(name, table.name); });
    if (!used) losses.AddTable(table.name, "the table has no place here");
  }
}

// What the service writes at each start, so that it tells nothing of an operator's work.
bool IsTheServices(std::string_view table, std::string_view column) {
  return table.starts_with("Settings_") &&
         (column == "Status" || (table == "Settings_WebServer" && column == "IpAddr"));
}

using Rows = std::vector<std::vector<std::string>>;

Rows RowsOf(const SqliteFile& file, const TableShape& table) {
  Rows rows;
  SqliteStatement statement =
      file.Prepare("SELECT * FROM " + QuotedName(table.name) + " ORDER BY rowid");
  while (statement.Step()) {
    std::vector<std::string>& row = rows.emplace_back();
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
      if (IsTheServices(table.name, table.columns[column].name)) continue;
      row.push_back(statement.Text(static_cast<int>(column)));
    }
  }
  return rows;
}

std::int64_t CountOf(const SqliteFile& file, const std::string& table) {
  return file.Count("SELECT COUNT(*) FROM " + QuotedName(table));
}

// The settings, the marks and the control rows of a new installation may be lost; anything else
// somebody has put there.
void RefuseTable(const TableShape& table, const SqliteFile& file, const SqliteFile& reference) {
  const std::int64_t count = CountOf(file, table.name);
  if (count == 0) return;
  if (count == CountOf(reference, table.name) && RowsOf(file, table) == RowsOf(reference, table)) {
    return;
  }
  throw DatabaseFailure("the table " + table.name +
                        " holds rows that a new installation does not have; --replace puts the old"
                        " ones in their place");
}

void StampDay(const SqliteFile& file, const DayTableKind& kind, const DayMove& move) {
  SqliteStatement stamp = file.Prepare("UPDATE " + std::string(kind.controlTable) + " SET " +
                                       std::string(kind.dateColumn) + " = ? WHERE HistTable = ?");
  BindField(stamp, 1, move.date);
  stamp.Bind(2, std::string_view(move.newTable));
  stamp.Finish();
}

// Every day table empty and free.
void ClearRotation(const SqliteFile& file, const DayTableKind& kind) {
  for (const std::string& table : DayTables(file, kind.controlTable)) {
    file.RunScript("DELETE FROM " + QuotedName(table));
    StampDay(file, kind, {"", table, EmptyField("DATE")});
  }
}

std::int64_t MoveRotation(JetSource& source, const Rotation& rotation, const JetTarget& target) {
  const std::string model = DayTables(target.reference, rotation.kind->controlTable).front();
  ClearRotation(target.file, *rotation.kind);
  std::int64_t rows = 0;
  for (std::size_t place = 0; place < rotation.days.size(); ++place) {
    const TableMove& day = rotation.days[place];
    rows += CopyTable(source, day.old, target, day.table, model);
    StampDay(target.file, *rotation.kind, rotation.moves[place]);
  }
  return rows;
}

}  // namespace

DatabaseMove PlanDatabase(JetSource& source, std::string_view fileName, const SqliteFile& file,
                          JetLosses& losses) {
  OldTables olds{source.Tables(), {}, {}};
  DatabaseMove plan;
  for (const TableShape& table : ExpectedTables(fileName)) {
    const JetTable* old = olds.Find(table.name);
    if (old == nullptr) continue;
    const DayTableKind* kind = fileName == kHistory ? KindOfControl(table.name) : nullptr;
    if (kind == nullptr) {
      plan.tables.push_back({*old, table});
    } else {
      plan.rotations.push_back(PlanRotation(source, *old, *kind, file, olds, losses));
    }
  }
  RefuseMissing(source, fileName, olds);
  TellUnknown(olds, losses);
  return plan;
}

void RefuseRows(const DatabaseMove& move, const SqliteFile& file, const SqliteFile& reference) {
  for (const TableMove& table : move.tables) RefuseTable(table.table, file, reference);
  for (const Rotation& rotation : move.rotations) {
    const std::string control(rotation.kind->controlTable);
    RefuseTable({control, ColumnsOf(file, control)}, file, reference);
    for (const std::string& day : DayTables(file, control)) {
      RefuseTable({day, ColumnsOf(file, day)}, file, reference);
    }
  }
}

std::int64_t MoveDatabase(JetSource& source, const DatabaseMove& move, const JetTarget& target) {
  std::int64_t rows = 0;
  for (const TableMove& table : move.tables) {
    rows += CopyTable(source, table.old, target, table.table, table.table.name);
  }
  for (const Rotation& rotation : move.rotations) rows += MoveRotation(source, rotation, target);
  return rows;
}

}  // namespace quillon
