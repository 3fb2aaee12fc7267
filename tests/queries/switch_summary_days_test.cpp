// The days of the ports' summary beyond those that summary_days_test has of both summaries: which
// row of the sums stands at which position, and what fills the positions without one.
#include "queries/summary_fixture.h"

namespace quillon {
namespace {

class SwitchSummaryDaysTest : public SwitchSummaryTest {};

TEST_F(SwitchSummaryDaysTest, WithoutARowAreDashesWithTheSmallestBar) {
  Query();
  ExpectMarkedDays({});
  ExpectDaysUpTo(MakeDateTime({2024, 5, 1}));
  ExpectNoEvent();
}

TEST_F(SwitchSummaryDaysTest, YesterdayStandsAtTheLastPosition) {
  AddMarkedDays({1});
  Query();
  ExpectDays({{45, "1"}});
}

TEST_F(SwitchSummaryDaysTest, DatesRunFromTheOldestToYesterdayWithoutATime) {
  struct Case {
    std::string what;
    std::vector<int> ages;
  };
  const Case cases[] = {{"no row", {}},
                        {"some rows", {1, 2, 5}},
                        {"the oldest", {45}},
                        {"a row that holds the walk", {0, 1}}};
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    ClearDays();
    AddMarkedDays(row.ages);
    Query();
    EXPECT_EQ(DayText(Record().TrafficDate[1]), "2024-03-18");
    ExpectDaysUpTo(MakeDateTime({2024, 5, 1}));
  }
}

TEST_F(SwitchSummaryDaysTest, GapIsADayOfDashesAndOlderDaysFollow) {
  AddMarkedDays({1, 3, 4, 45});
  Query();
  ExpectMarkedDays({1, 3, 4, 45});
}

TEST_F(SwitchSummaryDaysTest, NewestDayCanBeMissing) {
  AddMarkedDays({2, 3});
  Query();
  ExpectMarkedDays({2, 3});
}

TEST_F(SwitchSummaryDaysTest, RowsThatRunOutLeaveDashesForTheOlderDays) {
  AddMarkedDaysUpTo(10);
  FillRecord();
  Query();
  ExpectMarkedDays({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
}

TEST_F(SwitchSummaryDaysTest, RowsOlderThan45DaysAreNotShown) {
  AddMarkedDays({44, 45, 46, 47, 1200});
  Query();
  ExpectMarkedDays({44, 45});
}

TEST_F(SwitchSummaryDaysTest, SecondRowOfADayHoldsTheWalkBehindTheFirst) {
  AddMarkedDays({1, 2, 2, 3, 4});
  Query();
  ExpectMarkedDays({1, 2});
}

TEST_F(SwitchSummaryDaysTest, OfTwoRowsOfADayTheLaterOneIsShown) {
  AddMoment("'2024-05-01 03:10:00'", {{"Ports", "1"}});
  AddMoment("'2024-05-01 15:00:00'", {{"Ports", "2"}});
  AddMoment("'2024-05-01 12:00:00'", {{"Ports", "3"}});
  Query();
  ExpectDays({{45, "2"}});
}

TEST_F(SwitchSummaryDaysTest, OfTwoRowsOfAMomentTheFirstStoredIsShown) {
  AddMoment("'2024-05-01 03:10:00'", {{"Ports", "9"}});
  AddMoment("'2024-05-01 03:10:00'", {{"Ports", "7"}});
  AddMoment("'2024-05-01 03:10:00'", {{"Ports", "8"}});
  Query();
  ExpectDays({{45, "9"}});
}

TEST_F(SwitchSummaryDaysTest, RowsOfTheOtherKindAreNotShown) {
  AddMarkedDays({1, 3});
  AddMarkedDays({2, 3, 4}, {{"IsTrunk", "TRUE"}, {"Ports", "7"}});
  Query();
  ExpectMarkedDays({1, 3});
  QueryTrunk();
  ExpectDays({{44, "7"}, {43, "7"}, {42, "7"}});
}

TEST_F(SwitchSummaryDaysTest, RowsOfTheOtherKindDoNotHoldTheWalk) {
  AddMarkedDays({0, 1}, {{"IsTrunk", "TRUE"}});
  AddMarkedDays({1, 2});
  Query();
  ExpectMarkedDays({1, 2});
  QueryTrunk();
  ExpectMarkedDays({});
}

TEST_F(SwitchSummaryDaysTest, RowWithoutAKindIsOfNeither) {
  AddMarkedDays({0, 2}, {{"IsTrunk", "NULL"}});
  AddMarkedDays({1});
  AddMarkedDays({3}, {{"IsTrunk", "TRUE"}});
  Query();
  ExpectMarkedDays({1});
  QueryTrunk();
  ExpectMarkedDays({3});
  ExpectNoEvent();
}

TEST_F(SwitchSummaryDaysTest, TimeOfARowDoesNotMatter) {
  AddMoment("'2024-05-01 00:00:00'", {{"Ports", "1"}});
  AddMoment("'2024-04-30 23:59:59'", {{"Ports", "2"}});
  AddMoment("'2024-04-29'", {{"Ports", "3"}});
  Query();
  ExpectDays({{45, "1"}, {44, "2"}, {43, "3"}});
}

TEST_F(SwitchSummaryDaysTest, TimeOfTheClockDoesNotMatter) {
  struct Case {
    std::string now;
    DateTime newest;
    std::map<int, std::string> marks;
  };
  const Case cases[] = {
      {"2024-05-01 23:59:59", MakeDateTime({2024, 4, 30}), {}},  // the row of today holds the walk
      {"2024-05-02 00:00:00", MakeDateTime({2024, 5, 1}), {{45, "1"}, {44, "2"}}},
      {"2024-05-02 23:59:59", MakeDateTime({2024, 5, 1}), {{45, "1"}, {44, "2"}}},
      {"2024-05-03 00:00:00", MakeDateTime({2024, 5, 2}), {{44, "1"}, {43, "2"}}},
  };
  AddMarkedDays({1, 2});
  for (const Case& row : cases) {
    SCOPED_TRACE(row.now);
    house.clock.Set(row.now);
    Query();
    ExpectDays(row.marks);
    ExpectDaysUpTo(row.newest);
  }
}

TEST_F(SwitchSummaryDaysTest, WalkPassesLeapDaysAndTheEndsOfYears) {
  struct Case {
    std::string now;
    std::string row;
    int position;
  };
  const Case cases[] = {
      {"2024-03-02 12:00:00", "'2024-02-29 03:10:00'", 44},
      {"2023-03-02 12:00:00", "'2023-02-28 03:10:00'", 44},
      {"2024-01-10 12:00:00", "'2023-12-31 03:10:00'", 36},
      {"2024-04-14 12:00:00", "'2024-02-29 03:10:00'", 1},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.now);
    ClearDays();
    AddMoment(row.row, {{"Ports", "5"}});
    house.clock.Set(row.now);
    Query();
    ExpectDays({{row.position, "5"}});
  }
}

TEST_F(SwitchSummaryDaysTest, NothingOfAnEarlierReportIsLeft) {
  AddMarkedDaysUpTo(45);
  Query();
  ClearDays();
  Query();
  ExpectMarkedDays({});
  EXPECT_EQ(AxisTops(), (Lines{"2 M", "2", "2", "2"}));
}

TEST_F(SwitchSummaryDaysTest, OnlyTheSlotAskedForIsWritten) {
  AddMarkedDays({1});
  for (const int slot : {1, 15, 20}) {
    Query(static_cast<ConnectionId>(slot));
    EXPECT_EQ(house.records.Hist45dSwitchRep[slot].Ports.Left[45], "1") << slot;
  }
  EXPECT_EQ(house.records.Hist45dSwitchRep[2].Ports.Left[45], "");
  EXPECT_EQ(house.records.Hist45dSwitchRep[2].TrafficDate[45], ZeroDate());
  EXPECT_EQ(house.records.Hist45dDiskRep[15].StorageDate[45], ZeroDate());
}

}  // namespace
}  // namespace quillon
