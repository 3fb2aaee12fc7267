// Which day of a port's history lands where: the walk over the control rows, newest first.
#include <algorithm>
#include <numeric>

#include "queries/hist45_fixture.h"

namespace quillon {
namespace {

using Ages = std::vector<int>;  // of days, in days before today

// 1, 2, ... to that age.
Ages UpTo(int age) {
  Ages ages(static_cast<std::size_t>(age));
  std::iota(ages.begin(), ages.end(), 1);
  return ages;
}

class SwitchHist45DaysTest : public Hist45Test {
 protected:
  static constexpr const char* kTableBefore = "VLAN_Kept";
  static constexpr const char* kDayBefore = "2001-01-01 00:00:00";

  SwitchHist45DaysTest() { History("CREATE TABLE VLAN_Kept AS SELECT * FROM VLAN_Day01"); }

  // The days as an earlier report left them.
  void FillDays() {
    PortRecord().TrafficDate.Fill(MakeDateTime({2001, 1, 1}));
    PortRecord().HistTable.Fill(kTableBefore);
  }

  std::string DateAt(int position) { return DateTimeText(PortRecord().TrafficDate[position]); }
  std::string TableAt(int position) { return PortRecord().HistTable[position]; }

  // A control row with this moment, as an SQL literal, and a table's name, as one too.
  void AddControlRow(const std::string& moment, const std::string& histTable) const {
    History(InsertPortControl(moment, histTable));
  }
};

TEST_F(SwitchHist45DaysTest, WalkGoesFromYesterdayBackForAsLongAsThereAreRows) {
  struct Case {
    std::string name;
    Ages rows;     // ages of the control rows
    Ages matched;  // ages of the days that get their table
    int reached;   // days that the walk looks at; the older ones keep what they held
  };
  const Case cases[] = {
      {"no row", {}, {}, 0},
      {"yesterday", {1}, {1}, 1},
      {"ten rows", UpTo(10), UpTo(10), 10},
      {"one day short of all", UpTo(44), UpTo(44), 44},
      {"all days", UpTo(45), UpTo(45), 45},
      {"one day more than all", UpTo(46), UpTo(45), 45},
      {"yesterday missing", {2, 3}, {2, 3}, 3},
      {"a gap", {1, 4, 5}, {1, 4, 5}, 5},
      {"gaps all over", {2, 7, 30}, {2, 7, 30}, 30},
      {"the oldest day alone", {45}, {45}, 45},
      {"a day too old alone", {46}, {}, 45},
      {"a day too old behind others", {1, 2, 46}, {1, 2}, 45},
      {"years old", {1, 800}, {1}, 45},
      {"today before older rows", {0, 1, 2}, {}, 45},
      {"today alone", {0}, {}, 45},
      {"tomorrow before all days", {-1, 1, 2, 45}, {}, 45},
      {"a future far away", {-400, 1}, {}, 45},
      {"two rows of yesterday", {1, 1, 2, 3}, {1}, 45},
      {"two rows of an older day", {1, 2, 2, 3}, {1, 2}, 45},
      {"two rows of the last day", {1, 2, 2}, {1, 2}, 45},
      {"two rows of the oldest day", {1, 45, 45}, {1, 45}, 45},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    History("DELETE FROM VLAN_HistCtrl");
    // Oldest first, as the rotation leaves them: the order of the walk is its own.
    for (auto age = row.rows.rbegin(); age != row.rows.rend(); ++age) {
      AddPortDay(*age, PortTable(*age));
    }
    FillDays();
    ReportPort();
    for (int age = 1; age <= 45; ++age) {
      const int position = PositionOf(age);
      const bool reached = age <= row.reached;
      const bool matched =
          std::find(row.matched.begin(), row.matched.end(), age) != row.matched.end();
      EXPECT_EQ(DateAt(position), reached ? house.DayBefore(age) + " 00:00:00" : kDayBefore)
          << position;
      EXPECT_EQ(TableAt(position), !reached  ? kTableBefore
                                   : matched ? PortTable(age)
                                             : "")
          << position;
    }
  }
  ExpectNoEvent();
}

TEST_F(SwitchHist45DaysTest, OldestDayComesFirst) {
  AddPortDay(45, "VLAN_Day17");
  AddPortDay(44, "VLAN_Day18");
  AddPortDay(2, "VLAN_Day03");
  AddPortDay(1, "VLAN_Day01");
  ReportPort();
  EXPECT_EQ(DateAt(1), "2024-03-18 00:00:00");
  EXPECT_EQ(TableAt(1), "VLAN_Day17");
  EXPECT_EQ(DateAt(2), "2024-03-19 00:00:00");
  EXPECT_EQ(TableAt(2), "VLAN_Day18");
  EXPECT_EQ(DateAt(3), "2024-03-20 00:00:00");
  EXPECT_EQ(TableAt(3), "");
  EXPECT_EQ(DateAt(44), "2024-04-30 00:00:00");
  EXPECT_EQ(TableAt(44), "VLAN_Day03");
  EXPECT_EQ(DateAt(45), "2024-05-01 00:00:00");
  EXPECT_EQ(TableAt(45), "VLAN_Day01");
  ExpectNoEvent();
}

TEST_F(SwitchHist45DaysTest, CalendarDaysAreCountedAcrossMonthsAndYears) {
  struct Case {
    std::string now;
    std::string newest;
    std::string oldest;
  };
  const Case cases[] = {
      {"2024-05-02 12:00:00", "2024-05-01", "2024-03-18"},
      {"2024-03-01 00:00:00", "2024-02-29", "2024-01-16"},
      {"2023-03-01 23:59:59", "2023-02-28", "2023-01-15"},
      {"2024-01-01 00:00:01", "2023-12-31", "2023-11-17"},
      {"2024-02-14 06:30:00", "2024-02-13", "2023-12-31"},
  };
  for (const Case& row : cases) {
    History("DELETE FROM VLAN_HistCtrl");
    house.clock.Set(row.now);
    AddControlRow("'" + row.newest + " 03:10:00'", "'VLAN_Day01'");
    AddControlRow("'" + row.oldest + " 03:10:00'", "'VLAN_Day02'");
    ReportPort();
    EXPECT_EQ(DateAt(45), row.newest + " 00:00:00") << row.now;
    EXPECT_EQ(TableAt(45), "VLAN_Day01") << row.now;
    EXPECT_EQ(DateAt(1), row.oldest + " 00:00:00") << row.now;
    EXPECT_EQ(TableAt(1), "VLAN_Day02") << row.now;
  }
}

TEST_F(SwitchHist45DaysTest, TimeOfAControlRowDoesNotMatter) {
  for (const std::string moment :
       {"2024-05-01 00:00:00", "2024-05-01 12:00:00", "2024-05-01 23:59:59", "2024-05-01"}) {
    History("DELETE FROM VLAN_HistCtrl");
    AddControlRow("'" + moment + "'", "'VLAN_Day01'");
    FillDays();
    ReportPort();
    EXPECT_EQ(DateAt(45), "2024-05-01 00:00:00") << moment;
    EXPECT_EQ(TableAt(45), "VLAN_Day01") << moment;
    EXPECT_EQ(DateAt(44), kDayBefore) << moment;
  }
}

TEST_F(SwitchHist45DaysTest, LastSecondOfTheDayBeforeIsAnotherDay) {
  AddControlRow("'2024-04-30 23:59:59'", "'VLAN_Day01'");
  ReportPort();
  EXPECT_EQ(TableAt(45), "");
  EXPECT_EQ(TableAt(44), "VLAN_Day01");
}

TEST_F(SwitchHist45DaysTest, MidnightInTheWaitsChangesNoDay) {
  house.clock.Set("2024-05-02 23:59:59");
  house.clock.Advance(std::chrono::milliseconds(900));
  AddPortHistory(1);
  AddPortHistory(45);
  ReportPort();
  ASSERT_EQ(DayText(house.clock.Now()), "2024-05-03");
  EXPECT_EQ(DateAt(45), "2024-05-01 00:00:00");
  EXPECT_EQ(Figures(45)[0], "6 M");
  EXPECT_EQ(DateAt(1), "2024-03-18 00:00:00");
  EXPECT_EQ(Figures(1)[0], "6 M");
}

TEST_F(SwitchHist45DaysTest, OfTwoRowsOfADayTheLaterMomentWins) {
  AddControlRow("'2024-05-01 03:10:00'", "'VLAN_Day01'");
  AddControlRow("'2024-05-01 04:20:00'", "'VLAN_Day02'");
  AddControlRow("'2024-05-01 03:30:00'", "'VLAN_Day03'");
  ReportPort();
  EXPECT_EQ(TableAt(45), "VLAN_Day02");
  EXPECT_EQ(TableAt(44), "");
  EXPECT_EQ(TableAt(1), "");
}

TEST_F(SwitchHist45DaysTest, OfTwoRowsOfAMomentTheFirstStoredWins) {
  AddControlRow("'2024-05-01 03:10:00'", "'VLAN_Day09'");
  AddControlRow("'2024-05-01 03:10:00'", "'VLAN_Day02'");
  ReportPort();
  EXPECT_EQ(TableAt(45), "VLAN_Day09");
}

TEST_F(SwitchHist45DaysTest, RowWithoutADateStandsBehindTheOthersAndMatchesNoDay) {
  AddControlRow("NULL", "'VLAN_Day07'");
  AddPortDay(2, "VLAN_Day02");
  FillDays();
  ReportPort();
  EXPECT_EQ(TableAt(45), "");
  EXPECT_EQ(TableAt(44), "VLAN_Day02");
  // The walk stays on it to the end, so no position keeps what it held.
  EXPECT_EQ(TableAt(43), "");
  EXPECT_EQ(DateAt(1), "2024-03-18 00:00:00");
  EXPECT_EQ(TableAt(1), "");
  ExpectNoEvent();
}

TEST_F(SwitchHist45DaysTest, MatchingRowWithoutATableEndsTheReport) {
  AddPortDay(1, "VLAN_Day01");
  AddControlRow("'2024-04-30 03:10:00'", "NULL");
  AddPortDay(3, "VLAN_Day03");
  FillDays();
  ReportPort();
  ExpectFailure("modSelectSql_SqHist45SwitchControl", "HistTable");
  EXPECT_EQ(TableAt(45), "VLAN_Day01");
  EXPECT_EQ(DateAt(44), "2024-04-30 00:00:00");
  EXPECT_EQ(TableAt(44), kTableBefore);
  EXPECT_EQ(DateAt(43), kDayBefore);
  EXPECT_EQ(PortRecord().Device, "");
}

TEST_F(SwitchHist45DaysTest, RowThatMatchesNoDayNeedsNoTable) {
  AddControlRow("'2024-05-02 03:10:00'", "NULL");
  ReportPort();
  EXPECT_EQ(DateAt(1), "2024-03-18 00:00:00");
  EXPECT_EQ(Figures(45), kSixDashes);
  ExpectNoEvent();
}

TEST_F(SwitchHist45DaysTest, EmptyTableNameIsAMissingDayAndTheWalkGoesOn) {
  AddPortDay(1, "");
  AddPortHistory(2);
  ReportPort();
  EXPECT_EQ(TableAt(45), "");
  EXPECT_EQ(Figures(45), kSixDashes);
  EXPECT_EQ(Figures(44)[0], "6 M");
  ExpectNoEvent();
}

TEST_F(SwitchHist45DaysTest, OverriddenReportDateStandsForToday) {
  AddControlRow("'2014-11-06 03:10:00'", "'VLAN_Day01'");
  AddControlRow("'2014-09-23 03:10:00'", "'VLAN_Day02'");
  house.settings.RepDateOverride = true;
  for (const std::string day : {"2014-11-07", "2014-11-07 18:30:00"}) {
    FillDays();
    house.settings.txtRepDate = day;
    ReportPort();
    EXPECT_EQ(DateAt(45), "2014-11-06 00:00:00") << day;
    EXPECT_EQ(TableAt(45), "VLAN_Day01") << day;
    EXPECT_EQ(DateAt(1), "2014-09-23 00:00:00") << day;
    EXPECT_EQ(TableAt(1), "VLAN_Day02") << day;
  }
  ExpectNoEvent();
}

TEST_F(SwitchHist45DaysTest, ReportDateIsNotLookedAtWithoutTheOverride) {
  AddPortDay(1, "VLAN_Day01");
  house.settings.txtRepDate = "someday";
  ReportPort();
  EXPECT_EQ(DateAt(45), "2024-05-01 00:00:00");
  ExpectNoEvent();
}

TEST_F(SwitchHist45DaysTest, OverriddenReportDateThatIsNoDateEndsTheReport) {
  AddPortDay(1, "VLAN_Day01");
  house.settings.RepDateOverride = true;
  house.settings.txtRepDate = "someday";
  FillDays();
  ReportPort();
  ExpectFailure("modSelectSql_SqHist45SwitchControl", "someday");
  EXPECT_EQ(DateAt(45), kDayBefore);
}

TEST_F(SwitchHist45DaysTest, FreshRecordWithoutControlRowsIsAllDashes) {
  ReportPort();
  for (int position = 1; position <= 45; ++position) {
    EXPECT_EQ(DateAt(position), "1899-12-30 00:00:00") << position;
    EXPECT_EQ(TableAt(position), "") << position;
    EXPECT_EQ(Figures(position), kSixDashes) << position;
    EXPECT_EQ(Bars(position), kSixOnes) << position;
  }
  ExpectNoEvent();
}

TEST_F(SwitchHist45DaysTest, PositionsThatKeepTheirTableAreReadFromItForThePortAskedFor) {
  AddPortHistory(1);
  AddPortHistory(2);
  AddPort(PortTable(1), {{"IfIndex", "9"}, {"InErrorsTot24H", "91"}});
  AddPort(PortTable(2), {{"IfIndex", "9"}, {"InErrorsTot24H", "92"}});
  ReportPort();
  EXPECT_EQ(Figures(44)[4], "2 W38");

  History("DELETE FROM VLAN_HistCtrl WHERE HistTable = 'VLAN_Day02'");
  SqHist45SwitchControl(house.queries, kSlot, 7, 9, "Core", "Gi0/9", false);
  EXPECT_EQ(Figures(45)[4], "91 W38");
  EXPECT_EQ(DateAt(44), "2024-04-30 00:00:00");
  EXPECT_EQ(TableAt(44), "VLAN_Day02");
  EXPECT_EQ(Figures(44)[4], "92 W38");
  ExpectNoEvent();
}

}  // namespace
}  // namespace quillon
