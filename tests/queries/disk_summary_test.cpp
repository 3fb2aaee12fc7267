// The storages' summary: which day stands where beyond summary_days_test, and what is made of its
// sums. Failures are in summary_failure_test and disk_summary_failure_test, the dump in
// summary_dump_test.
#include "queries/summary_fixture.h"

namespace quillon {
namespace {

TEST_F(DiskSummaryTest, WithoutARowHasDashesWithTheSmallestBar) {
  FillRecord();
  Query();
  ExpectMarkedDays({});
  ExpectDaysUpTo(MakeDateTime({2024, 5, 1}));
  EXPECT_EQ(AxisTops(), Lines(4, "2 M"));
  EXPECT_EQ(AxisHalves(), Lines(4, "1 M"));
  ExpectNoEvent();
}

TEST_F(DiskSummaryTest, EachColumnFillsItsSeries) {
  AddDay(2);
  Query();
  EXPECT_EQ(Values(44), (Lines{"100 M", "40 M", "3", "200 M", "50 M", "4", "3 000 M", "1 500 M",
                               "5", "40 G", "10 G", "6"}));
  EXPECT_EQ(Bars(44), (Lines{"100", "40", "100", "25", "100", "50", "100", "25"}));
  EXPECT_EQ(AxisTops(), (Lines{"100 M", "200 M", "3 G", "40 G"}));
  EXPECT_EQ(AxisHalves(), (Lines{"50 M", "100 M", "1.5 G", "20 G"}));
  const Hist45dDiskRecord& record = Record();
  EXPECT_EQ((Lines{record.Physical.Proc[44], record.Virtual.Proc[44], record.Windows.Proc[44],
                   record.Unix.Proc[44]}),
            (Lines{" (40%)", " (25%)", " (50%)", " (25%)"}));
  ExpectNoEvent();
}

TEST_F(DiskSummaryTest, WordsAreThoseOfThePanels) {
  FillRecord();
  const Hist45dDiskRecord& record = Query();
  const auto words = [](const Panel& panel) {
    return Lines{panel.Report, panel.Head, panel.NameLeft, panel.NameRight};
  };
  EXPECT_EQ(words(record.Physical), (Lines{"W82", "W76", "W69", "W71"}));
  EXPECT_EQ(words(record.Virtual), (Lines{"W83", "W77", "W69", "W71"}));
  EXPECT_EQ(words(record.Windows), (Lines{"W84", "W78", "W69", "W71"}));
  EXPECT_EQ(words(record.Unix), (Lines{"W85", "W79", "W69", "W71"}));
}

TEST_F(DiskSummaryTest, DaysWithoutARowAreDashesAndOlderDaysFollow) {
  AddMarkedDays({1, 3, 44, 46, 1200});
  FillRecord();
  Query();
  ExpectMarkedDays({1, 3, 44});
}

TEST_F(DiskSummaryTest, OfTwoRowsOfADayTheLaterIsShownAndTheOtherHoldsTheWalk) {
  AddMoment("'2024-05-01 03:10:00'", {{"NumUnix", "1"}});
  AddMoment("'2024-05-01 15:00:00'", {{"NumUnix", "2"}});
  AddMarkedDays({2, 3});
  Query();
  ExpectDays({{45, "2"}});
}

TEST_F(DiskSummaryTest, NothingOfAnEarlierReportIsLeft) {
  AddMarkedDaysUpTo(45);
  Query();
  ClearDays();
  Query();
  ExpectMarkedDays({});
  EXPECT_EQ(AxisTops(), Lines(4, "2 M"));
  for (const auto panel : Panels()) {
    for (const std::string& share : (Record().*panel).Proc) EXPECT_EQ(share, "");
  }
}

TEST_F(DiskSummaryTest, OnlyTheSlotAskedForIsWritten) {
  AddMarkedDays({1});
  for (const int slot : {1, 15, 20}) {
    Query(static_cast<ConnectionId>(slot));
    EXPECT_EQ(house.records.Hist45dDiskRep[slot].Unix.Num[45], "1") << slot;
  }
  EXPECT_EQ(house.records.Hist45dDiskRep[2].Unix.Num[45], "");
  EXPECT_EQ(house.records.Hist45dSwitchRep[15].TrafficDate[45], ZeroDate());
}

TEST_F(DiskSummaryTest, SizesAreVolumesOfALongForm) {
  const std::vector<FigureText> cases = {
      {"-1", "-"},
      {"-2", "0"},
      {"0", "0"},
      {"0.4", "0"},
      {"1", "1 M"},
      {"10.5", "11 M"},
      {"999", "999 M"},
      {"1234", "1 234 M"},
      {"9999", "9 999 M"},
      {"12499", "12 G"},
      {"12500", "13 G"},
      {"999500", "1 000 G"},
      {"1234500", "1 235 G"},
      {"12000500", "13 T"},
      {"12344498", "13 T"},  // 12344500, the seven digits that a 32-bit float shows
      {"123456789", "124 T"},
      {"8000000000", "8 000 T"},
  };
  for (const std::string column :
       {"TotalMPhysical", "UsedMPhysical", "TotalMVirtual", "UsedMVirtual", "TotalMWindows",
        "UsedMWindows", "TotalMUnix", "UsedMUnix"}) {
    ExpectTexts(column, cases);
  }
  ExpectNoEvent();
}

TEST_F(DiskSummaryTest, NumberOfStoragesStandsAsItIsStored) {
  for (const std::string column : {"NumPhysical", "NumVirtual", "NumWindows", "NumUnix"}) {
    ExpectTexts(column, {{"0", "0"}, {"1234", "1234"}, {"-1", "-1"}, {"2.5", "2.5"}, {"'a'", "a"}});
  }
  ExpectNoEvent();
}

TEST_F(DiskSummaryTest, NumberOfStoragesTakesNoPartInTheAxis) {
  AddDay(1, {{"NumPhysical", "900"},
             {"NumVirtual", "900"},
             {"NumWindows", "9000"},
             {"NumUnix", "90000"}});
  Query();
  EXPECT_EQ(AxisTops(), (Lines{"100 M", "200 M", "3 G", "40 G"}));
}

TEST_F(DiskSummaryTest, UsedShareIsThatOfTheRawSizes) {
  struct Case {
    std::string total;
    std::string used;
    std::string share;
  };
  const Case cases[] = {
      {"100", "0", " (0%)"},     {"100", "41", " (41%)"},
      {"100", "100", " (100%)"}, {"100", "150", " (150%)"},
      {"8", "1", " (13%)"},       // 12.5, away from zero
      {"40", "1", " (3%)"},       // 2.5, away from zero
      {"1000", "575", " (57%)"},  // a hundred times 0.575 is below 57.5
      {"300", "1", " (0%)"},     {"12499", "6250", " (50%)"},
      {"0.5", "0.4", " (80%)"},  {"100", "-50", " (-50%)"},
      {"0", "40", ""},           {"0", "0", ""},
      {"-1", "40", ""},          {"-100", "40", ""},
      {"'n/a'", "40", ""},       {"100", "'n/a'", ""},
      {"100", "''", ""},
  };
  for (const std::string kind : {"Physical", "Virtual", "Windows", "Unix"}) {
    ClearDays();
    int age = 0;
    for (const Case& row : cases) {
      AddDay(++age, {{"TotalM" + kind, row.total}, {"UsedM" + kind, row.used}});
    }
    FillRecord();
    Query();
    age = 0;
    for (const Case& row : cases) {
      EXPECT_EQ((Record().*PanelOf("TotalM" + kind)).Proc[PositionOf(++age)], row.share)
          << kind << " " << row.total << " " << row.used;
    }
  }
  ExpectNoEvent();
}

TEST_F(DiskSummaryTest, KindWithoutStoragesHasNoShare) {
  AddDay(1, {{"TotalMUnix", "0"}, {"UsedMUnix", "0"}, {"NumUnix", "0"}});
  const Panel& panel = Query().Unix;
  EXPECT_EQ((Lines{panel.Left[45], panel.Right[45], panel.Proc[45], panel.Num[45]}),
            (Lines{"0", "0", "", "0"}));
  EXPECT_EQ((Lines{panel.LeftBar[45], panel.RightBar[45]}), (Lines{"1", "1"}));
  EXPECT_EQ(panel.YaxisMax, "2 M");
}

TEST_F(DiskSummaryTest, AxesAreRoundedAndLabelledAsVolumes) {
  const std::vector<FigureAxis> cases = {
      {"0", "1", "2 M", "1 M"},           {"9", "90", "10 M", "5 M"},
      {"22", "88", "25 M", "13 M"},       {"234", "94", "250 M", "125 M"},
      {"1234", "123", "1 G", "0.5 G"},  // 1300, cut to 1000
      {"1450", "72", "2 G", "1 G"},     // 1500, raised to 2000
      {"12345", "95", "13 G", "6.5 G"},   {"1234567", "62", "2 T", "1 T"},
      {"12345678", "62", "20 T", "10 T"}, {"123456789", "95", "130 T", "65 T"},
      {"1234567890", "62", "2 P", "1 P"}, {"9000000000", "100", "9 P", "4.5 P"},
  };
  for (const std::string column :
       {"TotalMPhysical", "UsedMVirtual", "TotalMWindows", "UsedMUnix"}) {
    ExpectAxes(column, cases);
  }
  ExpectNoEvent();
}

// A figure is larger where its whole number is, and then the axis takes it with its fraction.
TEST_F(DiskSummaryTest, AxisComparesWholeNumbersAndKeepsTheFraction) {
  struct Case {
    std::string older;
    std::string newer;
    std::string max;
    Lines bars;  // older, newer
  };
  const Case cases[] = {
      {"2.4", "1", "2 M", {"120", "50"}},   // 2 is not larger than the first 2
      {"2.5", "1", "4 M", {"62", "25"}},    // 62.5 to the even 62
      {"8", "8.4", "8 M", {"100", "105"}},  // 8 is not larger than 8
      {"8.4", "8", "10 M", {"84", "80"}},   // the step at or above 8.4 is 10
      {"10", "10.4", "10 M", {"100", "104"}},    {"10.4", "10", "15 M", {"69", "67"}},
      {"8.4", "8.6", "10 M", {"84", "86"}},      {"100.3", "100", "150 M", {"67", "67"}},
      {"100", "100.3", "100 M", {"100", "100"}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.older + " " + row.newer);
    ClearDays();
    AddDay(2, {{"TotalMPhysical", row.older}, {"UsedMPhysical", "0"}});
    AddDay(1, {{"TotalMPhysical", row.newer}, {"UsedMPhysical", "0"}});
    const Panel& panel = Query().Physical;
    EXPECT_EQ(panel.YaxisMax, row.max);
    EXPECT_EQ((Lines{panel.LeftBar[44], panel.LeftBar[45]}), row.bars);
  }
}

TEST_F(DiskSummaryTest, LeftFigureOfADayComesBeforeTheRightOneInTheAxis) {
  AddDay(1, {{"TotalMUnix", "10"}, {"UsedMUnix", "10.4"}});
  EXPECT_EQ(Query().Unix.YaxisMax, "10 M");
  ClearDays();
  AddDay(1, {{"TotalMUnix", "10.4"}, {"UsedMUnix", "10"}});
  EXPECT_EQ(Query().Unix.YaxisMax, "15 M");
}

TEST_F(DiskSummaryTest, NegativeSizesLeaveTheAxisAtTwo) {
  AddDayOf("-5");
  Query();
  EXPECT_EQ(AxisTops(), Lines(4, "2 M"));
  EXPECT_EQ(Bars(45), Lines(8, "-250"));
  EXPECT_EQ(Values(45), (Lines{"0", "0", "-5", "0", "0", "-5", "0", "0", "-5", "0", "0", "-5"}));
}

TEST_F(DiskSummaryTest, TextStandsUnchangedWithTheSmallestBar) {
  for (const std::string text : {"", "n/a", "unknown", "1,000"}) {
    SCOPED_TRACE(text);
    ClearDays();
    AddDayOf("'" + text + "'");
    Query();
    EXPECT_EQ(Values(45), Lines(12, text));
    EXPECT_EQ(Bars(45), Lines(8, "1"));
    EXPECT_EQ(AxisTops(), Lines(4, "2 M"));
  }
  ExpectNoEvent();
}

TEST_F(DiskSummaryTest, TextIsInBytesOfThePagesCharset) {
  AddDayOf("'groß'");
  Query();
  EXPECT_EQ(Values(45), Lines(12, "gro\xDF"));
}

}  // namespace
}  // namespace quillon
