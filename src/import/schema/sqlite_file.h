// A database file as the tools need it: scripts, data definition and bulk inserts. The service
// itself reads and writes through the database layer of the platform, not through this.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/sqlite_statement.h"

namespace quillon {

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

}  // namespace quillon
