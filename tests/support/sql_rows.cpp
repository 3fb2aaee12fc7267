// Rows of statements through the engine's own call.
#include "support/sql_rows.h"

#include <sqlite3.h>

#include <memory>
#include <stdexcept>

namespace quillon {
namespace {

constexpr int kBusyTimeoutMs = 5000;

int AddRow(void* rows, int count, char** values, char**) {
  SqlRow row;
  for (int i = 0; i < count; ++i) row.emplace_back(values[i] == nullptr ? "NULL" : values[i]);
  static_cast<std::vector<SqlRow>*>(rows)->push_back(std::move(row));
  return 0;
}

}  // namespace

std::vector<SqlRow> SqlRows(const std::string& path, const std::string& sql) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
  const std::unique_ptr<sqlite3, int (*)(sqlite3*)> handle(opened, sqlite3_close);
  if (result != SQLITE_OK) throw std::runtime_error("cannot open " + path);
  sqlite3_busy_timeout(handle.get(), kBusyTimeoutMs);
  std::vector<SqlRow> rows;
  if (sqlite3_exec(handle.get(), sql.c_str(), AddRow, &rows, nullptr) != SQLITE_OK) {
    throw std::runtime_error(path + ": " + sqlite3_errmsg(handle.get()) + " in: " + sql);
  }
  return rows;
}

}  // namespace quillon
