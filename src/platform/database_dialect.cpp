// The dialect on SQLite's user functions, collations and authorizer.
#include "platform/database_dialect.h"

#include <sqlite3.h>

#include <clocale>
#include <cwctype>
#include <memory>
#include <string>
#include <vector>

#include "platform/date_time.h"

namespace quillon {
namespace {

constexpr int kValueLimit = 16 * 1024 * 1024;  // bytes of one value, and of a select's text

// Letters are folded by the table of the C.UTF-8 locale, which is part of every Debian.
locale_t FoldingLocale() {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

// The next character of a UTF-8 text, folded to lower case. A byte that begins no
// character stands for itself, so nothing is ever skipped.
char32_t NextFolded(std::string_view text, std::size_t& position) {
  const auto byte = static_cast<unsigned char>(text[position]);
  if (byte < 0x80) {
    ++position;
    return byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte;
  }
  const std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
  if (length == 1 || position + length > text.size()) {
    ++position;
    return byte;
  }
  char32_t character = byte & (0xFFu >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    character = (character << 6) | (static_cast<unsigned char>(text[position + i]) & 0x3Fu);
  }
  position += length;
  const locale_t locale = FoldingLocale();
  if (locale == nullptr) return character;  // no locale, no letters beyond ASCII
  return static_cast<char32_t>(towlower_l(static_cast<wint_t>(character), locale));
}

std::u32string Folded(std::string_view text) {
  std::u32string folded;
  folded.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    folded += NextFolded(text, position);
  }
  return folded;
}

// One piece of a LIKE pattern.
struct Element {
  enum class Kind { kAnyRun, kAnyOne, kCharacter, kList };
  Kind kind;
  char32_t character = 0;
  std::u32string list;
};

using Elements = std::vector<Element>;

// Adds the bracket list that begins at the front of the pattern and takes it off. "[]"
// stands for nothing; an unclosed "[" is that character.
void TakeList(std::u32string_view& pattern, Elements& elements) {
  const std::size_t close = pattern.find(U']');
  if (close == std::u32string_view::npos) {
    elements.push_back({Element::Kind::kCharacter, U'[', {}});
    pattern.remove_prefix(1);
    return;
  }
  if (close > 1) {
    elements.push_back({Element::Kind::kList, 0, std::u32string(pattern.substr(1, close - 1))});
  }
  pattern.remove_prefix(close + 1);
}

Elements ParsePattern(std::u32string_view pattern) {
  Elements elements;
  while (!pattern.empty()) {
    const char32_t character = pattern.front();
    if (character == U'[') {
      TakeList(pattern, elements);
      continue;
    }
    const auto kind = character == U'%'   ? Element::Kind::kAnyRun
                      : character == U'_' ? Element::Kind::kAnyOne
                                          : Element::Kind::kCharacter;
    elements.push_back({kind, character, {}});
    pattern.remove_prefix(1);
  }
  return elements;
}

bool InList(char32_t character, std::u32string_view list) {
  const bool negated = list.size() > 1 && list.front() == U'!';
  if (negated) list.remove_prefix(1);
  for (std::size_t i = 0; i < list.size(); ++i) {
    const bool isRange = i + 2 < list.size() && list[i + 1] == U'-';
    const char32_t last = isRange ? list[i + 2] : list[i];
    if (character >= list[i] && character <= last) return !negated;
    if (isRange) i += 2;
  }
  return negated;
}

bool MatchesOne(char32_t character, const Element& element) {
  if (element.kind == Element::Kind::kList) return InList(character, element.list);
  return element.kind == Element::Kind::kAnyOne || element.character == character;
}

// Matches without recursion: where a piece does not fit, it is enough to let the last
// "%" take one character more.
bool Matches(std::u32string_view text, const Elements& elements) {
  std::size_t t = 0;
  std::size_t e = 0;
  std::size_t afterRun = 0;  // the piece behind the last "%"; 0 before there is one
  std::size_t runEnd = 0;    // the first character that this "%" leaves
  while (t < text.size() || e < elements.size()) {
    if (e < elements.size() && elements[e].kind == Element::Kind::kAnyRun) {
      afterRun = ++e;
      runEnd = t;
    } else if (e < elements.size() && t < text.size() && MatchesOne(text[t], elements[e])) {
      ++t;
      ++e;
    } else if (afterRun != 0 && runEnd < text.size()) {
      t = ++runEnd;
      e = afterRun;
    } else {
      return false;
    }
  }
  return true;
}

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
  // The stored form begins with the day: what every list asks for needs no parsing.
  constexpr std::size_t kStoredLength = 19;
  if (pattern == kDayPattern && stored.size() == kStoredLength) {
    return ResultText(context, stored.substr(0, kDayPattern.size()));
  }
  const auto moment = ParseDateTime(stored);
  ResultText(context, moment ? FormatDate(*moment, pattern) : std::string(stored));
}

// The engine's own "format" prints by a pattern of any size; with other than two arguments
// the name is refused.
void RefuseFormat(sqlite3_context* context, int, sqlite3_value**) {
  sqlite3_result_error(context, "Format takes a date and a pattern", -1);
}

void DeletePattern(void* elements) {
  delete static_cast<Elements*>(elements);
}

// The pattern of a select is the same for all its rows: it is parsed once and kept by the
// engine, which may also drop it at once.
void LikeFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
  const bool isNull = sqlite3_value_type(arguments[0]) == SQLITE_NULL ||
                      sqlite3_value_type(arguments[1]) == SQLITE_NULL;
  if (isNull) return sqlite3_result_null(context);
  const std::u32string text = Folded(TextOf(arguments[1]));
  if (const auto* kept = static_cast<Elements*>(sqlite3_get_auxdata(context, 0))) {
    return sqlite3_result_int(context, Matches(text, *kept) ? 1 : 0);
  }
  auto elements = std::make_unique<Elements>(ParsePattern(Folded(TextOf(arguments[0]))));
  sqlite3_result_int(context, Matches(text, *elements) ? 1 : 0);
  sqlite3_set_auxdata(context, 0, elements.release(), DeletePattern);
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

int CompareFolded(std::string_view left, std::string_view right) {
  std::size_t l = 0;
  std::size_t r = 0;
  while (l < left.size() && r < right.size()) {
    const char32_t a = NextFolded(left, l);
    const char32_t b = NextFolded(right, r);
    if (a != b) return a < b ? -1 : 1;
  }
  if (l == left.size() && r == right.size()) return 0;
  return l == left.size() ? -1 : 1;
}

bool MatchesLike(std::string_view text, std::string_view pattern) {
  return Matches(Folded(text), ParsePattern(Folded(pattern)));
}

}  // namespace quillon
