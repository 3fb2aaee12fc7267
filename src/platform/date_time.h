// Local wall-clock date-times: parts, patterns, the stored text form. No zones.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace quillon {

// A moment on the wall clock of the server, without a zone: "23 hours ago" is
// plain arithmetic on what the clock shows, also across a change to summer time.
using DateTime = std::chrono::local_time<std::chrono::milliseconds>;

struct DateTimeParts {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;
};

DateTime MakeDateTime(const DateTimeParts& parts);
DateTimeParts PartsOf(DateTime moment);

// The zero of dates, 1899-12-30, which a date that was never set shows.
DateTime ZeroDate();

// The date by a display pattern, whose "YYYY", "MM" and "DD" are replaced and
// whose other characters stand as they are.
std::string FormatDate(DateTime moment, std::string_view pattern);

// "HH:MM:SS".
std::string FormatTime(DateTime moment);

// "YYYY-MM-DD": the form in which calendar days are compared.
std::string DayText(DateTime moment);

// Number of calendar-day boundaries from one moment to a later one; below 0 to an earlier one.
int DaysBetween(DateTime from, DateTime to);

// 0 for Sunday to 6 for Saturday.
unsigned WeekdayOf(DateTime moment);

// "YYYY-MM-DD HH:MM:SS": the form of the databases and of the event file.
std::string DateTimeText(DateTime moment);

// Reads "YYYY-MM-DD", with " HH:MM:SS" or without; nothing where the text is no such date.
std::optional<DateTime> ParseDateTime(std::string_view text);

}  // namespace quillon
