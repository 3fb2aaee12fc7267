// The ways in which the storages' summary fails and what its record holds then; its waits, in which
// other events run.
#include "queries/summary_fixture.h"
#include "support/other_writer.h"

namespace quillon {
namespace {

using std::chrono::milliseconds;

class DiskSummaryFailureTest : public DiskSummaryTest {};

TEST_F(DiskSummaryFailureTest, NullEndsTheWalkAtItsColumn) {
  for (const auto& column : StorageSums::InOrder()) {
    SCOPED_TRACE(column.name);
    ExpectNullEndsTheWalkAt(column);
  }
}

TEST_F(DiskSummaryFailureTest, NullThatIsNotReachedIsNone) {
  AddMarkedDays({1, 2, 2});  // the second row of a day holds the walk
  AddDay(3, {{"NumUnix", "NULL"}});
  AddDay(46, {{"TotalMPhysical", "NULL"}});
  Query();
  ExpectMarkedDays({1, 2});
  ExpectNoEvent();
}

TEST_F(DiskSummaryFailureTest, SlotOutsideOneToTwentyFails) {
  for (const bool hasRow : {false, true}) {
    if (hasRow) AddDay(1);
    for (const int slot : {0, 21, -1, 32767}) {
      house.ForgetEvents();
      StorageSums::Run(house.queries, static_cast<ConnectionId>(slot));
      ExpectFailure("position " + std::to_string(slot) + " ");
    }
  }
  ExpectFreshRecords();
}

TEST_F(DiskSummaryFailureTest, MissingDatabaseLeavesTheRecordAsItWas) {
  house.installation.Remove("History.mdb");
  FillRecord();
  Query();
  ExpectFailure("History.mdb");
  ExpectOfBefore(45);
  EXPECT_FALSE(house.installation.Exists("History.mdb"));
}

TEST_F(DiskSummaryFailureTest, MissingTableLeavesTheRecordAsItWas) {
  History("DROP TABLE Disk_HistSum");
  FillRecord();
  Query();
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodSelectSql_SqlHist45dDiskSum\tHistory.mdb: no such table: Disk_HistSum"});
  ExpectOfBefore(45);
}

TEST_F(DiskSummaryFailureTest, FigureOfElevenDigitsEndsTheReportInTheBars) {
  struct Case {
    std::string column;
    Lines tops;
    Lines bars;
  };
  const Case cases[] = {
      {"TotalMPhysical", {"0", "200", "3000", "40000"}, {"1", "1", "1", "1", "1", "1", "1", "1"}},
      {"TotalMVirtual", {"100", "0", "3000", "40000"}, {"100", "40", "1", "1", "1", "1", "1", "1"}},
      {"UsedMWindows",
       {"100", "200", "0", "40000"},
       {"100", "40", "100", "25", "1", "1", "1", "1"}},
      {"UsedMUnix", {"100", "200", "3000", "0"}, {"100", "40", "100", "25", "100", "50", "1", "1"}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.column);
    ClearDays();
    house.ForgetEvents();
    FillRecord();
    AddDay(1, {{row.column, "10000000000"}});
    Query();
    EXPECT_EQ(FailedProcedures(), (Lines{"modQuillonWeb_RoundToValue", StorageSums::kProcedure}));
    EXPECT_EQ(AxisTops(), row.tops);
    EXPECT_EQ(AxisHalves(), Lines(4, kBefore));
    EXPECT_EQ(Bars(45), row.bars);
    EXPECT_EQ(Value(row.column, 45), "10000000000");
    EXPECT_EQ(Record().Physical.Proc[45], kBefore);
    EXPECT_EQ(Record().Unix.NameRight, "W71");
  }
}

TEST_F(DiskSummaryFailureTest, FigureOnAnAxisOfZeroEndsTheReport) {
  AddDay(1, {{"TotalMVirtual", "'900 M'"}, {"UsedMVirtual", "0"}});
  Query();
  EXPECT_EQ(FailedProcedures(), Lines{StorageSums::kProcedure});
  EXPECT_EQ(AxisTops(), (Lines{"100", "0", "3000", "40000"}));
  EXPECT_EQ(Bars(45), (Lines{"100", "40", "1", "1", "1", "1", "1", "1"}));
}

TEST_F(DiskSummaryFailureTest, FailureInTheWalkWaitsForItsEventAlone) {
  AddDay(1, {{"NumUnix", "NULL"}});
  Query();
  EXPECT_EQ(house.clock.slept(), milliseconds(500));
}

class DiskSummaryWaitTest : public DiskSummaryTest {};

TEST_F(DiskSummaryWaitTest, IsTenMillisecondsADay) {
  AddMarkedDays({1, 3});
  Query();
  EXPECT_EQ(house.clock.slept(), milliseconds(450));
  ClearDays();
  Query();
  EXPECT_EQ(house.clock.slept(), milliseconds(900));
}

TEST_F(DiskSummaryWaitTest, LetsAReportOfAnotherSlotRun) {
  AddMarkedDays({1});
  house.loop.Post([&] {
    AddMarkedDays({2});
    Query(5);
  });
  Query();
  ExpectMarkedDays({1});
  EXPECT_EQ((Lines{Record(5).Unix.Num[45], Record(5).Unix.Num[44]}), (Lines{"1", "2"}));
  EXPECT_EQ(house.clock.slept(), milliseconds(900));
  ExpectNoEvent();
}

TEST_F(DiskSummaryWaitTest, KeepsNothingOfTheDatabaseOpen) {
  const std::string path = house.installation.path() + "/History.mdb";
  AddMarkedDays({1, 2});
  bool isAlone = false;
  // A file that anybody else has open does not leave its journal mode.
  house.loop.Post([&] {
    isAlone = OtherWriter::Idle(path).Run("PRAGMA journal_mode = DELETE");
    ClearDays();
  });
  Query();
  EXPECT_TRUE(isAlone);
  ExpectMarkedDays({1, 2});
}

}  // namespace
}  // namespace quillon
