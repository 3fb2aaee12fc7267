// Control rows as pairs of a name and a date.
#include "quillondb/jet/day_moves.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/failure.h"
#include "quillondb/jet/table_copy.h"

namespace quillon {
namespace {

struct ControlColumns {
  std::size_t date;
  std::size_t table;
};

std::size_t RequirePlaceOf(const JetSource& source, const JetTable& control,
                           std::string_view column) {
  if (const auto place = PlaceOf(control, column)) return *place;
  throw FileFailure(source.Name() + " lacks the column " + std::string(column) + " of " +
                    control.name + ", without which its days cannot be found");
}

bool IsNamed(const std::vector<DayMove>& moves, std::string_view table) {
  return std::ranges::any_of(moves,
                             [&](const DayMove& move) { return SameName(move.oldTable, table); });
}

// Why the row leads to no day; empty where it does.
std::string Complaint(const std::vector<DayMove>& moves, const std::string& table,
                      const StoredField& date) {
  if (table.empty()) return "it names no table";
  if (IsNamed(moves, table)) return table + " is named by an earlier row";
  return std::holds_alternative<std::monostate>(date) ? "it has no date" : "";
}

// A move without its new table; nothing where the row is lost.
void AddMove(const JetRow& row, ControlColumns columns, const std::string& control,
             std::int64_t number, std::vector<DayMove>& moves, JetLosses& losses) {
  std::string complaint;
  try {
    const StoredField name = ConvertField(row[columns.table], "TEXT");
    const auto* table = std::get_if<std::string>(&name);
    DayMove move{table == nullptr ? "" : *table, "", ConvertField(row[columns.date], "DATE")};
    complaint = Complaint(moves, move.oldTable, move.date);
    if (complaint.empty()) moves.push_back(std::move(move));
  } catch (const Failure& failure) {
    complaint = failure.what();
  }
  if (complaint.empty()) return;
  losses.AddField(control, number, "HistTable", complaint + "; its day is left out");
}

// Stored dates sort as texts.
void KeepYoungest(std::vector<DayMove>& moves, std::size_t most, const std::string& control,
                  JetLosses& losses) {
  while (moves.size() > most) {
    const auto oldest = std::ranges::min_element(moves, {}, &DayMove::date);
    losses.AddTable(control, "there is no place for the day of " +
                                 std::get<std::string>(oldest->date) + " (" + oldest->oldTable +
                                 ")");
    moves.erase(oldest);
  }
}

}  // namespace

std::vector<DayMove> PlanDays(JetSource& source, const JetTable& control, const DayTableKind& kind,
                              const std::vector<std::string>& newTables, JetLosses& losses) {
  const ControlColumns columns{RequirePlaceOf(source, control, kind.dateColumn),
                               RequirePlaceOf(source, control, "HistTable")};
  std::vector<DayMove> moves;
  std::int64_t number = 0;
  source.ReadRows(control, [&](const JetRow& row) {
    AddMove(row, columns, control.name, ++number, moves, losses);
  });
  KeepYoungest(moves, newTables.size(), control.name, losses);
  for (std::size_t place = 0; place < moves.size(); ++place) {
    moves[place].newTable = newTables[place];
  }
  return moves;
}

}  // namespace quillon
