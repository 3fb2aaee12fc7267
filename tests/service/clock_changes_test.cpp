// Days over which the wall clock is changed, or the calendar does something of its own. Where the
// passes of a day come in their order, each day is imported once and each mail goes out once;
// where the clock is put back or forward by days, or the report comes late in the evening, the last
// tests say what is to be expected.
#include <ostream>

#include "service/days_fixture.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;
using std::chrono::minutes;

struct Period {
  std::string name;
  std::string from;
  std::string to;
  std::string at;  // the clock is changed, if at all
  std::string change;
  Lines days;  // that are to be in the history, each once
  Lines mails;
  minutes report = minutes(3 * 60 + 10);
};

std::ostream& operator<<(std::ostream& out, const Period& period) {
  return out << period.name;
}

// Of the nights from the 30th of March to the 1st of April 2024, and to the 28th of October.
const Lines kSpringDays = {"2024-03-29", "2024-03-30", "2024-03-31"};
const Lines kSpringMails = {"2024-03-30 Daily", "2024-03-31 Daily", "2024-04-01 Daily",
                            "2024-04-01 Weekly", "2024-04-01 Monthly"};
const Lines kAutumnDays = {"2024-10-25", "2024-10-26", "2024-10-27"};
const Lines kAutumnMails = {"2024-10-26 Daily", "2024-10-27 Daily", "2024-10-28 Daily",
                            "2024-10-28 Weekly"};

const std::string kSpring = "2024-03-30 00:00:00";
const std::string kSpringEnd = "2024-04-02 00:00:00";
const std::string kAutumn = "2024-10-26 00:00:00";
const std::string kAutumnEnd = "2024-10-29 00:00:00";

const Period kPeriods[] = {
    {"SummerTimeBegins", kSpring, kSpringEnd, "2024-03-31 02:00:00", "2024-03-31 03:00:00",
     kSpringDays, kSpringMails},
    {"SummerTimeBeginsBehindTheReport", kSpring, kSpringEnd, "2024-03-31 02:00:00",
     "2024-03-31 03:00:00", kSpringDays, kSpringMails, minutes(60 + 50)},
    {"SummerTimeBeginsAtMidnight", kSpring, kSpringEnd, "2024-03-31 00:00:00",
     "2024-03-31 01:00:00", kSpringDays, kSpringMails},
    {"SummerTimeEnds", kAutumn, kAutumnEnd, "2024-10-27 03:00:00", "2024-10-27 02:00:00",
     kAutumnDays, kAutumnMails},
    {"SummerTimeEndsAndTheReportComesTwice", kAutumn, kAutumnEnd, "2024-10-27 03:00:00",
     "2024-10-27 02:00:00", kAutumnDays, kAutumnMails, minutes(2 * 60 + 30)},
    {"SummerTimeEndsBehindTheImport", kAutumn, kAutumnEnd, "2024-10-27 03:00:00",
     "2024-10-27 02:00:00", kAutumnDays, kAutumnMails, minutes(60 + 30)},
    {"SummerTimeEndsAtMidnight", kAutumn, kAutumnEnd, "2024-10-27 00:00:00", "2024-10-26 23:00:00",
     kAutumnDays, kAutumnMails},
    {"ClockIsPutBackWithinTheDay", kAutumn, kAutumnEnd, "2024-10-27 09:30:00",
     "2024-10-27 03:30:00", kAutumnDays, kAutumnMails},
    {"ClockIsPutBackBeforeTheReport", kAutumn, kAutumnEnd, "2024-10-27 09:30:00",
     "2024-10-27 01:30:00", kAutumnDays, kAutumnMails},
    {"ClockIsPutBackOverMidnight", kAutumn, kAutumnEnd, "2024-10-27 00:30:00",
     "2024-10-26 23:30:00", kAutumnDays, kAutumnMails},
    {"ClockIsPutBackADayBehindTheImport", kAutumn, kAutumnEnd, "2024-10-27 05:00:00",
     "2024-10-26 05:00:00", kAutumnDays, kAutumnMails},
    {"ClockIsPutForwardWithinTheDay", kAutumn, kAutumnEnd, "2024-10-27 03:30:00",
     "2024-10-27 21:30:00", kAutumnDays, kAutumnMails},
    {"LeapDay",
     "2024-02-28 00:00:00",
     "2024-03-02 00:00:00",
     "",
     "",
     {"2024-02-27", "2024-02-28", "2024-02-29"},
     {"2024-02-28 Daily", "2024-02-29 Daily", "2024-03-01 Daily", "2024-03-01 Monthly"}},
    {"EndOfFebruaryInAnotherYear",
     "2023-02-28 00:00:00",
     "2023-03-02 00:00:00",
     "",
     "",
     {"2023-02-27", "2023-02-28"},
     {"2023-02-28 Daily", "2023-03-01 Daily", "2023-03-01 Monthly"}},
    {"EndOfTheYear",
     "2023-12-31 00:00:00",
     "2024-01-03 00:00:00",
     "",
     "",
     {"2023-12-30", "2023-12-31", "2024-01-01"},
     {"2023-12-31 Daily", "2024-01-01 Daily", "2024-01-01 Weekly", "2024-01-01 Monthly",
      "2024-01-02 Daily"}},
};

class ClockChangesTest : public DaysTest, public testing::WithParamInterface<Period> {};

