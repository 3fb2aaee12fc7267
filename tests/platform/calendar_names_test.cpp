// The names of days and months: which variable of the environment chooses the language, and what
// the names look like in a charset and on a chart.
#include "platform/calendar_names.h"

#include <gtest/gtest.h>

#include <chrono>
#include <clocale>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "render/device_charts.h"
#include "support/environment.h"
#include "support/house.h"

namespace quillon {
namespace {

using namespace std::string_literals;
using Names = std::vector<std::string>;
using Value = std::optional<std::string>;

constexpr const char* kGerman = "de_DE.UTF-8";
constexpr const char* kGermanLatin = "de_DE.ISO-8859-1";
constexpr const char* kSwedish = "sv_SE.UTF-8";
constexpr const char* kSwedishLatin = "sv_SE.ISO-8859-1";
constexpr const char* kCzech = "cs_CZ.UTF-8";
constexpr const char* kMissing = "xx_XX.UTF-8";

const Names kEnglishDays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                            "Thursday", "Friday", "Saturday"};
const Names kEnglishMonths = {"January",   "February", "March",    "April",
                              "May",       "June",     "July",     "August",
                              "September", "October",  "November", "December"};
const Names kGermanDays = {"Sonntag",    "Montag",  "Dienstag", "Mittwoch",
                           "Donnerstag", "Freitag", "Samstag"};
const Names kGermanMonths = {"Januar", "Februar", "M\u00E4rz", "April",   "Mai",      "Juni",
                             "Juli",   "August",  "September", "Oktober", "November", "Dezember"};
const Names kSwedishDays = {"S\u00F6ndag", "M\u00E5ndag", "Tisdag",     "Onsdag",
                            "Torsdag",     "Fredag",      "L\u00F6rdag"};
const Names kSwedishMonths = {"Januari",   "Februari", "Mars",     "April",
                              "Maj",       "Juni",     "Juli",     "Augusti",
                              "September", "Oktober",  "November", "December"};

// The names from Sunday to Saturday; 2024-05-05 is a Sunday.
Names DaysOf(const CalendarNames& calendar) {
  Names names;
  for (int day = 5; day <= 11; ++day)
    names.push_back(calendar.Weekday(MakeDateTime({2024, 5, day})));
  return names;
}

// From January on.
Names MonthsOf(const CalendarNames& calendar) {
  Names names;
  for (int month = 1; month <= 12; ++month) {
    names.push_back(calendar.Month(MakeDateTime({2024, month, 1})));
  }
  return names;
}

class CalendarNamesTest : public testing::Test {
 protected:
  // The names in an environment of these variables alone.
  CalendarNames In(const Value& all, const Value& time, const Value& lang) const {
    environment_.Set("LC_ALL", all);
    environment_.Set("LC_TIME", time);
    environment_.Set("LANG", lang);
    return CalendarNames::OfEnvironment();
  }
  CalendarNames InTime(const std::string& locale) const { return In({}, locale, {}); }

  void SetUp() override { environment_.Set("LOCPATH", LOCALES_PATH); }

