// SQLite handles behind the small interface of the tools.
#include "import/schema/sqlite_file.h"

#include <filesystem>

#include "platform/failure.h"

namespace quillon {
namespace {

constexpr int kBusyTimeoutMs = 5000;

constexpr std::string_view kBlanks = " \t\r\n";

}  // namespace

SqliteFile::SqliteFile(const std::string& path, int flags, std::string fileName)
    : fileName_(std::move(fileName)) {
  sqlite3* database = nullptr;
  const int result = sqlite3_open_v2(path.c_str(), &database, flags, nullptr);
  database_.reset(database);
  if (result != SQLITE_OK) throw DatabaseFailure(fileName_ + ": " + sqlite3_errstr(result));
  sqlite3_busy_timeout(database, kBusyTimeoutMs);
}

SqliteFile SqliteFile::Open(const std::string& path) {
  return SqliteFile(path, SQLITE_OPEN_READWRITE, std::filesystem::path(path).filename());
}

SqliteFile SqliteFile::InMemory() {
  return SqliteFile(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, "memory");
}

SqliteStatement SqliteFile::Prepare(std::string_view sql) const {
  std::string_view rest;
  return SqliteStatement::PrepareFirst(database_.get(), fileName_, sql, rest);
}

void SqliteFile::RunScript(std::string_view sql, std::string_view directory) const {
  while (sql.find_first_not_of(kBlanks) != std::string_view::npos) {
    SqliteStatement statement = SqliteStatement::PrepareFirst(database_.get(), fileName_, sql, sql);
    statement.BindNamed(":Directory", directory);
    while (statement.Step()) {
    }
  }
}

std::int64_t SqliteFile::Count(const std::string& select) const {
  SqliteStatement statement = Prepare(select);
  return statement.Step() ? statement.Integer(0) : 0;
}

SqliteTransaction::SqliteTransaction(const SqliteFile& file) : file_(file) {
  file_.RunScript("BEGIN IMMEDIATE");
}

SqliteTransaction::~SqliteTransaction() {
  if (!open_) return;
  try {
    file_.RunScript("ROLLBACK");
  } catch (const DatabaseFailure&) {
    // The engine has undone the transaction by itself, or does so when the file closes.
  }
}

void SqliteTransaction::Commit() {
  file_.RunScript("COMMIT");
  open_ = false;
}

}  // namespace quillon
