// Running selects, and the sorting of row ids.
#include "platform/select_source.h"

#include <optional>
#include <string_view>

#include "platform/sqlite_columns.h"

namespace quillon {
namespace {

// Rows whose ids are sorted at first. For so few the engine keeps no more than these while it
// looks through the table.
constexpr int kFirstRows = 128;

// A select of columns of one table in the order of one of them, taken apart.
struct SortedSelect {
  std::string columns;
  std::string table;
  std::string rest;  // the conditions and the order
};

// The name that a text begins with; "" where it begins with none.
std::string_view LeadingName(std::string_view text) {
  constexpr std::string_view kFirst = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_";
  constexpr std::string_view kOther =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_0123456789";
  if (text.find_first_of(kFirst) != 0) return {};
  return text.substr(0, text.find_first_not_of(kOther));
}

// True for "<column>", "<column> ASC" and "<column> DESC". A number in place of the name
// would mean another column once the select has but one.
bool IsOneColumn(std::string_view order) {
  const std::string_view column = LeadingName(order);
  const std::string_view rest = order.substr(column.size());
  return !column.empty() && (rest.empty() || rest == " ASC" || rest == " DESC");
}

// True for "*" and for "<column>, <column>".
bool IsColumnList(std::string_view columns) {
  constexpr std::string_view kNext = ", ";
  if (columns == "*") return true;
  while (true) {
    const std::string_view column = LeadingName(columns);
    if (column.empty()) return false;
    columns.remove_prefix(column.size());
    if (columns.empty()) return true;
    if (!columns.starts_with(kNext)) return false;
    columns.remove_prefix(kNext.size());
  }
}

// Takes "SELECT <columns> FROM <table> ... ORDER BY <column>" apart; nothing for any other select.
std::optional<SortedSelect> TakeApart(std::string_view select) {
  constexpr std::string_view kSelect = "SELECT ";
  constexpr std::string_view kFrom = " FROM ";
  constexpr std::string_view kOrder = " ORDER BY ";
  const std::size_t from = select.find(kFrom);
  const std::size_t order = select.rfind(kOrder);
  if (!select.starts_with(kSelect) || from == std::string_view::npos ||
      order == std::string_view::npos || !IsOneColumn(select.substr(order + kOrder.size()))) {
    return {};
  }
  const std::string_view columns = select.substr(kSelect.size(), from - kSelect.size());
  select.remove_prefix(from + kFrom.size());
  const std::string_view table = LeadingName(select);
  const std::string_view rest = select.substr(table.size());
  if (!IsColumnList(columns) || table.empty() || !rest.starts_with(' ')) return {};
  return SortedSelect{std::string(columns), std::string(table), std::string(rest)};
}

class SelectSource : public Recordset::Source {
 public:
  SelectSource(sqlite3* handle, const std::string& file, const std::string& select,
               SelectLimits* limits)
      : Source(file),
        handle_(handle),
        limits_(limits),
        statement_(Planned(select)),
        columns_(statement_) {
    if (const auto sorted = TakeApart(select)) SortIdsOnly(*sorted);
    Step();
  }

  bool Eof() const override { return !onRow_; }
  void MoveNext() override { Step(); }

  Value Field(std::string_view name) const override {
    if (!onRow_) FailNoRow();
    const auto column = columns_.Find(name);
    if (!column) FailNoField(name);
    return columns_.Read(statement_, *column);
  }

 private:
  // Only the time inside the engine counts against the limit, so a walk that pauses
  // between its rows is not cut off.
  void Step() {
    std::optional<SelectLimits::Stretch> stretch;
    if (limits_ != nullptr) stretch.emplace(*limits_);
    if (!ids_) {
      onRow_ = statement_.Step();
      return;
    }
    onRow_ = NextId();
    statement_.Reset();  // also behind the last row: an open read holds the log back
    if (!onRow_) return;
    statement_.Bind(1, ids_->Integer(0));
    statement_.Step();
  }

  // Lets the engine sort the ids of the rows and not their whole width, and reads each row
  // as the walk comes to it: of a long list only the first rows are wanted. The id as the
  // last key keeps equal keys in stored order. The select as it came has been accepted
  // before; where its text is none that can be sorted so, it runs as it is.
  void SortIdsOnly(const SortedSelect& sorted) {
    try {
      selectIds_ = "SELECT rowid FROM " + sorted.table + sorted.rest + ", rowid";
      SqliteStatement ids = Planned(selectIds_ + " LIMIT " + std::to_string(kFirstRows));
      statement_ =
          Planned("SELECT " + sorted.columns + " FROM " + sorted.table + " WHERE rowid = ?");
      ids_ = std::move(ids);
    } catch (const DatabaseFailure&) {
      ids_.reset();
    }
  }

  SqliteStatement Prepare(const std::string& sql) const {
    return SqliteStatement::PrepareOnly(handle_, file(), sql);
  }

  // Prepares under the limits, by which planning cannot be stopped: none begins once they are over.
  SqliteStatement Planned(const std::string& sql) const {
    if (limits_ == nullptr) return Prepare(sql);
    const SelectLimits::Stretch stretch(*limits_);
    if (limits_->IsOver()) throw DatabaseFailure(file() + ": the select took too long");
    return Prepare(sql);
  }

  // Behind the first rows come the others, sorted in their turn; seldom does a walk go so far.
  bool NextId() {
    if (ids_->Step()) {
      ++idsTaken_;
      return true;
    }
    if (!onFirstIds_ || idsTaken_ != kFirstRows) return false;
    onFirstIds_ = false;
    ids_ = Prepare(selectIds_ + " LIMIT -1 OFFSET " + std::to_string(kFirstRows));
    return ids_->Step();
  }

  sqlite3* handle_;
  SelectLimits* limits_;
  SqliteStatement statement_;           // the select, or one row by its id
  std::optional<SqliteStatement> ids_;  // the sorted ids, where the select is taken apart
  std::string selectIds_;
  bool onFirstIds_ = true;
  int idsTaken_ = 0;
  SqliteColumns columns_;
  bool onRow_ = false;
};

}  // namespace

std::unique_ptr<Recordset::Source> MakeSelectSource(sqlite3* handle, const std::string& file,
                                                    const std::string& select,
                                                    SelectLimits* limits) {
  if (CountWords(select) > kMaxWords) throw DatabaseFailure(file + ": the select is too long");
  return std::make_unique<SelectSource>(handle, file, select, limits);
}

}  // namespace quillon