INSTANTIATE_TEST_SUITE_P(Periods, ClockChangesTest, testing::ValuesIn(kPeriods),
                         [](const auto& period) { return period.param.name; });

TEST_P(ClockChangesTest, EachDayIsImportedOnceAndEachMailGoesOutOnce) {
  const Period& period = GetParam();
  reportTime = period.report;
  if (!period.at.empty()) SetClock(period.at, period.change);
  Run(period.from, period.to);
  EXPECT_EQ(Days(), period.days);
  EXPECT_EQ(DaysOfSums(), period.days);
  EXPECT_EQ(sent, period.mails);
  EXPECT_EQ(site.Events(), Lines{});
}

class ClockPutByDaysTest : public DaysTest {};

TEST_F(ClockPutByDaysTest, DaysThatAreLeftOutAreMissing) {
  SetClock("2024-10-27 01:00:00", "2024-10-29 12:00:00");
  Run(kAutumn, "2024-10-31 00:00:00");
  EXPECT_EQ(Days(), (Lines{"2024-10-25", "2024-10-29"}));
  EXPECT_EQ(sent, (Lines{"2024-10-26 Daily", "2024-10-30 Daily"}));
}

// The mark tells the day of the last import alone: a day that comes again behind another one is
// a new one, where the product reports it again.
TEST_F(ClockPutByDaysTest, DaysThatComeAgainAreImportedAgain) {
  SetClock("2024-10-28 05:00:00", "2024-10-26 05:00:00");
  Run(kAutumn, kAutumnEnd);
  EXPECT_EQ(Days(), (Lines{"2024-10-25", "2024-10-26", "2024-10-26", "2024-10-27", "2024-10-27"}));
  EXPECT_EQ(sent,
            (Lines{"2024-10-26 Daily", "2024-10-27 Daily", "2024-10-28 Daily", "2024-10-28 Weekly",
                   "2024-10-27 Daily", "2024-10-28 Daily", "2024-10-28 Weekly"}));
}

// Its report is there already when the day comes again.
TEST_F(ClockPutByDaysTest, ReportThatIsAheadIsImportedAtMidnightOfItsDay) {
  SetClock("2024-10-27 03:30:00", "2024-10-26 22:30:00");
  Run(kAutumn, kAutumnEnd);
  EXPECT_EQ(Days(), kAutumnDays);
  EXPECT_EQ(sent, kAutumnMails);
}

class LateReportTest : public DaysTest {};

// The import of the last hour files the day under itself, and the next one does not replace it.
TEST_F(LateReportTest, ReportBehindTheLastHourBeginsIsFiledUnderItsOwnDay) {
  reportTime = minutes(22 * 60 + 40);
  Run("2024-10-26 12:00:00", "2024-10-28 00:00:00");
  EXPECT_EQ(Days(), (Lines{"2024-10-26", "2024-10-27"}));
  EXPECT_EQ(sent, (Lines{"2024-10-26 Daily", "2024-10-27 Daily"}));
}

TEST_F(LateReportTest, ReportBehindTheLastPassOfTheDayIsNeverImported) {
  reportTime = minutes(23 * 60 + 10);
  Run("2024-10-26 12:00:00", "2024-10-28 12:00:00");
  EXPECT_EQ(Days(), Lines{});
  EXPECT_EQ(sent, Lines{});
}

TEST_F(LateReportTest, ReportBehindTheLastPassIsImportedByAServiceThatStartsThen) {
  reportTime = minutes(23 * 60 + 10);
  Run("2024-10-26 12:00:00", "2024-10-26 23:30:00");
  RunAnew("2024-10-26 23:30:00", "2024-10-28 12:00:00");
  EXPECT_EQ(Days(), Lines{"2024-10-26"});
  EXPECT_EQ(sent, Lines{"2024-10-26 Daily"});
}

// The hour of the last pass is zero in a service that has had none.
TEST_F(LateReportTest, ReportOfTheFirstHourIsImportedAtOneByAServiceThatStartsInIt) {
  reportTime = minutes(20);
  RunAnew("2024-10-26 00:10:00", "2024-10-26 00:59:00");
  EXPECT_EQ(Days(), Lines{});
  Run("2024-10-26 00:59:00", "2024-10-26 02:00:00");
  EXPECT_EQ(Days(), Lines{"2024-10-25"});
}

// Its mark is that of the moment at which it ends.
TEST_F(LateReportTest, ImportThatRunsOverMidnightKeepsTheNextDayOut) {
  reportTime = minutes(22 * 60 + 40);
  onJob = [this](const std::string& job) {
    constexpr std::chrono::milliseconds kLastMoment{50};
    const DateTime midnight = ParseDateTime("2024-10-27").value();
    if (job == "Import" && site.clock.Now() >= midnight - std::chrono::hours(1) &&
        site.clock.Now() < midnight) {
      site.clock.Set(midnight - kLastMoment);
    }
  };
  Run("2024-10-26 12:00:00", kAutumnEnd);
  EXPECT_EQ(Days(), (Lines{"2024-10-26", "2024-10-28"}));
  EXPECT_EQ(sent, (Lines{"2024-10-27 Daily", "2024-10-28 Daily", "2024-10-28 Weekly"}));
}

}  // namespace
}  // namespace quillon
