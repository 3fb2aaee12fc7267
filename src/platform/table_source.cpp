// Tables opened as a whole.
#include "platform/table_source.h"

#include <fmt/format.h>

#include <map>
#include <vector>

#include "platform/sqlite_values.h"

namespace quillon {
namespace {

// A table opened as a whole: the ids of its rows at the time of opening, and a copy of the
// row that the walk stands on. No read stays open between two calls, so the walk may pause
// for as long as it likes while others write.
class TableSource : public Recordset::Source {
 public:
  TableSource(sqlite3* handle, const std::string& file, const std::string& table, LockType lock)
      : Source(file),
        handle_(handle),
        table_(QuotedName(table)),
        lock_(lock),
        readRow_(Prepare("SELECT * FROM " + table_ + " WHERE rowid = ?")),
        names_(readRow_.ColumnNames()) {
    SqliteStatement ids = Prepare("SELECT rowid FROM " + table_ + " ORDER BY rowid");
    while (ids.Step()) ids_.push_back(ids.Integer(0));
    ReadFrom(0);
  }

  bool Eof() const override { return position_ >= ids_.size(); }
  // What was not stored by Update is given up: it belongs to the row that is left.
  void MoveNext() override {
    ForgetChanges();
    ReadFrom(position_ + 1);
  }
  std::int64_t RecordCount() const override { return static_cast<std::int64_t>(ids_.size()); }

  Value Field(std::string_view name) const override {
    if (!onRow_) FailNoRow();
    const auto column = FindName(names_, name);
    if (!column) FailNoField(name);
    return row_[*column];
  }

  void SetField(std::string_view name, const Value& value) override {
    if (lock_ == LockType::kReadOnly) RefuseChange();
    const auto column = FindName(names_, name);
    if (!column) FailNoField(name);
    if (!adding_ && !onRow_) FailNoRow();
    changes_[*column] = value;
  }

  void AddNew() override {
    if (lock_ == LockType::kReadOnly) RefuseChange();
    changes_.clear();
    adding_ = true;
  }

  void Update() override {
    if (adding_) {
      Insert();
    } else if (!changes_.empty()) {
      Change();
    }
    ForgetChanges();
  }

  void Delete() override {
    if (lock_ == LockType::kReadOnly) RefuseChange();
    if (!onRow_) FailNoRow();
    onRow_ = false;
    Prepare("DELETE FROM " + table_ + " WHERE rowid = ?").Run(ids_[position_]);
  }

 private:
  SqliteStatement Prepare(const std::string& sql) const {
    return SqliteStatement::PrepareOnly(handle_, file(), sql);
  }

  // Stands on the first row at `position` or behind it that is still there.
  void ReadFrom(std::size_t position) {
    onRow_ = false;
    for (position_ = position; position_ < ids_.size() && !onRow_; ++position_) {
      readRow_.Bind(1, ids_[position_]);
      onRow_ = readRow_.Step();
      if (onRow_) CopyRow();
      readRow_.Reset();
    }
    if (onRow_) --position_;
  }

  void CopyRow() {
    row_.clear();
    for (std::size_t column = 0; column < names_.size(); ++column) {
      row_.push_back(ReadColumn(readRow_, column, names_[column]));
    }
  }

  void ForgetChanges() {
    changes_.clear();
    adding_ = false;
  }

  void Insert() {
    std::string columns;
    std::string places;
    for (const auto& [column, value] : changes_) {
      columns += (columns.empty() ? "" : ", ") + QuotedName(names_[column]);
      places += places.empty() ? "?" : ", ?";
    }
    const std::string row = changes_.empty() ? std::string(" DEFAULT VALUES")
                                             : fmt::format(" ({}) VALUES ({})", columns, places);
    SqliteStatement statement = Prepare("INSERT INTO " + table_ + row);
    BindChanges(statement);
    statement.Step();
  }

  void Change() {
    std::string assignments;
    for (const auto& [column, value] : changes_) {
      assignments += (assignments.empty() ? "" : ", ") + QuotedName(names_[column]) + " = ?";
    }
    SqliteStatement statement =
        Prepare("UPDATE " + table_ + " SET " + assignments + " WHERE rowid = ?");
    const int last = BindChanges(statement);
    statement.Bind(last, ids_[position_]);
    statement.Step();
    if (sqlite3_changes(handle_) == 0) throw DatabaseFailure(file() + ": the row is gone");
    ReadFrom(position_);
  }

  // Binds the changed values from place 1 on; the place behind them.
  int BindChanges(SqliteStatement& statement) const {
    int place = 1;
    for (const auto& [column, value] : changes_) {
      BindValue(statement, place++, value, readRow_.DeclaredType(static_cast<int>(column)));
    }
    return place;
  }

  sqlite3* handle_;
  std::string table_;
  LockType lock_;
  SqliteStatement readRow_;
  std::vector<std::string> names_;
  std::vector<std::int64_t> ids_;
  std::vector<Value> row_;
  std::size_t position_ = 0;
  bool onRow_ = false;
  bool adding_ = false;
  std::map<std::size_t, Value> changes_;  // by column
};

}  // namespace

std::unique_ptr<Recordset::Source> MakeTableSource(sqlite3* handle, const std::string& file,
                                                   const std::string& table, LockType lock) {
  return std::make_unique<TableSource>(handle, file, table, lock);
}

}  // namespace quillon
