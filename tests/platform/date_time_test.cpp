// Date-times of the wall clock: parts, display patterns, and which texts are dates.
#include "platform/date_time.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace quillon {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;

const DateTime kMoment = MakeDateTime({2024, 5, 2, 7, 8, 9, 999});

TEST(DateTime, GivesBackThePartsThatItWasMadeOf) {
  const DateTimeParts moments[] = {{2024, 5, 2, 7, 8, 9, 123},
                                   {2024, 2, 29, 23, 59, 59, 999},
                                   {1969, 12, 31, 23, 59, 59, 1},
                                   {1899, 12, 30, 0, 0, 0, 0},
                                   {2000, 1, 1, 0, 0, 0, 0}};
  for (const DateTimeParts& moment : moments) {
    SCOPED_TRACE(DateTimeText(MakeDateTime(moment)));
    const DateTimeParts parts = PartsOf(MakeDateTime(moment));
    EXPECT_EQ(moment.year, parts.year);
    EXPECT_EQ(moment.month, parts.month);
    EXPECT_EQ(moment.day, parts.day);
    EXPECT_EQ(moment.hour, parts.hour);
    EXPECT_EQ(moment.minute, parts.minute);
    EXPECT_EQ(moment.second, parts.second);
    EXPECT_EQ(moment.millisecond, parts.millisecond);
  }
}

TEST(DateTime, ZeroDateIsTheLastButOneDayOf1899) {
  EXPECT_EQ("1899-12-30 00:00:00", DateTimeText(ZeroDate()));
}

TEST(DateTime, TextsArePaddedAndDropTheMilliseconds) {
  EXPECT_EQ("2024-05-02", DayText(kMoment));
  EXPECT_EQ("07:08:09", FormatTime(kMoment));
  EXPECT_EQ("2024-05-02 07:08:09", DateTimeText(kMoment));
  EXPECT_EQ("00:00:00", FormatTime(MakeDateTime({2024, 5, 2})));
  EXPECT_EQ("23:59:59", FormatTime(MakeDateTime({2024, 5, 2, 23, 59, 59, 999})));
}

TEST(DateTime, DisplayPatternReplacesYearMonthAndDay) {
  const struct {
    std::string pattern;
    std::string date;
  } rows[] = {{"YYYY-MM-DD", "2024-05-02"}, {"MM/DD/YYYY", "05/02/2024"},
              {"DD/MM/YYYY", "02/05/2024"}, {"DD.MM.YYYY", "02.05.2024"},
              {"YYYYMMDD", "20240502"},     {"(MM)", "(05)"},
              {"at noon", "at noon"},       {"", ""}};
  for (const auto& row : rows) EXPECT_EQ(row.date, FormatDate(kMoment, row.pattern));
}

TEST(DateTime, ReadsADayAndADayWithItsTime) {
  EXPECT_EQ(MakeDateTime({2024, 5, 2}), ParseDateTime("2024-05-02"));
  EXPECT_EQ(MakeDateTime({2024, 5, 2, 7, 8, 9}), ParseDateTime("2024-05-02 07:08:09"));
  EXPECT_EQ(MakeDateTime({2024, 2, 29, 23, 59, 59}), ParseDateTime("2024-02-29 23:59:59"));
  EXPECT_EQ(ZeroDate(), ParseDateTime("1899-12-30"));
}

TEST(DateTime, ReadsNothingOutOfATextThatIsNoDate) {
  const std::string texts[] = {
      "",           "abc",        "2024",       "2024-05",    "2024-5-2",   "24-05-02",
      "2023-02-29", "2024-02-30", "2024-13-01", "2024-00-10", "2024-05-00", "2024/05/02",
      "02-05-2024", "2024-+5-02", "2024- 5-02", "2024-05-0x", "20x4-05-02", "2024-05-02x",
  };
  for (const std::string& text : texts) EXPECT_EQ(std::nullopt, ParseDateTime(text)) << text;
}

TEST(DateTime, ReadsNothingOutOfATimeThatIsNone) {
  const std::string texts[] = {
      "2024-05-02 24:00:00", "2024-05-02 12:60:00", "2024-05-02 12:00:60", "2024-05-02T12:00:00",
      "2024-05-02 12:00",    "2024-05-02 1:00:00",  "2024-05-02 -1:00:00", "2024-05-02 noon",
  };
  for (const std::string& text : texts) EXPECT_EQ(std::nullopt, ParseDateTime(text)) << text;
}

TEST(DateTime, ReadsNothingWhereASeparatorOrADigitOfTheTimeIsAnother) {
  const std::string texts[] = {
      "2024-05/02",          "2024-05-02 12-00-00", "2024-05-02 12:00-00", "2024-05-02 12-00:00",
      "2024-05-02 1x:00:00", "2024-05-02 12:x0:00", "2024-05-02 12:00:0x", "2024-05/02 12:00:00",
  };
  for (const std::string& text : texts) EXPECT_EQ(std::nullopt, ParseDateTime(text)) << text;
}

TEST(DateTime, ArithmeticIsThatOfTheWallClockOnTheDayOfTheChangeToSummerTime) {
  const DateTime noonAfterChange = MakeDateTime({2024, 3, 31, 12});
  EXPECT_EQ("2024-03-30 13:00:00", DateTimeText(noonAfterChange - hours(23)));
  EXPECT_EQ("2024-03-31 02:30:00", DateTimeText(MakeDateTime({2024, 3, 31, 2, 30})));
}

TEST(DateTime, ArithmeticPassesTheEndsOfDaysMonthsAndYears) {
  EXPECT_EQ("2024-02-29 23:59:59", DateTimeText(MakeDateTime({2024, 3, 1}) - milliseconds(1)));
  EXPECT_EQ("2025-01-01", DayText(MakeDateTime({2024, 12, 31}) + hours(24)));
}

TEST(DateTime, DaysBetweenTwoMomentsAreTheMidnightsBetweenThem) {
  const DateTime evening = MakeDateTime({2024, 2, 28, 23, 59, 59, 999});
  EXPECT_EQ(0, DaysBetween(MakeDateTime({2024, 2, 28}), evening));
  EXPECT_EQ(1, DaysBetween(evening, MakeDateTime({2024, 2, 29})));
  EXPECT_EQ(2, DaysBetween(evening, MakeDateTime({2024, 3, 1, 23, 59, 59})));
  EXPECT_EQ(-1, DaysBetween(MakeDateTime({2024, 2, 29}), evening));
  EXPECT_EQ(366, DaysBetween(MakeDateTime({2024, 1, 1}), MakeDateTime({2025, 1, 1})));
}

TEST(DateTime, WeekdaysCountFromSunday) {
  EXPECT_EQ(6u, WeekdayOf(ZeroDate()));
  EXPECT_EQ(4u, WeekdayOf(MakeDateTime({2024, 2, 29, 23, 59, 59, 999})));
  EXPECT_EQ(6u, WeekdayOf(MakeDateTime({2024, 3, 2})));
  EXPECT_EQ(0u, WeekdayOf(MakeDateTime({2024, 3, 3})));
  EXPECT_EQ(1u, WeekdayOf(MakeDateTime({2024, 3, 4})));
}

}  // namespace
}  // namespace quillon
