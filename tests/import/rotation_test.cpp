// The ring of day tables, which switches and disks have alike: which row is free, and what becomes
// of its table and of its date. What a copy takes over is in switch_history_test and
// disk_history_test.
#include "import/rotation.h"

#include "import/rotation_fixture.h"

namespace quillon {
namespace {

using std::chrono::hours;
using std::chrono::minutes;

INSTANTIATE_TEST_SUITE_P(Kinds, RotationTest, testing::ValuesIn(kKinds),
                         [](const auto& kind) { return kind.param.name; });

TEST_P(RotationTest, RowOfMoreThan45DayBoundariesIsFree) {
  struct Case {
    std::string now;
    std::string date;
    bool isFree;
  };
  const Case cases[] = {
      {"2024-05-02 12:00:00", "'2024-03-18 13:00:00'", false},
      {"2024-05-02 12:00:00", "'2024-03-17 13:00:00'", true},
      // Boundaries between days and not spans of 24 hours: nearly 46 of these are 45 days, and
      // little more than 45 are 46.
      {"2024-05-02 23:59:59", "'2024-03-18 00:00:00'", false},
      {"2024-05-02 00:00:01", "'2024-03-17 23:59:59'", true},
      {"2024-05-02 00:01:00", "'2024-03-18 23:59:00'", false},
      {"2024-05-02 00:00:00", "'2024-03-18 00:00:00'", false},
      {"2024-05-02 00:00:00", "'2024-03-17 00:00:00'", true},
      {"2024-05-02 12:00:00", "'2024-03-18'", false},
      {"2024-05-02 12:00:00", "'2024-03-17'", true},
      // Across the end of a year, and February with and without its 29th.
      {"2024-02-14 12:00:00", "'2023-12-31 12:00:00'", false},
      {"2024-02-14 12:00:00", "'2023-12-30 12:00:00'", true},
      {"2024-03-31 12:00:00", "'2024-02-15 12:00:00'", false},
      {"2024-03-31 12:00:00", "'2024-02-14 12:00:00'", true},
      {"2023-03-31 12:00:00", "'2023-02-14 12:00:00'", false},
      {"2023-03-31 12:00:00", "'2023-02-13 12:00:00'", true},
      {"2024-05-02 12:00:00", "'2000-01-01 00:00:00'", true},
      {"2024-05-02 12:00:00", "'1899-12-30 00:00:00'", true},
      {"2024-05-02 12:00:00", "'2024-05-02 12:00:00'", false},
      {"2024-05-02 12:00:00", "'2024-05-01 13:00:00'", false},
      {"2024-05-02 12:00:00", "'2024-05-03 00:00:00'", false},
      {"2024-05-02 12:00:00", "'2024-07-01 00:00:00'", false},
      {"2024-05-02 12:00:00", "'2099-12-31 23:59:59'", false},
      {"2024-05-02 12:00:00", "NULL", false},
  };
  HistorySql("DELETE FROM " + GetParam().controlTable + " WHERE HistTable <> '" + Day(1) + "'");
  for (const Case& row : cases) {
    house.clock.Set(row.now);
    SetDates(row.date);
    const Lines before = Dates();
    Run();
    EXPECT_EQ(Dates() != before, row.isFree) << row.date << " at " << row.now;
  }
  ExpectNoEvent();
}

TEST_P(RotationTest, RowOfTheFutureIsFreeWhenTheClockHasPassedItBy46Days) {
  SetDates("'2024-06-01 13:00:00'");
  house.clock.Set(MakeDateTime({2024, 7, 16, 23, 59, 59}));
  Run();
  EXPECT_EQ(Date(1), "2024-06-01 13:00:00");
  house.clock.Set(MakeDateTime({2024, 7, 17, 0, 0, 0}));
  Run();
  EXPECT_EQ(Date(1), "2024-07-16 01:00:00");
}

TEST_P(RotationTest, FirstFreeRowIsTakenAndNotTheOldest) {
  AddSourceRows(2);
  SetDates("'2024-04-30 13:00:00'");
  Stamp(3, "2024-03-17 13:00:00");
  Stamp(7, "2001-01-01 13:00:00");
  Stamp(9, "2024-03-16 13:00:00");
  Lines dates = Dates();
  dates[2] = "2024-05-01 13:00:00";
  Run();
  EXPECT_EQ(Filled(), Lines{Day(3)});
  EXPECT_EQ(RecNos(3), (Lines{"1", "2"}));
  EXPECT_EQ(Dates(), dates);
  ExpectNoEvent();
}

TEST_P(RotationTest, StoredOrderCountsAndNotThatOfTheNames) {
  AddSourceRows(1);
  HistorySql("UPDATE " + GetParam().controlTable + " SET HistTable = printf('" +
             GetParam().dayTables + "%02d', 46 - rowid)");
  Run();
  EXPECT_EQ(Filled(), Lines{Day(45)});
  EXPECT_EQ(Date(1), "2024-05-01 13:00:00");
  EXPECT_EQ(Date(45), kSeedDate);
}

TEST_P(RotationTest, AnyTableThatTheRowNamesIsFilled) {
  AddSourceRows(1);
  HistorySql("ALTER TABLE " + Day(1) + " RENAME TO \"First day\"");
  HistorySql("UPDATE " + GetParam().controlTable + " SET HistTable = 'First day' WHERE rowid = 1");
  Run();
  EXPECT_EQ(History("SELECT RecNo FROM \"First day\""), Lines{"1"});
  ExpectNoEvent();
}

TEST_P(RotationTest, NullDateIsNeverFree) {
  AddSourceRows(1);
  SetDates("NULL");
  Run();
  EXPECT_EQ(Filled(), Lines{});
  EXPECT_EQ(Dates(), Lines(45, "NULL"));
  EXPECT_EQ(SleptMs(), 0);
  Stamp(45, "2000-01-01 00:00:00");
  Run();
  EXPECT_EQ(Filled(), Lines{Day(45)});
  EXPECT_EQ(Date(1), "NULL");
  ExpectNoEvent();
}

TEST_P(RotationTest, DateThatCannotBeReadIsNeverFreeAndHoldsNothingUp) {
  AddSourceRows(1);
  const Lines texts = {"soon", "", "45000", "2000-01-01T00:00:00", "2000-01-01 00:00"};
  for (std::size_t row = 0; row < texts.size(); ++row) {
    Stamp(static_cast<int>(row) + 1, texts[row]);
  }
  Run();
  EXPECT_EQ(Filled(), Lines{Day(6)});
  EXPECT_EQ(Date(5), "2000-01-01 00:00");
  ExpectNoEvent();
}

TEST_P(RotationTest, WithoutAFreeRowNothingHappensAndNothingIsReported) {
  AddSourceRows(1);
  SetDates("'2024-03-18 13:00:00'");
  Stamp(2, "2024-05-02 12:00:00");
  Stamp(3, "2031-01-01 00:00:00");
  HistorySql(InsertDayRows(Day(1), 3) + InsertDayRows(Day(45), 2));
  const Lines dates = Dates();
  Run();
  EXPECT_EQ(Dates(), dates);
  EXPECT_EQ(RecNos(1), (Lines{"1", "2", "3"}));
  EXPECT_EQ(Filled(), (Lines{Day(1), Day(45)}));
  EXPECT_EQ(SleptMs(), 0);
  ExpectNoEvent();
}

TEST_P(RotationTest, EmptyControlTableIsNoFailure) {
  AddSourceRows(1);
  HistorySql("DELETE FROM " + GetParam().controlTable);
  Run();
  EXPECT_EQ(Filled(), Lines{});
  ExpectNoEvent();
}

TEST_P(RotationTest, DateBecomesThePresentMomentLess23Hours) {
  struct Case {
    std::string now;
    std::string date;
  };
  const Case cases[] = {
      {"2024-05-02 12:00:00", "2024-05-01 13:00:00"},
      {"2024-05-02 03:12:34", "2024-05-01 04:12:34"},
      {"2024-05-02 00:00:00", "2024-05-01 01:00:00"},
      {"2024-05-02 22:59:59", "2024-05-01 23:59:59"},  // the last that lands on the day before
      {"2024-05-02 23:00:00", "2024-05-02 00:00:00"},
      {"2024-05-02 23:59:59", "2024-05-02 00:59:59"},
      {"2024-03-01 04:00:00", "2024-02-29 05:00:00"},
      {"2024-01-01 04:00:00", "2023-12-31 05:00:00"},
      // Clocks are put on and back in the night of these days; only what they show counts.
      {"2024-03-31 04:00:00", "2024-03-30 05:00:00"},
      {"2024-10-27 04:00:00", "2024-10-26 05:00:00"},
  };
  for (const Case& row : cases) {
    SetDates("'2000-01-01 00:00:00'");
    house.clock.Set(row.now);
    Run();
    EXPECT_EQ(Date(1), row.date) << row.now;
    EXPECT_EQ(Date(2), kSeedDate) << row.now;
  }
}

TEST_P(RotationTest, PresentMomentIsTheOneBehindTheCopy) {
  house.clock.Set(MakeDateTime({2024, 5, 2, 22, 0, 0}));
  house.loop.Post([&] { house.clock.Advance(minutes(90)); });  // in the pause of the clearing
  Run();
  EXPECT_EQ(Date(1), "2024-05-02 00:30:00");
}

TEST_P(RotationTest, OverriddenReportDateIsThePresentMoment) {
  OverrideReportDate("2014-11-07");
  AddSourceRows(1);
  AddSourceRows(2, "'2014-11-07 03:10:00'");
  SetDates("'2014-11-05 01:00:00'");
  Stamp(4, "2014-09-23 00:00:00");
  Stamp(6, "2014-09-22 23:59:59");
  Run();
  EXPECT_EQ(Filled(), Lines{Day(6)});
  EXPECT_EQ(RecNos(6), (Lines{"1", "2"}));
  EXPECT_EQ(Date(6), "2014-11-06 01:00:00");
  ExpectNoEvent();
}

TEST_P(RotationTest, SecondImportOfADayTakesTheNextFreeRow) {
  AddSourceRows(1);
  Run();
  Run();
  EXPECT_EQ(Filled(), (Lines{Day(1), Day(2)}));
  EXPECT_EQ(Date(1), "2024-05-01 13:00:00");
  EXPECT_EQ(Date(2), "2024-05-01 13:00:00");
  EXPECT_EQ(Date(3), kSeedDate);
}

TEST_P(RotationTest, SecondImportOfADayWithoutAnotherFreeRowDoesNothing) {
  AddSourceRows(1);
  SetDates("'2024-04-30 13:00:00'");
  Stamp(5, "2024-03-17 13:00:00");
  Run();
  const Lines dates = Dates();
  AddSourceRows(1);
  Run();
  EXPECT_EQ(Dates(), dates);
  EXPECT_EQ(RecNos(5), Lines{"1"});
  ExpectNoEvent();
}

TEST_P(RotationTest, DailyImportsGoRoundInTheOrderOfTheTable) {
  for (int day = 1; day <= 50; ++day) {
    const DateTime now = MakeDateTime({2024, 5, 2, day * 7 % 23, 30, 0}) + hours(24 * (day - 1));
    house.clock.Set(now);
    ReportsSql("DELETE FROM " + GetParam().source + ";" +
               GetParam().insertSource({{"RecNo", std::to_string(day)},
                                        {GetParam().sourceStamp, "'" + DateTimeText(now) + "'"}}));
    Run();
    const int row = (day - 1) % 45 + 1;
    EXPECT_EQ(Date(row), DateTimeText(now - hours(23))) << "day " << day;
    EXPECT_EQ(RecNos(row), Lines{std::to_string(day)}) << "day " << day;
  }
  EXPECT_EQ(RecNos(5), Lines{"50"});
  EXPECT_EQ(RecNos(6), Lines{"6"});
  ExpectNoEvent();
}

TEST_P(RotationTest, SurplusRowsOfAGapStayFreeUntilTheirTurn) {
  SetDates("'2024-04-30 13:00:00'");
  Stamp(44, "2024-03-14 13:00:00");  // the ring has come round, and three days are missing
  Stamp(45, "2024-03-15 13:00:00");
  Stamp(1, "2024-03-16 13:00:00");
  Stamp(2, "2024-03-17 13:00:00");
  for (const int row : {1, 2, 44, 45}) {
    Lines dates = Dates();
    dates[static_cast<std::size_t>(row - 1)] = DateTimeText(house.clock.Now() - hours(23));
    Run();
    EXPECT_EQ(Dates(), dates) << row;
    house.clock.Advance(hours(24));
  }
  const Lines dates = Dates();
  Run();
  EXPECT_EQ(Dates(), dates);
}

TEST_P(RotationTest, OldDayOfTheTableIsGoneAndOtherTablesStay) {
  AddSourceRows(1);
  HistorySql(InsertDayRows(Day(1), 5) + InsertDayRows(Day(2), 4));
  Run();
  EXPECT_EQ(RecNos(1), Lines{"1"});
  EXPECT_EQ(RecNos(2), (Lines{"1", "2", "3", "4"}));
}

TEST_P(RotationTest, DayWithoutRowsEmptiesTheTableAndStampsItsRow) {
  AddSourceRows(3, "'2024-05-01 03:10:00'");
  HistorySql(InsertDayRows(Day(1), 5));
  Run();
  EXPECT_EQ(Filled(), Lines{});
  EXPECT_EQ(Date(1), "2024-05-01 13:00:00");
  ReportsSql("DELETE FROM " + GetParam().source);
  HistorySql(InsertDayRows(Day(2), 5));
  Run();
  EXPECT_EQ(Filled(), Lines{});
  EXPECT_EQ(Date(2), "2024-05-01 13:00:00");
  ExpectNoEvent();
}

TEST_P(RotationTest, TableIsEmptiedThenFilledAndThenStamped) {
  AddSourceRows(150);
  HistorySql(InsertDayRows(Day(1), 150));
  const std::string state = "SELECT (SELECT Count(*) FROM " + Day(1) + "), " +
                            GetParam().dateField + " FROM " + GetParam().controlTable;
  WatchWaits(state);
  Run();
  EXPECT_EQ(seenInWaits,
            (Lines{"49|2000-01-01 00:00:00", "0|2000-01-01 00:00:00", "101|2000-01-01 00:00:00"}));
  EXPECT_EQ(History(state)[0], "150|2024-05-01 13:00:00");
}

}  // namespace
}  // namespace quillon
