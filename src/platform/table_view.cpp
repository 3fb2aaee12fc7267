// Tables in the order of a column.
#include "platform/table_view.h"

#include <string_view>

#include "platform/select_source.h"
#include "platform/sqlite_statement.h"

namespace quillon {
namespace {

// What may stand behind a column: nothing, or a blank with nothing behind it, is ascending.
bool IsDirection(std::string_view direction) {
  return direction.empty() || direction == " " || direction == " ASC" || direction == " DESC";
}

class TableView : public Recordset::Source {
 public:
  TableView(sqlite3* handle, const std::string& file, const std::string& table)
      : Source(file), handle_(handle), table_(QuotedName(table)), rows_(Rows("")) {
    // Where there are rows, their read is open already: the count is of the same moment.
    SqliteStatement count =
        SqliteStatement::PrepareOnly(handle, file, "SELECT Count(*) FROM " + table_);
    count.Step();
    count_ = count.Integer(0);
  }

  bool Eof() const override { return rows_->Eof(); }
  void MoveNext() override { rows_->MoveNext(); }
  Value Field(std::string_view name) const override { return rows_->Field(name); }
  std::int64_t RecordCount() const override { return count_; }

  void Sort(const std::string& order) override {
    const std::string column = order.substr(0, order.find(' '));
    const std::string direction = order.substr(column.size());
    if (column.empty() || !IsDirection(direction)) {
      throw DatabaseFailure(file() + ": cannot sort by \"" + order + "\"");
    }
    RequireColumn(column);
    // The old read ends when the new one has begun, so that both see the same rows.
    rows_ = Rows(" ORDER BY " + QuotedName(column) + direction + ", rowid");
  }

 private:
  std::unique_ptr<Recordset::Source> Rows(const std::string& order) const {
    return MakeSelectSource(handle_, file(), "SELECT * FROM " + table_ + order, nullptr);
  }

  // A quoted name that is no column would count as a text in SQL.
  void RequireColumn(const std::string& name) const {
    const SqliteStatement table =
        SqliteStatement::PrepareOnly(handle_, file(), "SELECT * FROM " + table_);
    for (const std::string& column : table.ColumnNames()) {
      if (SameName(column, name)) return;
    }
    FailNoField(name);
  }

  sqlite3* handle_;
  std::string table_;
  std::unique_ptr<Recordset::Source> rows_;
  std::int64_t count_ = 0;
};

}  // namespace

std::unique_ptr<Recordset::Source> MakeTableView(sqlite3* handle, const std::string& file,
                                                 const std::string& table) {
  return std::make_unique<TableView>(handle, file, table);
}

}  // namespace quillon
