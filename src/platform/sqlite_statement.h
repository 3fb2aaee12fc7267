// One prepared statement of SQLite that finalizes itself. The ground of the database layer,
// and of the tools that make and judge database files; reports go through database.h.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

// Usable again and again. Positions of values and columns as in SQL: values count from 1,
// columns from 0. Every failure is a DatabaseFailure that begins with the file's name.
class SqliteStatement {
 public:
  // Prepares the first statement of the text; `rest` becomes what stands behind it.
  static SqliteStatement PrepareFirst(sqlite3* handle, const std::string& fileName,
                                      std::string_view sql, std::string_view& rest);

  // Prepares a text that is one statement: more than one, or none, is refused.
  static SqliteStatement PrepareOnly(sqlite3* handle, const std::string& fileName,
                                     std::string_view sql);

  // Runs the statement with these values (integers, doubles, bools, texts) to its end.
  template <typename... Values>
  void Run(const Values&... values) {
    Reset();
    int position = 0;
    (Bind(++position, values), ...);
    Finish();
  }
  // Runs the statement with the values that are bound to its end.
  void Finish() {
    while (Step()) {
    }
    Reset();
  }

  void Reset();
  void Bind(int position, int value) { Bind(position, std::int64_t{value}); }
  void Bind(int position, std::int64_t value);
  void Bind(int position, double value);
  void Bind(int position, std::string_view text);
  void BindNull(int position);

  // Binds the parameter of that name, where the statement has it.
  void BindNamed(const char* parameter, std::string_view text);

  // Goes to the next row; false behind the last one.
  bool Step();

  // The values of the row: null is 0 as a number and empty as a text.
  std::int64_t Integer(int column) const;
  double Real(int column) const;
  std::string Text(int column) const { return std::string(TextView(column)); }
  // The same without a copy, until the statement goes on.
  std::string_view TextView(int column) const;
  bool IsNull(int column) const { return StorageType(column) == SQLITE_NULL; }

  // SQLITE_INTEGER, SQLITE_FLOAT, SQLITE_TEXT, SQLITE_BLOB or SQLITE_NULL.
  int StorageType(int column) const;
  // The type that the column was declared with; "" for an expression.
  std::string_view DeclaredType(int column) const;
  std::vector<std::string> ColumnNames() const;

 private:
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };

  SqliteStatement(sqlite3_stmt* statement, std::string fileName)
      : statement_(statement), fileName_(std::move(fileName)) {}
  void Check(int result) const;

  std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
  std::string fileName_;  // as failures name it
};

// The name in double quotes, for use in SQL, whatever it holds.
std::string QuotedName(std::string_view name);

// Whether two names are the same without regard to case, as in SQL.
bool SameName(std::string_view left, std::string_view right);

}  // namespace quillon