 private:
  const Environment environment_{{"LOCPATH", "LC_ALL", "LC_TIME", "LANG", "LANGUAGE"}};
};

TEST_F(CalendarNamesTest, NamesAreEnglishByThemselves) {
  InTime(kGerman);  // what an environment says has no effect on them
  EXPECT_EQ(kEnglishDays, DaysOf(CalendarNames()));
  EXPECT_EQ(kEnglishMonths, MonthsOf(CalendarNames()));
}

TEST_F(CalendarNamesTest, NamesFollowTheLocale) {
  const struct {
    std::string locale;
    Names days;
    Names months;
  } rows[] = {
      {kGerman, kGermanDays, kGermanMonths},    {kGermanLatin, kGermanDays, kGermanMonths},
      {kSwedish, kSwedishDays, kSwedishMonths}, {kSwedishLatin, kSwedishDays, kSwedishMonths},
      {"C", kEnglishDays, kEnglishMonths},      {"POSIX", kEnglishDays, kEnglishMonths},
  };
  for (const auto& row : rows) {
    const CalendarNames calendar = InTime(row.locale);
    EXPECT_EQ(row.days, DaysOf(calendar)) << row.locale;
    EXPECT_EQ(row.months, MonthsOf(calendar)) << row.locale;
  }
}

TEST_F(CalendarNamesTest, FirstVariableThatIsSetNamesTheLocale) {
  const struct {
    Value all;
    Value time;
    Value lang;
    std::string monday;
  } rows[] = {
      {{}, {}, {}, "Monday"},
      {{}, {}, kGerman, "Montag"},
      {{}, kSwedish, kGerman, "M\u00E5ndag"},
      {kGerman, kSwedish, kSwedish, "Montag"},
      {kSwedish, {}, kGerman, "M\u00E5ndag"},
      {kSwedish, {}, {}, "M\u00E5ndag"},
      {{}, "C", kGerman, "Monday"},
      {"POSIX", kGerman, kGerman, "Monday"},
      {"C", {}, kGerman, "Monday"},
      // An empty one counts as not set.
      {"", "", "", "Monday"},
      {"", "", kGerman, "Montag"},
      {"", kSwedish, kGerman, "M\u00E5ndag"},
      {{}, "", kGerman, "Montag"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.monday, DaysOf(In(row.all, row.time, row.lang))[1])
        << row.all.value_or("-") << ", " << row.time.value_or("-") << ", "
        << row.lang.value_or("-");
  }
}

TEST_F(CalendarNamesTest, LocaleThatTheSystemLacksGivesEnglishNames) {
  const struct {
    Value all;
    Value time;
    Value lang;
  } rows[] = {
      {kMissing, {}, {}},      {{}, kMissing, {}},           {{}, {}, kMissing},
      {kMissing, kGerman, {}}, {kMissing, kGerman, kGerman}, {{}, kMissing, kGerman},
  };
  for (const auto& row : rows) {
    const CalendarNames calendar = In(row.all, row.time, row.lang);
    EXPECT_EQ(kEnglishDays, DaysOf(calendar));
    EXPECT_EQ(kEnglishMonths, MonthsOf(calendar));
  }
  for (const std::string locale : {"no locale", "/", "..", "\xFF", "=;"}) {
    EXPECT_EQ(kEnglishDays, DaysOf(InTime(locale))) << locale;
  }
  EXPECT_EQ(kEnglishDays, DaysOf(InTime(std::string(10'000, 'a'))));
}

TEST_F(CalendarNamesTest, ForgottenLocalesGiveEnglishNames) {
  ASSERT_EQ(kGermanDays, DaysOf(InTime(kGerman)));
  EXPECT_EQ(kEnglishDays, DaysOf(In({}, {}, {})));
}

TEST_F(CalendarNamesTest, LocaleOfTheProgramStaysAsItIs) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  In(kGerman, kGerman, kGerman);
  EXPECT_EQ(before, std::setlocale(LC_ALL, nullptr));
  EXPECT_STREQ(".", std::localeconv()->decimal_point);
}

TEST_F(CalendarNamesTest, FirstLetterBeyondAsciiIsInUpperCase) {
  const CalendarNames calendar = InTime(kCzech);
  EXPECT_EQ((Names{"Ned\u011Ble", "Pond\u011Bl\u00ED", "\u00DAter\u00FD", "St\u0159eda",
                   "\u010Ctvrtek", "P\u00E1tek", "Sobota"}),
            DaysOf(calendar));
  // The months have two forms there, which begin alike.
  const Names beginnings = {
      "Led",         "\u00DAn", "B\u0159ez",           "Dub",           "Kv\u011Bt", "\u010Cerv",
      "\u010Cerven", "Srp",     "Z\u00E1\u0159\u00ED", "\u0158\u00EDj", "Listopad",  "Prosin"};
  const Names months = MonthsOf(calendar);
  for (std::size_t month = 0; month < beginnings.size(); ++month) {
    EXPECT_EQ(beginnings[month], months[month].substr(0, beginnings[month].size()));
  }
}

TEST_F(CalendarNamesTest, NamesInACharsetAreItsBytes) {
  const Names latinDays = {"S\xF6ndag", "M\xE5ndag", "Tisdag",   "Onsdag",
                           "Torsdag",   "Fredag",    "L\xF6rdag"};
  for (const std::string locale : {kSwedish, kSwedishLatin}) {
    const CalendarNames swedish = InTime(locale);
    EXPECT_EQ(latinDays, DaysOf(swedish.InCharSet("ISO-8859-1"))) << locale;
    EXPECT_EQ(swedish.Month(MakeDateTime({2024, 5, 1})), "Maj") << locale;
    // Nothing to convert, or nobody knows to what.
    for (const std::string charSet : {"UTF-8", "", "no-such-charset"}) {
      EXPECT_EQ(kSwedishDays, DaysOf(swedish.InCharSet(charSet))) << locale << ", " << charSet;
    }
    EXPECT_EQ(kSwedishDays, DaysOf(swedish)) << "the names themselves stay";
  }
  for (const std::string locale : {kGerman, kGermanLatin}) {
    const CalendarNames german = InTime(locale);
    EXPECT_EQ("M\xE4rz", MonthsOf(german.InCharSet("ISO-8859-1"))[2]) << locale;
    EXPECT_EQ("M\u00E4rz", MonthsOf(german.InCharSet("UTF-8"))[2]) << locale;
  }
  EXPECT_EQ(kEnglishDays, DaysOf(CalendarNames().InCharSet("ISO-8859-1")));
  EXPECT_EQ(kEnglishMonths, MonthsOf(CalendarNames().InCharSet("UTF-8")));
}

TEST_F(CalendarNamesTest, LetterThatTheCharsetLacksBecomesAQuestionMark) {
  const CalendarNames czech = InTime(kCzech);
  EXPECT_EQ(
      (Names{"Ned?le", "Pond?l\xED", "\xDAter\xFD", "St?eda", "?tvrtek", "P\xE1tek", "Sobota"}),
      DaysOf(czech.InCharSet("ISO-8859-1")));
  EXPECT_EQ("\xC8tvrtek", DaysOf(czech.InCharSet("ISO-8859-2"))[4]);
  EXPECT_EQ('\xDA', MonthsOf(czech.InCharSet("ISO-8859-1"))[1][0]);
  EXPECT_EQ("?\xEDj", MonthsOf(czech.InCharSet("ISO-8859-1"))[9].substr(0, 3));
}

TEST_F(CalendarNamesTest, AnyMomentOfADayHasItsName) {
  const struct {
    DateTimeParts moment;
    std::string weekday;
    std::string month;
  } rows[] = {
      {{2024, 2, 29}, "Thursday", "February"},
      {{2024, 2, 29, 23, 59, 59, 999}, "Thursday", "February"},
      {{2024, 3, 1}, "Friday", "March"},
      {{1970, 1, 1}, "Thursday", "January"},
      {{1969, 12, 31, 23, 59, 59, 999}, "Wednesday", "December"},
      {{1899, 12, 30}, "Saturday", "December"},
      {{1899, 12, 30, 23, 59, 59}, "Saturday", "December"},
      {{1899, 12, 31}, "Sunday", "December"},
      {{2100, 2, 28, 12}, "Sunday", "February"},
      {{2100, 3, 1, 12}, "Monday", "March"},
      {{9999, 12, 31}, "Friday", "December"},
  };
  for (const auto& row : rows) {
    const DateTime moment = MakeDateTime(row.moment);
    EXPECT_EQ(row.weekday, CalendarNames().Weekday(moment)) << DateTimeText(moment);
    EXPECT_EQ(row.month, CalendarNames().Month(moment)) << DateTimeText(moment);
  }
}

TEST_F(CalendarNamesTest, TitlesOfAChartAreInTheLanguageAndTheCharset) {
  const struct {
    std::string locale;
    std::string charSet;
    Names titles;  // of the first, the second and the seventh day
  } rows[] = {
      {"C", "ISO-8859-1", {"Sunday, March 3", "Monday, March 4", "Saturday, March 9"}},
      {kGermanLatin,
       "ISO-8859-1",
       {"Sonntag, M\xE4rz 3", "Montag, M\xE4rz 4", "Samstag, M\xE4rz 9"}},
      {kGerman, "UTF-8", {"Sonntag, M\u00E4rz 3", "Montag, M\u00E4rz 4", "Samstag, M\u00E4rz 9"}},
      {kSwedish, "ISO-8859-1", {"S\xF6ndag, Mars 3", "M\xE5ndag, Mars 4", "L\xF6rdag, Mars 9"}},
  };
  House house;
  Days<DateTime>& dates = house.records.Hist45SwitchRep[1].TrafficDate;
  for (int day = 1; day <= 45; ++day) {
    dates[day] = MakeDateTime({2024, 3, 3}) + std::chrono::days(day - 1);
  }
  for (const auto& row : rows) {
    house.calendar = InTime(row.locale);
    house.settings.CharSet = row.charSet;
    std::string chart;
    ChartData45_Switch(house.render, 1, "volume", chart);
    EXPECT_NE(std::string::npos, chart.find("left:88px'><b>" + row.titles[0] + "</b><br>"));
    EXPECT_NE(std::string::npos, chart.find("left:104px'><b>" + row.titles[1] + "</b><br>"));
    EXPECT_NE(std::string::npos, chart.find("left:184px'><b>" + row.titles[2] + "</b><br>"));
    // Sundays are Sundays in any language.
    EXPECT_NE(std::string::npos, chart.find("<th><table width='14px'>")) << row.locale;
  }
}

}  // namespace
}  // namespace quillon
