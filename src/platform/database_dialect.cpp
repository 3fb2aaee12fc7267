// The dialect on SQLite's user functions, collations and authorizer.
#include "platform/database_dialect.h"

#include <sqlite3.h>

#include <memory>
#include <string>

#include "platform/date_time.h"
#include "platform/like_pattern.h"
#include "platform/text_folding.h"

namespace quillon {
namespace {

constexpr int kValueLimit = 16 * 1024 * 1024;  // bytes of one value, and of a select's text

std::string_view TextOf(sqlite3_value* value) {
  const auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(value));
  return bytes == nullptr
             ? std::string_view()
             : std::string_view(bytes, static_cast<std::size_t>(sqlite3_value_bytes(value)));
}

void ResultText(sqlite3_context* context, std::string_view text) {
  sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

// Format(date, pattern): a null gives the empty text, a text that is no date itself.
void FormatFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
  constexpr std::string_view kDayPattern = "YYYY-MM-DD";
  if (sqlite3_value_type(arguments[0]) == SQLITE_NULL) return ResultText(context, "");
  const std::string_view stored = TextOf(arguments[0]);
  const std::string_view pattern = TextOf(arguments[1]);
  const auto moment = ParseDateTime(stored);
  if (!moment) return ResultText(context, stored);
  // The stored form begins with the day: what every list asks for is there already.
  if (pattern == kDayPattern) return ResultText(context, stored.substr(0, kDayPattern.size()));
  ResultText(context, FormatDate(*moment, pattern));
}

// The engine's own "format" prints by a pattern of any size; with other than two arguments
// the name is refused.
void RefuseFormat(sqlite3_context* context, int, sqlite3_value**) {
  sqlite3_result_error(context, "Format takes a date and a pattern", -1);
}

void DeletePattern(void* pattern) {
  delete static_cast<LikePattern*>(pattern);
}

// The pattern of a select is the same for all its rows: it is parsed once and kept by the
// engine, which may also drop it at once.
void LikeFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
  const bool isNull = sqlite3_value_type(arguments[0]) == SQLITE_NULL ||
                      sqlite3_value_type(arguments[1]) == SQLITE_NULL;
  if (isNull) return sqlite3_result_null(context);
  const std::string_view text = TextOf(arguments[1]);
  if (const auto* kept = static_cast<LikePattern*>(sqlite3_get_auxdata(context, 0))) {
    return sqlite3_result_int(context, kept->Matches(text) ? 1 : 0);
  }
  auto pattern = std::make_unique<LikePattern>(TextOf(arguments[0]));
  sqlite3_result_int(context, pattern->Matches(text) ? 1 : 0);
  sqlite3_set_auxdata(context, 0, pattern.release(), DeletePattern);
}

int NoCaseCollation(void*, int leftSize, const void* left, int rightSize, const void* right) {
  return CompareFolded({static_cast<const char*>(left), static_cast<std::size_t>(leftSize)},
                       {static_cast<const char*>(right), static_cast<std::size_t>(rightSize)});
}

bool IsOwnTable(const char* name) {
  const std::string_view table = name == nullptr ? "" : name;
  return !table.starts_with("sqlite_") && !table.starts_with("pragma_");
}

// The functions of the report selects. Nothing else is needed, and much of what the
// engine has besides builds huge values or reaches files.
bool IsKnownFunction(std::string_view name) {
  return name == "count" || name == "format" || name == "like";
}

int Authorize(void*, int action, const char* first, const char* second, const char* database,
              const char*) {
  switch (action) {
    case SQLITE_SELECT:
      return SQLITE_OK;
    case SQLITE_FUNCTION:
      return IsKnownFunction(second) ? SQLITE_OK : SQLITE_DENY;
    case SQLITE_READ: {
      const bool ownFile = database == nullptr || std::string_view(database) == "main";
      return ownFile && IsOwnTable(first) ? SQLITE_OK : SQLITE_DENY;
    }
    default:
      return SQLITE_DENY;
  }
}

}  // namespace

void RegisterDialect(sqlite3* handle) {
  LoadFolding();  // with the first handle, and not in the middle of a page
  constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
  sqlite3_create_function_v2(handle, "format", 2, kFlags, nullptr, FormatFunction, nullptr, nullptr,
                             nullptr);
  sqlite3_create_function_v2(handle, "format", -1, kFlags, nullptr, RefuseFormat, nullptr, nullptr,
                             nullptr);
  for (const int arguments : {2, 3}) {
    sqlite3_create_function_v2(handle, "like", arguments, kFlags, nullptr, LikeFunction, nullptr,
                               nullptr, nullptr);
  }
  sqlite3_create_collation_v2(handle, "NOCASE", SQLITE_UTF8, nullptr, NoCaseCollation, nullptr);
}

void GuardReader(sqlite3* handle) {
  sqlite3_set_authorizer(handle, Authorize, nullptr);
  sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, kValueLimit);
  sqlite3_limit(handle, SQLITE_LIMIT_ATTACHED, 0);
}

}  // namespace quillon
