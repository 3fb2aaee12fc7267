// The axes of a port's charts and the bars below them.
#include "queries/figure_cases.h"
#include "queries/hist45_fixture.h"

namespace quillon {
namespace {

class SwitchHist45AxesTest : public Hist45Test {
 protected:
  // The report over one day that differs from an ordinary one in these columns.
  Hist45SwitchRecord& ReportDay(const Columns& differing) {
    History("DELETE FROM VLAN_HistCtrl; DELETE FROM VLAN_Day01;");
    AddPortHistory(1, differing);
    return ReportPort();
  }
};

// The columns of a panel without any traffic.
const Columns kQuiet = {{"InHCOctetsMb24H", "0"},   {"OutHCOctetsMb24H", "0"},
                        {"InBroadCastPpm24H", "0"}, {"InMultiCastPpm24H", "0"},
                        {"InErrorsTot24H", "0"},    {"OutErrorsTot24H", "0"}};

Columns QuietBut(const std::string& column, const std::string& figure) {
  Columns columns = kQuiet;
  columns[column] = figure;
  return columns;
}

TEST_F(SwitchHist45AxesTest, PortWithoutTrafficHasAxesOfTwoAndBarsOfOne) {
  const Hist45SwitchRecord& record = ReportDay(kQuiet);
  EXPECT_EQ(Axis(record.Volume), (Lines{"2 M", "1 M"}));
  EXPECT_EQ(Axis(record.Broadcast), (Lines{"2", "1"}));
  EXPECT_EQ(Axis(record.Errors), (Lines{"2", "1"}));
  EXPECT_EQ(Bars(kNewest), kSixOnes);
  EXPECT_EQ(Figures(kNewest), (Lines{"0", "0", "0 W39", "0 W39", "0 W38", "0 W38"}));
  ExpectNoEvent();
}

TEST_F(SwitchHist45AxesTest, TopOfTheVolumeIsTheLargestFigureRounded) {
  for (const FigureAxis& row : kVolumeAxes) {
    for (const std::string column : {"InHCOctetsMb24H", "OutHCOctetsMb24H"}) {
      EXPECT_EQ(Axis(ReportDay(QuietBut(column, row.stored)).Volume), (Lines{row.max, row.half}))
          << column << " " << row.stored;
    }
  }
  ExpectNoEvent();
}

TEST_F(SwitchHist45AxesTest, TopOfACountIsTheLargestFigureRounded) {
  for (const FigureAxis& row : kCountAxes) {
    for (const std::string column : {"InBroadCastPpm24H", "InMultiCastPpm24H"}) {
      EXPECT_EQ(Axis(ReportDay(QuietBut(column, row.stored)).Broadcast), (Lines{row.max, row.half}))
          << column << " " << row.stored;
    }
    for (const std::string column : {"InErrorsTot24H", "OutErrorsTot24H"}) {
      EXPECT_EQ(Axis(ReportDay(QuietBut(column, row.stored)).Errors), (Lines{row.max, row.half}))
          << column << " " << row.stored;
    }
  }
  ExpectNoEvent();
}

TEST_F(SwitchHist45AxesTest, LargestFigureMayBeOfAnyDay) {
  for (const int age : {1, 20, 45}) {
    History("DELETE FROM VLAN_HistCtrl");
    for (const int each : {1, 20, 45}) {
      History("DELETE FROM " + PortTable(each));
      AddPortHistory(each, {{"OutHCOctetsMb24H", each == age ? "123" : "10"}});
    }
    EXPECT_EQ(ReportPort().Volume.YaxisMax, "150 M") << age;
    EXPECT_EQ(PortRecord().Volume.RightBar[PositionOf(age)], "82") << age;
    EXPECT_EQ(PortRecord().Volume.RightBar[PositionOf(age == 1 ? 20 : 1)], "7") << age;
  }
}

TEST_F(SwitchHist45AxesTest, PanelsHaveAxesOfTheirOwn) {
  const Hist45SwitchRecord& record = ReportDay({{"InMultiCastPpm24H", "70000"}});
  EXPECT_EQ(record.Volume.YaxisMax, "6 M");
  EXPECT_EQ(record.Broadcast.YaxisMax, "70 K");
  EXPECT_EQ(record.Errors.YaxisMax, "2");
  EXPECT_EQ(Bars(kNewest), (Lines{"100", "83", "1", "100", "100", "50"}));
}

TEST_F(SwitchHist45AxesTest, FiguresAreComparedAsWholeNumbers) {
  struct Case {
    Lines figures;  // the oldest first
    Lines labels;
    Lines bars;
  };
  const Case cases[] = {
      {{"2.4"}, {"2 M", "1 M"}, {"120"}},  // 2 is not above 2
      {{"2.5"}, {"4 M", "2 M"}, {"62"}},   // 3 is; the top is made of 2.5
      {{"9.5", "10.4"}, {"10 M", "5 M"}, {"95", "104"}},
      {{"10.4", "9.5"}, {"15 M", "7.5 M"}, {"69", "63"}},
      {{"9.5", "10.5"}, {"15 M", "7.5 M"}, {"63", "70"}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.figures.front() + " first");
    History("DELETE FROM VLAN_HistCtrl; DELETE FROM VLAN_Day01; DELETE FROM VLAN_Day02;");
    const int days = static_cast<int>(row.figures.size());
    for (int i = 0; i < days; ++i) {
      AddPortHistory(days - i, QuietBut("InHCOctetsMb24H", row.figures[std::size_t(i)]));
    }
    EXPECT_EQ(Axis(ReportPort().Volume), row.labels);
    for (int i = 0; i < days; ++i) {
      EXPECT_EQ(PortRecord().Volume.LeftBar[PositionOf(days - i)], row.bars[std::size_t(i)]);
    }
  }
  ExpectNoEvent();
}

TEST_F(SwitchHist45AxesTest, BarIsTheFiguresWholePercentOfTheTop) {
  struct Case {
    std::string figure;
    std::string bar;
  };
  const Case cases[] = {
      {"1000", "100"}, {"999", "100"}, {"994", "99"},     {"995", "100"},  // 99.5 to the even 100
      {"985", "98"},                                                       // 98.5 to the even 98
      {"500", "50"},   {"26", "3"},    {"25", "2"},                        // 2.5 to the even 2
      {"15", "2"},                                                         // 1.5 to the even 2
      {"6", "1"},      {"5", "1"},  // 0.5 to the even 0, which draws as 1
      {"4", "1"},      {"0", "1"},     {"-4", "1"},       {"-5", "1"},  // -0.5 to 0
      {"-6", "-1"},    {"-15", "-2"},  {"-1000", "-100"},
  };
  int age = 0;
  for (const Case& row : cases) AddPortHistory(++age, QuietBut("OutErrorsTot24H", row.figure));
  const Panel& errors = ReportPort().Errors;
  EXPECT_EQ(Axis(errors), (Lines{"1 K", "0.5 K"}));
  age = 0;
  for (const Case& row : cases) {
    EXPECT_EQ(errors.RightBar[PositionOf(++age)], row.bar) << row.figure;
    EXPECT_EQ(errors.LeftBar[PositionOf(age)], "1") << row.figure;
  }
  ExpectNoEvent();
}

TEST_F(SwitchHist45AxesTest, BarMayStandHigherThanTheTop) {
  for (const PortSeries& series : PortSeriesInOrder()) {
    const Hist45SwitchRecord& record = ReportDay(QuietBut(series.name, "1234"));
    EXPECT_EQ((record.*series.panel.*series.bars)[kNewest], "123") << series.name;
  }
}

TEST_F(SwitchHist45AxesTest, TextInAFigureDrawsABarOfOne) {
  for (const PortSeries& series : PortSeriesInOrder()) {
    for (const std::string text : {"'n/a'", "''", "'1,000'", "'-'"}) {
      const Hist45SwitchRecord& record = ReportDay(QuietBut(series.name, text));
      EXPECT_EQ((record.*series.panel.*series.bars)[kNewest], "1") << series.name << " " << text;
    }
  }
  ExpectNoEvent();
}

TEST_F(SwitchHist45AxesTest, NumberThatATextBeginsWithCountsForTheTop) {
  // The text becomes the top and does not round to a number: nothing can be drawn by it.
  ReportDay({{"InHCOctetsMb24H", "'12 G'"}});
  EXPECT_EQ(Failures("modSelectSql_SqHist45SwitchControl").size(), 1u);
  EXPECT_EQ(PortRecord().Volume.YaxisMax, "0");
  EXPECT_EQ(PortRecord().Broadcast.YaxisMax, "4");
  EXPECT_EQ(Figures(kNewest), (Lines{"12 G", "5", "4", "3", "2", "1"}));
  EXPECT_EQ(Bars(kNewest), kSixOnes);
}

TEST_F(SwitchHist45AxesTest, TextAsTheTopIsHarmlessWhereNothingIsDrawnByIt) {
  const Hist45SwitchRecord& record =
      ReportDay({{"InHCOctetsMb24H", "'12 G'"}, {"OutHCOctetsMb24H", "-1"}});
  EXPECT_EQ(Axis(record.Volume), (Lines{"0 M", "0 M"}));
  EXPECT_EQ(Figures(kNewest), (Lines{"12 G", "-", "4 W39", "3 W39", "2 W38", "1 W38"}));
  EXPECT_EQ(Bars(kNewest), (Lines{"1", "1", "100", "75", "100", "50"}));
  ExpectNoEvent();
}

TEST_F(SwitchHist45AxesTest, LargerFigureTakesTheTopFromAText) {
  AddPortHistory(2, {{"InHCOctetsMb24H", "'12 G'"}});
  AddPortHistory(1, {{"InHCOctetsMb24H", "20"}});
  const Hist45SwitchRecord& record = ReportPort();
  EXPECT_EQ(Axis(record.Volume), (Lines{"20 M", "10 M"}));
  EXPECT_EQ(record.Volume.Left[44], "12 G");
  EXPECT_EQ(record.Volume.LeftBar[44], "1");
  EXPECT_EQ(record.Volume.LeftBar[45], "100");
  ExpectNoEvent();
}

TEST_F(SwitchHist45AxesTest, FigureOfElevenDigitsOrMoreHasNoAxis) {
  for (const std::string figure : {"10000000000", "123456789012345"}) {
    house.ForgetEvents();
    ReportDay({{"InBroadCastPpm24H", figure}});
    const Lines events = house.Events();
    ASSERT_EQ(events.size(), 2u) << figure;
    EXPECT_EQ(events[0].rfind("1\tmodQuillonWeb_RoundToValue\t", 0), 0u) << events[0];
    EXPECT_EQ(events[1].rfind("1\tmodSelectSql_SqHist45SwitchControl\t", 0), 0u) << events[1];
    EXPECT_EQ(PortRecord().Broadcast.YaxisMax, "0") << figure;
    // The bars before the first one of the axis are drawn, and no text is made.
    EXPECT_EQ(Bars(kNewest), (Lines{"100", "83", "1", "1", "1", "1"})) << figure;
    EXPECT_EQ(Figures(kNewest), (Lines{"6", "5", figure, "3", "2", "1"})) << figure;
    EXPECT_EQ(PortRecord().Volume.YaxisMax, "6") << figure;
    EXPECT_EQ(PortRecord().Errors.YaxisMax, "2") << figure;
  }
}

}  // namespace
}  // namespace quillon
