// What others see and write in the pauses of a rotation, and what a stop, a failure or a lock
// leaves.
#include "import/rotation_fixture.h"

namespace quillon {
namespace {

using std::chrono::seconds;

TEST_P(RotationTest, CopyPausesAfterMoreThanAHundredRows) {
  struct Case {
    int rows;
    std::int64_t waited;
  };
  const Case cases[] = {{0, 0}, {100, 0}, {101, 10}, {201, 10}, {202, 20}, {303, 30}};
  for (const Case& row : cases) {
    ReportsSql("DELETE FROM " + GetParam().source);
    AddSourceRows(row.rows);
    const std::int64_t before = SleptMs();
    GetParam().copy(house.imports, Day(1));
    EXPECT_EQ(SleptMs() - before, row.waited) << row.rows << " rows";
  }
  ExpectNoEvent();
}

TEST_P(RotationTest, EventsInThePausesOfTheCopySeeTheRowsSoFar) {
  AddSourceRows(250);
  Lines inTheFirst;
  house.loop.Post([&] { inTheFirst = History("SELECT Count(*), Max(RecNo) FROM " + Day(1)); });
  WatchWaits("SELECT Count(*) FROM " + Day(1));
  GetParam().copy(house.imports, Day(1));
  EXPECT_EQ(inTheFirst, Lines{"101|101"});
  EXPECT_EQ(seenInWaits, (Lines{"101", "202"}));
  EXPECT_EQ(History("SELECT Count(*) FROM " + Day(1)), Lines{"250"});
}

TEST_P(RotationTest, ProductCanWriteItsStatisticsInThePausesOfTheCopy) {
  AddSourceRows(150);
  bool written = false;
  house.loop.Post([&] {
    AddSourceRows(1, "'2024-05-01 03:10:00'");
    written = true;
  });
  GetParam().copy(house.imports, Day(1));
  EXPECT_TRUE(written);
  EXPECT_EQ(History("SELECT Count(*) FROM " + Day(1)), Lines{"150"});
  ExpectNoEvent();
}

TEST_P(RotationTest, StopInAPauseOfTheCopyLeavesItsRows) {
  AddSourceRows(150);
  house.loop.Post([&] { house.loop.Quit(); });
  EXPECT_THROW(GetParam().copy(house.imports, Day(1)), LoopEnded);
  EXPECT_EQ(History("SELECT Count(*) FROM " + Day(1)), Lines{"101"});
  EXPECT_TRUE(OthersCanWrite());
  ExpectNoEvent();
}

TEST_P(RotationTest, StopInAPauseOfTheRotationLeavesTheRowUnstamped) {
  AddSourceRows(1);
  house.loop.Post([&] { house.loop.Quit(); });
  EXPECT_THROW(Run(), LoopEnded);
  EXPECT_EQ(Date(1), kSeedDate);
  EXPECT_TRUE(OthersCanWrite());
  ExpectNoEvent();
}

TEST_P(RotationTest, MissingDayTableIsReportedTwiceAndItsRowIsStamped) {
  AddSourceRows(1);
  HistorySql("DROP TABLE " + Day(1));
  Run();
  const std::string text = "History.mdb: no such table: " + Day(1);
  EXPECT_EQ(house.Events(), (Lines{ClearEvent(text), CopyEvent(text)}));
  EXPECT_EQ(Date(1), "2024-05-01 13:00:01");  // behind the half seconds of both events
  Run();
  EXPECT_EQ(house.Events().size(), 2u);
  EXPECT_EQ(RecNos(2), Lines{"1"});
}

TEST_P(RotationTest, MissingStatisticsLeaveTheTableEmptyAndItsRowStamped) {
  HistorySql(InsertDayRows(Day(1), 5));
  ReportsSql("DROP TABLE " + GetParam().source);
  Run();
  EXPECT_EQ(house.Events(), Lines{CopyEvent("Reports.mdb: no such table: " + GetParam().source)});
  EXPECT_EQ(Filled(), Lines{});
  EXPECT_EQ(Date(1), "2024-05-01 13:00:00");
}

TEST_P(RotationTest, MissingStatisticsFileLeavesTheTableEmptyAndItsRowStamped) {
  HistorySql(InsertDayRows(Day(1), 5));
  house.installation.Remove("Reports.mdb");
  Run();
  EXPECT_EQ(house.Events(), Lines{CopyEvent("Reports.mdb: the database file is missing")});
  EXPECT_EQ(Filled(), Lines{});
  EXPECT_EQ(Date(1), "2024-05-01 13:00:00");
  EXPECT_FALSE(house.installation.Exists("Reports.mdb"));
}

TEST_P(RotationTest, FailureInTheCopyLeavesTheRowsBeforeItAndStampsTheRow) {
  AddSourceRows(150);
  HistorySql(Refusal("INSERT", Day(1), "NEW.RecNo = 140"));
  Run();
  ExpectFailure("modImport_" + GetParam().copyStep + Day(1), "refused");
  EXPECT_EQ(History("SELECT Count(*), Max(RecNo) FROM " + Day(1)), Lines{"139|139"});
  EXPECT_EQ(Date(1), "2024-05-01 13:00:00");
}

TEST_P(RotationTest, FailureInTheClearingDoesNotKeepTheDayOut) {
  AddSourceRows(1);
  HistorySql("INSERT INTO " + Day(1) + " (RecNo) VALUES (91), (92), (93);" +
             Refusal("DELETE", Day(1), "OLD.RecNo = 92"));
  Run();
  ExpectFailure("modImport_ClearTable_" + Day(1), "refused");
  EXPECT_EQ(RecNos(1), (Lines{"92", "93", "1"}));
  EXPECT_EQ(Date(1), "2024-05-01 13:00:00");
}

TEST_P(RotationTest, RowThatCannotBeStampedIsAFailureOfTheRotation) {
  AddSourceRows(1);
  HistorySql(Refusal("UPDATE", GetParam().controlTable));
  Run();
  ExpectFailure("modImport_" + GetParam().step, "refused");
  EXPECT_EQ(RecNos(1), Lines{"1"});
  EXPECT_EQ(Date(1), kSeedDate);
}

TEST_P(RotationTest, RowWithoutATableNameFailsAndStaysAsItIs) {
  AddSourceRows(1);
  HistorySql("UPDATE " + GetParam().controlTable + " SET HistTable = NULL WHERE rowid = 1");
  Run();
  EXPECT_EQ(house.Events(), Lines{StepEvent("field HistTable holds null and not a text")});
  EXPECT_EQ(Date(1), kSeedDate);
  EXPECT_EQ(Filled(), Lines{});
}

TEST_P(RotationTest, MissingControlTableFails) {
  HistorySql("DROP TABLE " + GetParam().controlTable);
  Run();
  EXPECT_EQ(house.Events(),
            Lines{StepEvent("History.mdb: no such table: " + GetParam().controlTable)});
}

TEST_P(RotationTest, MissingHistoryFailsAndIsNotCreated) {
  house.installation.Remove("History.mdb");
  Run();
  EXPECT_EQ(house.Events(), Lines{StepEvent("History.mdb: the database file is missing")});
  EXPECT_FALSE(house.installation.Exists("History.mdb"));
}

TEST_P(RotationTest, OthersCanWriteInEveryPause) {
  AddSourceRows(250);
  HistorySql(InsertDayRows(Day(1), 250));
  OtherWriter other = OtherProgram();
  WriteInWaits(other);
  Run();
  EXPECT_EQ(slices, 2 + 10 + 2);
  EXPECT_EQ(refusedWrites, 0);
  EXPECT_EQ(History("SELECT Count(*) FROM " + Day(1)), Lines{"250"});
  ExpectNoEvent();
}

TEST_P(RotationTest, LockThatIsTakenInAPauseOfTheCopyIsWaitedOut) {
  AddSourceRows(250);
  OtherWriter other = OtherProgram();
  house.loop.Post([&] { EXPECT_TRUE(other.Begin()); });
  EndAfter(seconds(3), other);
  GetParam().copy(house.imports, Day(1));
  EXPECT_EQ(History("SELECT Count(*), Count(DISTINCT RecNo) FROM " + Day(1)), Lines{"250|250"});
  EXPECT_GE(SleptMs(), 3000);
  ExpectNoEvent();
}

TEST_P(RotationTest, LockThatIsTakenInAPauseOfTheCopyAndStaysLeavesTheRowsBeforeIt) {
  AddSourceRows(250);
  OtherWriter other = OtherProgram();
  house.loop.Post([&] { EXPECT_TRUE(other.Begin()); });
  GetParam().copy(house.imports, Day(1));
  ExpectFailure("modImport_" + GetParam().copyStep + Day(1), "History.mdb");
  EXPECT_EQ(History("SELECT Count(*), Max(RecNo) FROM " + Day(1)), Lines{"101|101"});
}

}  // namespace
}  // namespace quillon
