// Local wall-clock date-times on the calendar of <chrono>.
#include "platform/date_time.h"

#include <fmt/format.h>

namespace quillon {
namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::hh_mm_ss;
using std::chrono::local_days;
using std::chrono::milliseconds;
using std::chrono::year_month_day;

// Reads `length` digits at `start`; nothing where one of them is no digit. The caller has looked at
// the length of the text.
std::optional<int> Digits(std::string_view text, std::size_t start, std::size_t length) {
  int value = 0;
  for (const char digit : text.substr(start, length)) {
    if (digit < '0' || digit > '9') return std::nullopt;
    value = value * 10 + (digit - '0');
  }
  return value;
}

bool HasSeparators(std::string_view text, std::size_t first, char separator) {
  return text[first] == separator && text[first + 3] == separator;
}

}  // namespace

DateTime MakeDateTime(const DateTimeParts& parts) {
  const year_month_day date{std::chrono::year(parts.year),
                            std::chrono::month(static_cast<unsigned>(parts.month)),
                            std::chrono::day(static_cast<unsigned>(parts.day))};
  return local_days(date) + std::chrono::hours(parts.hour) + std::chrono::minutes(parts.minute) +
         std::chrono::seconds(parts.second) + milliseconds(parts.millisecond);
}

DateTimeParts PartsOf(DateTime moment) {
  const local_days midnight = floor<days>(moment);
  const year_month_day date{midnight};
  const hh_mm_ss<milliseconds> time{moment - midnight};
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          static_cast<int>(time.hours().count()),
          static_cast<int>(time.minutes().count()),
          static_cast<int>(time.seconds().count()),
          static_cast<int>(time.subseconds().count())};
}

DateTime ZeroDate() {
  return MakeDateTime({1899, 12, 30});
}

std::string FormatDate(DateTime moment, std::string_view pattern) {
  const DateTimeParts parts = PartsOf(moment);
  std::string text;
  while (!pattern.empty()) {
    if (pattern.starts_with("YYYY")) {
      text += fmt::format("{:04}", parts.year);
      pattern.remove_prefix(4);
    } else if (pattern.starts_with("MM")) {
      text += fmt::format("{:02}", parts.month);
      pattern.remove_prefix(2);
    } else if (pattern.starts_with("DD")) {
      text += fmt::format("{:02}", parts.day);
      pattern.remove_prefix(2);
    } else {
      text += pattern.front();
      pattern.remove_prefix(1);
    }
  }
  return text;
}

std::string FormatTime(DateTime moment) {
  const DateTimeParts parts = PartsOf(moment);
  return fmt::format("{:02}:{:02}:{:02}", parts.hour, parts.minute, parts.second);
}

std::string DayText(DateTime moment) {
  return FormatDate(moment, "YYYY-MM-DD");
}

int DaysBetween(DateTime from, DateTime to) {
  return static_cast<int>((floor<days>(to) - floor<days>(from)).count());
}

unsigned WeekdayOf(DateTime moment) {
  return std::chrono::weekday(floor<days>(moment)).c_encoding();
}

std::string DateTimeText(DateTime moment) {
  return DayText(moment) + " " + FormatTime(moment);
}

std::optional<DateTime> ParseDateTime(std::string_view text) {
  constexpr std::size_t kDateLength = 10;      // "YYYY-MM-DD"
  constexpr std::size_t kDateTimeLength = 19;  // "YYYY-MM-DD HH:MM:SS"
  if (text.size() != kDateLength && text.size() != kDateTimeLength) return std::nullopt;
  const auto year = Digits(text, 0, 4);
  const auto month = Digits(text, 5, 2);
  const auto day = Digits(text, 8, 2);
  if (!year || !month || !day || !HasSeparators(text, 4, '-')) return std::nullopt;
  if (!year_month_day(std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                      std::chrono::day(static_cast<unsigned>(*day)))
           .ok()) {
    return std::nullopt;
  }
  if (text.size() == kDateLength) return MakeDateTime({*year, *month, *day});
  const auto hour = Digits(text, 11, 2);
  const auto minute = Digits(text, 14, 2);
  const auto second = Digits(text, 17, 2);
  const bool isTime = hour && minute && second && *hour < 24 && *minute < 60 && *second < 60;
  if (!isTime || text[10] != ' ' || !HasSeparators(text, 13, ':')) return std::nullopt;
  return MakeDateTime({*year, *month, *day, *hour, *minute, *second});
}

}  // namespace quillon
