// First the plan, column by column, then the rows.
#include "quillondb/jet/table_copy.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <ostream>

#include "platform/failure.h"
#include "platform/terminal_text.h"
#include "quillondb/jet/field_conversion.h"

namespace quillon {
namespace {

// Between two lines of progress in a large table.
constexpr std::int64_t kRowsOfStep = 100'000;

struct ColumnPlan {
  ColumnShape shape;
  std::optional<std::size_t> place;  // in the old row; none where the old table lacks the column
  StoredField inNew;                 // as a new installation has it
};

struct TablePlan {
  std::vector<ColumnPlan> columns;
  bool hasOneRow = false;
};

StoredField FieldOf(const SqliteStatement& row, int column) {
  switch (row.StorageType(column)) {
    case SQLITE_INTEGER:
      return row.Integer(column);
    case SQLITE_FLOAT:
      return row.Real(column);
    case SQLITE_TEXT:
      return row.Text(column);
    default:
      return {};
  }
}

StoredField InNewInstallation(const SqliteFile& reference, const std::string& model,
                              const ColumnShape& column) {
  SqliteStatement row =
      reference.Prepare("SELECT " + QuotedName(column.name) + " FROM " + QuotedName(model));
  return row.Step() ? FieldOf(row, 0) : EmptyField(column.declaredType);
}

void TellUnknownColumns(const JetTable& old, const TableShape& table, JetLosses& losses) {
  for (const std::string& name : old.columns) {
    const bool known = std::ranges::any_of(
        table.columns, [&](const ColumnShape& column) { return SameName(column.name, name); });
    if (!known) losses.AddTable(old.name, "the column " + name + " has no place here");
  }
}

TablePlan PlanTable(const JetTable& old, const JetTarget& target, const TableShape& table,
                    const std::string& model) {
  TablePlan plan;
  plan.hasOneRow = target.reference.Count("SELECT COUNT(*) FROM " + QuotedName(model)) == 1;
  for (const ColumnShape& column : table.columns) {
    const auto place = PlaceOf(old, column.name);
    if (!place) {
      target.losses.AddTable(old.name, "the column " + column.name +
                                           " is missing; it gets what a new installation has");
    }
    plan.columns.push_back({column, place, InNewInstallation(target.reference, model, column)});
  }
  TellUnknownColumns(old, table, target.losses);
  return plan;
}

std::string InsertText(const TableShape& table) {
  std::string columns;
  std::string places;
  for (const ColumnShape& column : table.columns) {
    const char* separator = columns.empty() ? "" : ", ";
    columns += separator + QuotedName(column.name);
    places += std::string(separator) + "?";
  }
  return "INSERT INTO " + QuotedName(table.name) + " (" + columns + ") VALUES (" + places + ")";
}

// The folder of the management product. One of another system's form would end the service at its
// start, so that what is set here stays.
bool IsForeignFolder(const ColumnPlan& column, const JetValue& value) {
  const auto* text = std::get_if<std::string>(&value);
  return column.shape.name == "SnmpcDir" && text != nullptr && !text->starts_with('/');
}

// Takes rows into the new table.
class RowTaker {
 public:
  RowTaker(const JetTable& old, const JetTarget& target, const TableShape& table, TablePlan plan)
      : old_(old),
        target_(target),
        table_(table),
        plan_(std::move(plan)),
        insert_(target.file.Prepare(InsertText(table))) {}

  void Take(const JetRow& row) {
    ++read_;
    if (plan_.hasOneRow && taken_ == 1) {
      target_.losses.AddTable(old_.name, fmt::format("row {} is one too many", read_));
      return;
    }
    if (!BindAll(row)) return;
    insert_.Finish();
    ++taken_;
    if (taken_ % kRowsOfStep == 0) Tell(" ...");
  }

  // A table of one row is never left without it.
  void TakeNewInstallation() {
    target_.losses.AddTable(old_.name, "it has no row; what a new installation has stays");
    for (std::size_t place = 0; place < plan_.columns.size(); ++place) {
      BindField(insert_, static_cast<int>(place) + 1, plan_.columns[place].inNew);
    }
    insert_.Finish();
  }

  bool LacksItsRow() const { return plan_.hasOneRow && taken_ == 0; }
  std::int64_t taken() const { return taken_; }

  void Tell(std::string_view end) const {
    target_.progress << TerminalText(
                            fmt::format("{}: {} of {} rows{}", table_.name, taken_, old_.rows, end))
                     << std::endl;
  }

 private:
  // False where the row is left out.
  bool BindAll(const JetRow& row) {
    for (std::size_t place = 0; place < plan_.columns.size(); ++place) {
      const ColumnPlan& column = plan_.columns[place];
      const auto field = Converted(column, row);
      if (!field) return false;
      BindField(insert_, static_cast<int>(place) + 1, *field);
    }
    return true;
  }

  std::optional<StoredField> Converted(const ColumnPlan& column, const JetRow& row) {
    if (!column.place) return column.inNew;
    const JetValue& value = row[*column.place];
    if (IsForeignFolder(column, value)) return Kept(column, "it is no folder of this machine");
    try {
      StoredField field = ConvertField(value, column.shape.declaredType);
      const bool isNull = std::holds_alternative<std::monostate>(field);
      if (isNull && plan_.hasOneRow) return Kept(column, "it is null");
      return field;
    } catch (const ConversionFailure& failure) {
      return Lost(column, failure.what());
    } catch (const OverflowFailure& failure) {
      return Lost(column, failure.what());
    }
  }

  std::optional<StoredField> Lost(const ColumnPlan& column, const std::string& why) {
    if (plan_.hasOneRow) return Kept(column, why);
    target_.losses.AddField(old_.name, read_, column.shape.name, why + "; the row is left out");
    return std::nullopt;
  }

  StoredField Kept(const ColumnPlan& column, const std::string& why) {
    target_.losses.AddField(old_.name, read_, column.shape.name,
                            why + "; what a new installation has stays");
    return column.inNew;
  }

  const JetTable& old_;
  const JetTarget& target_;
  const TableShape& table_;
  TablePlan plan_;
  SqliteStatement insert_;
  std::int64_t read_ = 0;
  std::int64_t taken_ = 0;
};

}  // namespace

std::optional<std::size_t> PlaceOf(const JetTable& old, std::string_view column) {
  const auto found = std::ranges::find_if(
      old.columns, [&](const std::string& name) { return SameName(name, column); });
  if (found == old.columns.end()) return std::nullopt;
  return static_cast<std::size_t>(found - old.columns.begin());
}

std::int64_t CopyTable(JetSource& source, const JetTable& old, const JetTarget& target,
                       const TableShape& table, const std::string& model) {
  target.file.RunScript("DELETE FROM " + QuotedName(table.name));
  RowTaker taker(old, target, table, PlanTable(old, target, table, model));
  source.ReadRows(old, [&](const JetRow& row) { taker.Take(row); });
  if (taker.LacksItsRow()) taker.TakeNewInstallation();
  taker.Tell("");
  return taker.taken();
}

}  // namespace quillon
