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

// Bytes of one value: as many as a request may become as database text, and few enough for one step
// of the engine.
constexpr int kValueLimit = 256 * 1024;

// Bytes of a text from which on it is worth a look at the time.
constexpr std::size_t kLongText = 1024;

// Steps that one LIKE may take, some 10 ms. A name of two thousand characters is searched for a
// piece of that length.
constexpr std::size_t kLikeLimit = 4'000'000;

std::string_view TextOf(sqlite3_value* value) {
  const auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(value));
  return bytes == nullptr
             ? std::string_view()
             : std::string_view(bytes, static_cast<std::size_t>(sqlite3_value_bytes(value)));
}

void ResultText(sqlite3_context* context, std::string_view text) {
  sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

const SelectLimits& LimitsOf(sqlite3_context* context) {
  return *static_cast<const SelectLimits*>(sqlite3_user_data(context));
}

bool IsTooLate(const SelectLimits& limits, std::string_view one, std::string_view other) {
  return one.size() + other.size() > kLongText && limits.StopIfOver();
}

// Format(date, pattern): a null gives the empty text, a text that is no date itself.
void FormatFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
  constexpr std::string_view kDayPattern = "YYYY-MM-DD";
  if (sqlite3_value_type(arguments[0]) == SQLITE_NULL) return ResultText(context, "");
  const std::string_view stored = TextOf(arguments[0]);
  const std::string_view pattern = TextOf(arguments[1]);
  if (IsTooLate(LimitsOf(context), stored, pattern)) return;
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

void MatchResult(sqlite3_context* context, const LikePattern& pattern, std::string_view text) {
  if (pattern.StepsFor(text.size()) > kLikeLimit) {
    return sqlite3_result_error(context, "the texts of LIKE are too long", -1);
  }
  sqlite3_result_int(context, pattern.Matches(text) ? 1 : 0);
}

// The pattern of a select is the same for all its rows: it is parsed once and kept by the
// engine, which may also drop it at once.
void LikeFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
  const bool isNull = sqlite3_value_type(arguments[0]) == SQLITE_NULL ||
                      sqlite3_value_type(arguments[1]) == SQLITE_NULL;
  if (isNull) return sqlite3_result_null(context);
  const std::string_view patternText = TextOf(arguments[0]);
  const std::string_view text = TextOf(arguments[1]);
  if (IsTooLate(LimitsOf(context), patternText, text)) return;
  if (const auto* kept = static_cast<LikePattern*>(sqlite3_get_auxdata(context, 0))) {
    return MatchResult(context, *kept, text);
  }
  auto pattern = std::make_unique<LikePattern>(patternText);
  MatchResult(context, *pattern, text);
  sqlite3_set_auxdata(context, 0, pattern.release(), DeletePattern);
}

int NoCaseCollation(void* limits, int leftSize, const void* left, int rightSize,
                    const void* right) {
  const std::string_view l(static_cast<const char*>(left), static_cast<std::size_t>(leftSize));
  const std::string_view r(static_cast<const char*>(right), static_cast<std::size_t>(rightSize));
  if (IsTooLate(*static_cast<const SelectLimits*>(limits), l, r)) return 0;
  return CompareFolded(l, r);
}

// A table of which no column is read comes under the name that the select has for it, in any case.
bool BeginsWith(const char* name, std::string_view beginning) {
  return sqlite3_strnicmp(name, beginning.data(), static_cast<int>(beginning.size())) == 0;
}

bool IsOwnTable(const char* name) {
  return name == nullptr || (!BeginsWith(name, "sqlite_") && !BeginsWith(name, "pragma_"));
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

void RegisterDialect(sqlite3* handle, const SelectLimits& limits) {
  LoadFolding();  // with the first handle, and not in the middle of a page
  constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
  void* data = const_cast<SelectLimits*>(&limits);  // the engine's interface knows no const
  sqlite3_create_function_v2(handle, "format", 2, kFlags, data, FormatFunction, nullptr, nullptr,
                             nullptr);
  sqlite3_create_function_v2(handle, "format", -1, kFlags, data, RefuseFormat, nullptr, nullptr,
                             nullptr);
  for (const int arguments : {2, 3}) {
    sqlite3_create_function_v2(handle, "like", arguments, kFlags, data, LikeFunction, nullptr,
                               nullptr, nullptr);
  }
  sqlite3_create_collation_v2(handle, "NOCASE", SQLITE_UTF8, data, NoCaseCollation, nullptr);
}

void GuardReader(sqlite3* handle) {
  sqlite3_set_authorizer(handle, Authorize, nullptr);
  sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, kValueLimit);
  sqlite3_limit(handle, SQLITE_LIMIT_ATTACHED, 0);
}

}  // namespace quillon
