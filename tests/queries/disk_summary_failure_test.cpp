// The ways in which the storages' summary fails beyond those of both summaries, and what its record
// holds then; another report in its waits.
#include "queries/summary_fixture.h"

namespace quillon {
namespace {

using std::chrono::milliseconds;

class DiskSummaryFailureTest : public DiskSummaryTest {};

TEST_F(DiskSummaryFailureTest, NullThatIsNotReachedIsNone) {
  AddMarkedDays({1, 2, 2});  // the second row of a day holds the walk
  AddDay(3, {{"NumUnix", "NULL"}});
  AddDay(46, {{"TotalMPhysical", "NULL"}});
  Query();
  ExpectMarkedDays({1, 2});
  ExpectNoEvent();
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

class DiskSummaryWaitTest : public DiskSummaryTest {};

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

}  // namespace
}  // namespace quillon
