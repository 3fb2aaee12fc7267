// Running selects, their limit of work, and the sorting of row ids.
#include "platform/select_source.h"

#include <chrono>
#include <optional>

#include "platform/sqlite_columns.h"

namespace quillon {
namespace {

constexpr int kProgressSteps = 1000;  // virtual machine steps between two looks at the time
constexpr std::chrono::seconds kSelectLimit{2};  // of work, before a select is stopped

// Stops the engine while it lives, once a select has worked for kSelectLimit.
class WorkLimit {
 public:
  using Clock = std::chrono::steady_clock;

  // `worked` is what the select took so far; the time of this object is added to it.
  WorkLimit(sqlite3* handle, Clock::duration& worked)
      : handle_(handle), worked_(worked), start_(Clock::now()) {
    sqlite3_progress_handler(handle, kProgressSteps, IsOver, this);
  }
  ~WorkLimit() {
    sqlite3_progress_handler(handle_, 0, nullptr, nullptr);
    worked_ += Clock::now() - start_;
  }
  WorkLimit(const WorkLimit&) = delete;
  WorkLimit& operator=(const WorkLimit&) = delete;

 private:
  static int IsOver(void* data) {
    const auto* limit = static_cast<WorkLimit*>(data);
    return limit->worked_ + (Clock::now() - limit->start_) > kSelectLimit ? 1 : 0;
  }

  sqlite3* handle_;
  Clock::duration& worked_;
  Clock::time_point start_;
};

// A select of all columns of one table in the order of one of them, taken apart.
struct SortedSelect {
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

// Takes "SELECT * FROM <table> ... ORDER BY <column>" apart; nothing for any other select.
std::optional<SortedSelect> TakeApart(std::string_view select) {
  constexpr std::string_view kBeginning = "SELECT * FROM ";
  constexpr std::string_view kOrder = " ORDER BY ";
  const std::size_t order = select.rfind(kOrder);
  if (!select.starts_with(kBeginning) || order == std::string_view::npos ||
      !IsOneColumn(select.substr(order + kOrder.size()))) {
    return {};
  }
  select.remove_prefix(kBeginning.size());
  const std::string_view table = LeadingName(select);
  const std::string_view rest = select.substr(table.size());
  if (table.empty() || !rest.starts_with(' ')) return {};
  return SortedSelect{std::string(table), std::string(rest)};
}

class SelectSource : public Recordset::Source {
 public:
  SelectSource(sqlite3* handle, const std::string& file, const std::string& select, SelectTime time)
      : Source(file),
        handle_(handle),
        time_(time),
        statement_(SqliteStatement::PrepareOnly(handle, file, select)),
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
    std::optional<WorkLimit> limit;
    if (time_ == SelectTime::kLimited) limit.emplace(handle_, worked_);
    if (!ids_) {
      onRow_ = statement_.Step();
      return;
    }
    onRow_ = ids_->Step();
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
      SqliteStatement ids = SqliteStatement::PrepareOnly(
          handle_, file(), "SELECT rowid FROM " + sorted.table + sorted.rest + ", rowid");
      statement_ = SqliteStatement::PrepareOnly(
          handle_, file(), "SELECT * FROM " + sorted.table + " WHERE rowid = ?");
      ids_ = std::move(ids);
    } catch (const DatabaseFailure&) {
      ids_.reset();
    }
  }

  sqlite3* handle_;
  SelectTime time_;
  SqliteStatement statement_;           // the select, or one row by its id
  std::optional<SqliteStatement> ids_;  // the sorted ids, where the select is taken apart
  SqliteColumns columns_;
  bool onRow_ = false;
  WorkLimit::Clock::duration worked_{};
};

}  // namespace

std::unique_ptr<Recordset::Source> MakeSelectSource(sqlite3* handle, const std::string& file,
                                                    const std::string& select, SelectTime time) {
  return std::make_unique<SelectSource>(handle, file, select, time);
}

}  // namespace quillon
