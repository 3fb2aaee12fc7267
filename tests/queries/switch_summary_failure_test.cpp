// The ways in which the ports' summary fails beyond those of both summaries, and what its record
// holds then; another report in its waits.
#include "queries/summary_fixture.h"
#include "support/other_writer.h"

namespace quillon {
namespace {

using std::chrono::milliseconds;

class SwitchSummaryFailureTest : public SwitchSummaryTest {
 protected:
  static constexpr const char* kTooLarge = "10000000000";  // eleven digits: no axis can end there
};

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

TEST_F(SwitchSummaryFailureTest, DatabaseIsClosedBeforeTheEvent) {
  const std::string path = house.installation.path() + "/History.mdb";
  AddDay(1, {{"Ports", "NULL"}});
  bool isAlone = false;
  house.loop.Post([&] { isAlone = OtherWriter::IsAlone(path); });
  Query();
  EXPECT_TRUE(isAlone);
}

class SwitchSummaryWaitTest : public SwitchSummaryTest {};

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

}  // namespace
}  // namespace quillon
