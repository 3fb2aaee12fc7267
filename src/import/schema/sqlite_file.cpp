// SQLite handles behind the small interface of the tools.
#include "import/schema/sqlite_file.h"

#include <filesystem>

#include "platform/failure.h"

namespace quillon {
namespace {

constexpr int kBusyTimeoutMs = 5000;

constexpr std::string_view kBlanks = " \t\r\n";

}  // namespace

void SqliteStatement::Check(int result) const {
  if (result == SQLITE_OK) return;
  throw DatabaseFailure(fileName_ + ": " + sqlite3_errmsg(sqlite3_db_handle(statement_.get())));
}

// The result is left out: it repeats the failure of the last step, which was raised there.
void SqliteStatement::Reset() {
  sqlite3_reset(statement_.get());
}

void SqliteStatement::Bind(int position, std::int64_t value) {
  Check(sqlite3_bind_int64(statement_.get(), position, value));
}

void SqliteStatement::Bind(int position, double value) {
  Check(sqlite3_bind_double(statement_.get(), position, value));
}

void SqliteStatement::Bind(int position, std::string_view text) {
  // A null pointer would bind a null: an empty text has to stay a text.
  const char* bytes = text.empty() ? "" : text.data();
  Check(sqlite3_bind_text(statement_.get(), position, bytes, static_cast<int>(text.size()),
                          SQLITE_TRANSIENT));
}

void SqliteStatement::BindNamed(const char* parameter, std::string_view text) {
  const int position = sqlite3_bind_parameter_index(statement_.get(), parameter);
  if (position > 0) Bind(position, text);
}

bool SqliteStatement::Step() {
  const int result = sqlite3_step(statement_.get());
  if (result == SQLITE_ROW) return true;
  if (result != SQLITE_DONE) Check(result);
  return false;
}

std::int64_t SqliteStatement::Integer(int column) const {
  return sqlite3_column_int64(statement_.get(), column);
}

std::string SqliteStatement::Text(int column) const {
  const unsigned char* text = sqlite3_column_text(statement_.get(), column);
  return text ? reinterpret_cast<const char*>(text) : "";
}

bool SqliteStatement::IsNull(int column) const {
  return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL;
}

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

SqliteStatement SqliteFile::PrepareFirst(std::string_view sql, std::string_view& rest) const {
  sqlite3_stmt* statement = nullptr;
  const char* tail = nullptr;
  const int result = sqlite3_prepare_v2(database_.get(), sql.data(), static_cast<int>(sql.size()),
                                        &statement, &tail);
  if (result != SQLITE_OK) {
    throw DatabaseFailure(fileName_ + ": " + sqlite3_errmsg(database_.get()));
  }
  rest = sql.substr(static_cast<std::size_t>(tail - sql.data()));
  return SqliteStatement(statement, fileName_);
}

SqliteStatement SqliteFile::Prepare(std::string_view sql) const {
  std::string_view rest;
  return PrepareFirst(sql, rest);
}

void SqliteFile::RunScript(std::string_view sql, std::string_view directory) const {
  while (sql.find_first_not_of(kBlanks) != std::string_view::npos) {
    SqliteStatement statement = PrepareFirst(sql, sql);
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

std::string QuotedName(std::string_view name) {
  std::string quoted = "\"";
  for (const char letter : name) {
    if (letter == '"') quoted += '"';
    quoted += letter;
  }
  return quoted + '"';
}

}  // namespace quillon
