// Statements on SQLite's C interface.
#include "platform/sqlite_statement.h"

#include "platform/failure.h"

namespace quillon {

SqliteStatement SqliteStatement::PrepareFirst(sqlite3* handle, const std::string& fileName,
                                              std::string_view sql, std::string_view& rest) {
  sqlite3_stmt* statement = nullptr;
  const char* tail = nullptr;
  const int length = static_cast<int>(sql.size());
  if (sqlite3_prepare_v2(handle, sql.data(), length, &statement, &tail) != SQLITE_OK) {
    throw DatabaseFailure(fileName + ": " + sqlite3_errmsg(handle));
  }
  rest = sql.substr(static_cast<std::size_t>(tail - sql.data()));
  return {statement, fileName};
}

SqliteStatement SqliteStatement::PrepareOnly(sqlite3* handle, const std::string& fileName,
                                             std::string_view sql) {
  std::string_view rest;
  SqliteStatement statement = PrepareFirst(handle, fileName, sql, rest);
  const bool more = rest.find_first_not_of(" \t\r\n;") != std::string_view::npos;
  if (statement.statement_ == nullptr || more) {
    throw DatabaseFailure(fileName + ": not one statement");
  }
  return statement;
}

void SqliteStatement::Check(int result) const {
  if (result == SQLITE_OK) return;
  if (result == SQLITE_INTERRUPT) throw DatabaseFailure(fileName_ + ": the select took too long");
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

void SqliteStatement::BindNull(int position) {
  Check(sqlite3_bind_null(statement_.get(), position));
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

double SqliteStatement::Real(int column) const {
  return sqlite3_column_double(statement_.get(), column);
}

std::string_view SqliteStatement::TextView(int column) const {
  const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column));
  if (bytes == nullptr) return {};
  return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

int SqliteStatement::StorageType(int column) const {
  return sqlite3_column_type(statement_.get(), column);
}

std::string_view SqliteStatement::DeclaredType(int column) const {
  const char* type = sqlite3_column_decltype(statement_.get(), column);
  return type == nullptr ? "" : type;
}

std::vector<std::string> SqliteStatement::ColumnNames() const {
  const int count = sqlite3_column_count(statement_.get());
  std::vector<std::string> names;
  names.reserve(static_cast<std::size_t>(count));
  for (int column = 0; column < count; ++column) {
    names.emplace_back(sqlite3_column_name(statement_.get(), column));
  }
  return names;
}

std::string QuotedName(std::string_view name) {
  std::string quoted = "\"";
  for (const char letter : name) {
    if (letter == '"') quoted += '"';
    quoted += letter;
  }
  return quoted + '"';
}

bool SameName(std::string_view left, std::string_view right) {
  return left.size() == right.size() &&
         sqlite3_strnicmp(left.data(), right.data(), static_cast<int>(left.size())) == 0;
}

}  // namespace quillon
