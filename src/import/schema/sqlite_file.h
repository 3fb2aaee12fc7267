// A database file as the tools need it: scripts, data definition and bulk inserts. The service
// itself reads and writes through the database layer of the platform, not through this.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace quillon {

// One prepared statement, usable again and again. Positions of values and columns as in SQL:
// values count from 1, columns from 0. Every failure is a DatabaseFailure.
class SqliteStatement {
 public:
  // Runs the statement with these values (integers, doubles, bools, texts) to its end.
  template <typename... Values>
  void Run(const Values&... values) {
    Reset();
    int position = 0;
    (Bind(++position, values), ...);
    while (Step()) {
    }
  }

  void Reset();
  void Bind(int position, int value) { Bind(position, std::int64_t{value}); }
  void Bind(int position, std::int64_t value);
  void Bind(int position, double value);
  void Bind(int position, std::string_view text);

  // Binds the parameter of that name, where the statement has it.
  void BindNamed(const char* parameter, std::string_view text);

  // Goes to the next row; false behind the last one.
  bool Step();

  // The values of the row: null is 0 as a number and empty as a text.
  std::int64_t Integer(int column) const;
  std::string Text(int column) const;
  bool IsNull(int column) const;

 private:
  friend class SqliteFile;
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };

  SqliteStatement(sqlite3_stmt* statement, std::string fileName)
      : statement_(statement), fileName_(std::move(fileName)) {}
  void Check(int result) const;

  std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
  std::string fileName_;  // as failures name it
};

// An open database. Every failure is a DatabaseFailure that begins with the file's name.
class SqliteFile {
 public:
  // Opens an existing file; waits up to 5 s wherever another program writes.
  static SqliteFile Open(const std::string& path);

  // A database of its own that is gone when this object is.
  static SqliteFile InMemory();

  // The first statement of the text; the text behind it is left alone.
  SqliteStatement Prepare(std::string_view sql) const;

  // Runs all statements of the text; the parameter ":Directory" of any of them is `directory`.
  void RunScript(std::string_view sql, std::string_view directory = {}) const;

  // The single value that a select gives; 0 where it gives no row.
  std::int64_t Count(const std::string& select) const;

 private:
  struct Closer {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
  };

  SqliteFile(const std::string& path, int flags, std::string fileName);
  SqliteStatement PrepareFirst(std::string_view sql, std::string_view& rest) const;

  std::unique_ptr<sqlite3, Closer> database_;
  std::string fileName_;
};

// A writing transaction, undone at the end of its scope unless it was committed.
class SqliteTransaction {
 public:
  explicit SqliteTransaction(const SqliteFile& file);
  ~SqliteTransaction();
  SqliteTransaction(const SqliteTransaction&) = delete;
  SqliteTransaction& operator=(const SqliteTransaction&) = delete;
  void Commit();

 private:
  const SqliteFile& file_;
  bool open_ = true;
};

// The name in double quotes, for names that come out of a table.
std::string QuotedName(std::string_view name);

}  // namespace quillon
