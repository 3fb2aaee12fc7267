// The ways in which the ports' summary fails and what its record holds then; its waits, in which
// other events run.
#include "queries/summary_fixture.h"
#include "support/other_writer.h"

namespace quillon {
namespace {

using std::chrono::milliseconds;

class SwitchSummaryFailureTest : public SwitchSummaryTest {
 protected:
  static constexpr const char* kTooLarge = "10000000000";  // eleven digits: no axis can end there
};

TEST_F(SwitchSummaryFailureTest, NullEndsTheWalkAtItsColumn) {
  for (const auto& column : PortSums::InOrder()) {
    SCOPED_TRACE(column.name);
    ExpectNullEndsTheWalkAt(column);
  }
}

TEST_F(SwitchSummaryFailureTest, NullLeavesTheReportsName) {
  Record().Report = kBefore;
  AddDay(1, {{"Ports", "NULL"}});
  Query();
  EXPECT_EQ(Record().Report, kBefore);
  ExpectFailure("Ports");
}

TEST_F(SwitchSummaryFailureTest, NullThatIsNotReachedIsNone) {
  AddMarkedDays({1, 2, 2});  // the second row of a day holds the walk
  AddDay(3, {{"Ports", "NULL"}});
  AddDay(46, {{"InHCOctetsMb24H", "NULL"}});
  AddDay(1, {{"IsTrunk", "TRUE"}, {"Ports", "NULL"}});
  Query();
  ExpectMarkedDays({1, 2});
  ExpectNoEvent();
}

TEST_F(SwitchSummaryFailureTest, SlotOutsideOneToTwentyFails) {
  for (const bool hasRow : {false, true}) {
    if (hasRow) AddDay(1);
    for (const int slot : {0, 21, -1, 32767}) {
      house.ForgetEvents();
      PortSums::Run(house.queries, static_cast<ConnectionId>(slot));
      ExpectFailure("position " + std::to_string(slot) + " ");
    }
  }
  ExpectFreshRecords();
}

TEST_F(SwitchSummaryFailureTest, MissingDatabaseLeavesTheRecordAsItWas) {
  house.installation.Remove("History.mdb");
  FillRecord();
  Record().Report = kBefore;
  Query();
  ExpectFailure("History.mdb");
  ExpectOfBefore(45);
  EXPECT_EQ(Record().Report, kBefore);
  EXPECT_FALSE(house.installation.Exists("History.mdb"));
}

TEST_F(SwitchSummaryFailureTest, MissingTableLeavesTheRecordAsItWas) {
  History("DROP TABLE VLAN_HistSum");
  FillRecord();
  Record().Report = kBefore;
  Query();
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodSelectSql_SqHist45dSwitchSum\tHistory.mdb: no such table: VLAN_HistSum"});
  ExpectOfBefore(45);
  EXPECT_EQ(Record().Report, kBefore);
}

TEST_F(SwitchSummaryFailureTest, FigureOfElevenDigitsEndsTheReportInTheBars) {
  struct Case {
    std::string column;
    Lines tops;
    Lines bars;
  };
  const Case cases[] = {
      {"InHCOctetsMb24H", {"0", "4", "2", "20"}, {"1", "1", "1", "1", "1", "1", "1", "1"}},
      {"InBroadCastPpm24H", {"6", "0", "2", "20"}, {"100", "83", "1", "1", "1", "1", "1", "1"}},
      {"InErrorsTot24H", {"6", "4", "0", "20"}, {"100", "83", "100", "75", "1", "1", "1", "1"}},
      {"Ports", {"6", "4", "2", "0"}, {"100", "83", "100", "75", "100", "50", "1", "1"}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.column);
    ClearDays();
    house.ForgetEvents();
    FillRecord();
    AddDay(1, {{row.column, kTooLarge}});
    Query();
    EXPECT_EQ(FailedProcedures(), (Lines{"modQuillonWeb_RoundToValue", PortSums::kProcedure}));
    EXPECT_EQ(AxisTops(), row.tops);
    EXPECT_EQ(AxisHalves(), Lines(4, kBefore));
    EXPECT_EQ(Bars(45), row.bars);
    EXPECT_EQ(Value(row.column, 45), kTooLarge);
    EXPECT_EQ(Value("PortsInTraffic", 45), "10");
    EXPECT_EQ(Record().Ports.NameRight, "W50");
  }
}

TEST_F(SwitchSummaryFailureTest, LargerFiguresEndTheReportTheSameWay) {
  for (const std::string figure : {"123456789012", "1234567890123", "99999999999999"}) {
    for (const std::string column : {"OutHCOctetsMb24H", "OutErrorsTot24H"}) {
      SCOPED_TRACE(column + " " + figure);
      ClearDays();
      house.ForgetEvents();
      AddDay(1, {{column, figure}});
      Query();
      EXPECT_EQ(FailedProcedures(), (Lines{"modQuillonWeb_RoundToValue", PortSums::kProcedure}));
      EXPECT_EQ(Value(column, 45), figure);
    }
  }
}

TEST_F(SwitchSummaryFailureTest, DaysBeforeTheOneThatFailsHaveTheirBars) {
  AddDay(1, {{"InErrorsTot24H", kTooLarge}});
  AddDay(30, {{"InErrorsTot24H", "'none'"}, {"OutErrorsTot24H", "'none'"}});
  Query();
  EXPECT_EQ(Bars(16), (Lines{"100", "83", "100", "75", "1", "1", "100", "50"}));
  EXPECT_EQ(Bars(45), (Lines{"100", "83", "100", "75", "1", "1", "1", "1"}));
}

TEST_F(SwitchSummaryFailureTest, FigureOnAnAxisOfZeroEndsTheReport) {
  for (const std::string figure : {"5", "0", "-5"}) {
    SCOPED_TRACE(figure);
    ClearDays();
    house.ForgetEvents();
    AddDay(1, {{"InHCOctetsMb24H", "'12 G'"}, {"OutHCOctetsMb24H", figure}});
    Query();
    EXPECT_EQ(FailedProcedures(), Lines{PortSums::kProcedure});
    EXPECT_EQ(AxisTops()[0], "0");
    EXPECT_EQ(Bars(45), Lines(8, "1"));
  }
}

TEST_F(SwitchSummaryFailureTest, FailureInTheWalkWaitsForItsEventAlone) {
  AddDay(1, {{"Ports", "NULL"}});
  Query();
  EXPECT_EQ(house.clock.slept(), milliseconds(500));
}

TEST_F(SwitchSummaryFailureTest, DatabaseIsClosedBeforeTheEvent) {
  const std::string path = house.installation.path() + "/History.mdb";
  AddDay(1, {{"Ports", "NULL"}});
  bool isAlone = false;
  // A file that anybody else has open does not leave its journal mode.
  house.loop.Post([&] { isAlone = OtherWriter::Idle(path).Run("PRAGMA journal_mode = DELETE"); });
  Query();
  EXPECT_TRUE(isAlone);
}

class SwitchSummaryWaitTest : public SwitchSummaryTest {};

TEST_F(SwitchSummaryWaitTest, IsTenMillisecondsADay) {
  AddMarkedDays({1, 3});
  Query();
  EXPECT_EQ(house.clock.slept(), milliseconds(450));
  ClearDays();
  Query();
  EXPECT_EQ(house.clock.slept(), milliseconds(900));
}

TEST_F(SwitchSummaryWaitTest, LetsAReportOfAnotherSlotRun) {
  AddMarkedDays({1});
  AddMarkedDays({2}, {{"IsTrunk", "TRUE"}});
  bool ran = false;
  house.loop.Post([&] {
    ran = true;
    QueryTrunk(5);
  });
  Query();
  EXPECT_TRUE(ran);
  ExpectMarkedDays({1});
  EXPECT_EQ(Record().Report, "W34");
  EXPECT_EQ(Record(5).Report, "W35");
  EXPECT_EQ((Lines{Record(5).Ports.Left[45], Record(5).Ports.Left[44]}), (Lines{"-", "2"}));
  EXPECT_EQ(house.clock.slept(), milliseconds(900));
  ExpectNoEvent();
}

TEST_F(SwitchSummaryWaitTest, KeepsNothingOfTheDatabaseOpen) {
  const std::string path = house.installation.path() + "/History.mdb";
  AddMarkedDays({1, 2});
  bool isAlone = false;
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
