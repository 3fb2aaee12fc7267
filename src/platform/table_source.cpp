// Tables opened as a whole.
#include "platform/table_source.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "platform/sqlite_columns.h"

namespace quillon {
namespace {

// Fields that were set and not stored yet, in the order of their setting.
class Changes {
 public:
  void Set(std::size_t column, Value value) {
    for (std::size_t place = 0; place < columns_.size(); ++place) {
      if (columns_[place] != column) continue;
      values_[place] = std::move(value);
      return;
    }
    columns_.push_back(column);
    values_.push_back(std::move(value));
  }
  void Forget() {
    columns_.clear();
    values_.clear();
  }
  bool empty() const { return columns_.empty(); }
  const std::vector<std::size_t>& columns() const { return columns_; }
  const std::vector<Value>& values() const { return values_; }

 private:
  std::vector<std::size_t> columns_;
  std::vector<Value> values_;
};

// A statement that stores changes. It is prepared anew only where other columns have changed than
// the last time: the rows of a loop are alike.
class StoringStatement {
 public:
  template <typename Prepare>
  SqliteStatement& For(const Changes& changes, Prepare&& prepare) {
    if (!statement_ || columns_ != changes.columns()) {
      statement_ = prepare();
      columns_ = changes.columns();
    }
    statement_->Reset();
    return *statement_;
  }

 private:
  std::optional<SqliteStatement> statement_;
  std::vector<std::size_t> columns_;
};

// A table opened as a whole: the ids of its rows at the time of opening, and a copy of the
// row that the walk stands on. No read stays open between two calls, so the walk may pause
// for as long as it likes while others write.
class TableSource : public Recordset::Source {
 public:
  TableSource(sqlite3* handle, const std::string& file, const std::string& table)
      : Source(file),
        handle_(handle),
        table_(QuotedName(table)),
        readRow_(Prepare("SELECT * FROM " + table_ + " WHERE rowid = ?")),
        columns_(readRow_) {
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
    return row_[Column(name)];
  }

  void SetField(std::string_view name, Value&& value) override {
    const std::size_t column = Column(name);
    if (!adding_ && !onRow_) FailNoRow();
    changes_.Set(column, std::move(value));
  }

  void AddNew() override {
    changes_.Forget();
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
    if (!onRow_) FailNoRow();
    onRow_ = false;
    DeleteBetween(ids_[position_], ids_[position_]);
  }

  // In runs of ids without a gap, where no row can stand that was added meanwhile.
  int DeleteRows(int count) override {
    const std::size_t first = position_;
    const std::size_t end = std::min(ids_.size(), first + static_cast<std::size_t>(count));
    while (position_ < end) {
      std::size_t last = position_;
      while (last + 1 < end && ids_[last + 1] == ids_[last] + 1) ++last;
      DeleteRun(last);
      position_ = last + 1;
    }
    ForgetChanges();
    ReadFrom(end);
    return static_cast<int>(end - first);
  }

 private:
  SqliteStatement Prepare(const std::string& sql) const {
    return SqliteStatement::PrepareOnly(handle_, file(), sql);
  }

  std::size_t Column(std::string_view name) const {
    const auto column = columns_.Find(name);
    if (!column) FailNoField(name);
    return *column;
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
    for (std::size_t column = 0; column < columns_.size(); ++column) {
      row_.push_back(columns_.Read(readRow_, column));
    }
  }

  // The rows from the current one to that place. Where the engine refuses one of them, those
  // before it go all the same; not where the file failed, and a whole group of writes with it.
  void DeleteRun(std::size_t last) {
    const bool inGroup = sqlite3_get_autocommit(handle_) == 0;
    try {
      DeleteBetween(ids_[position_], ids_[last]);
    } catch (const DatabaseFailure&) {
      if (inGroup && sqlite3_get_autocommit(handle_) != 0) throw;
      for (std::size_t row = position_; row <= last; ++row) DeleteBetween(ids_[row], ids_[row]);
    }
  }

  void DeleteBetween(std::int64_t first, std::int64_t last) {
    if (!delete_) delete_ = Prepare("DELETE FROM " + table_ + " WHERE rowid BETWEEN ? AND ?");
    delete_->Run(first, last);
  }

  void ForgetChanges() {
    changes_.Forget();
    adding_ = false;
  }

  void Insert() {
    SqliteStatement& statement = insert_.For(changes_, [&] {
      std::string names;
      std::string places;
      for (const std::size_t column : changes_.columns()) {
        names += (names.empty() ? "" : ", ") + QuotedName(columns_.Name(column));
        places += places.empty() ? "?" : ", ?";
      }
      return Prepare("INSERT INTO " + table_ +
                     (names.empty() ? std::string(" DEFAULT VALUES")
                                    : fmt::format(" ({}) VALUES ({})", names, places)));
    });
    BindChanges(statement);
    statement.Finish();
  }

  void Change() {
    SqliteStatement& statement = change_.For(changes_, [&] {
      std::string assignments;
      for (const std::size_t column : changes_.columns()) {
        assignments += (assignments.empty() ? "" : ", ") + QuotedName(columns_.Name(column)) + "=?";
      }
      return Prepare("UPDATE " + table_ + " SET " + assignments + " WHERE rowid = ?");
    });
    const int last = BindChanges(statement);
    statement.Bind(last, ids_[position_]);
    statement.Finish();
    if (sqlite3_changes(handle_) == 0) throw DatabaseFailure(file() + ": the row is gone");
    ReadFrom(position_);
  }

  // Binds the changed values from place 1 on; the place behind them.
  int BindChanges(SqliteStatement& statement) const {
    int place = 1;
    for (std::size_t i = 0; i < changes_.columns().size(); ++i) {
      columns_.Bind(statement, place++, changes_.columns()[i], changes_.values()[i]);
    }
    return place;
  }

  sqlite3* handle_;
  std::string table_;
  SqliteStatement readRow_;
  SqliteColumns columns_;
  std::vector<std::int64_t> ids_;
  std::vector<Value> row_;
  std::size_t position_ = 0;
  bool onRow_ = false;
  bool adding_ = false;
  Changes changes_;
  StoringStatement insert_;
  StoringStatement change_;
  std::optional<SqliteStatement> delete_;
};

}  // namespace

std::unique_ptr<Recordset::Source> MakeTableSource(sqlite3* handle, const std::string& file,
                                                   const std::string& table) {
  return std::make_unique<TableSource>(handle, file, table);
}

}  // namespace quillon
