// What the ports' summary makes of a day's sums: words, texts, bars and axes. Which day stands
// where is in summary_days_test and switch_summary_days_test, failures in summary_failure_test and
// switch_summary_failure_test, the dump in summary_dump_test.
#include "queries/summary_fixture.h"

namespace quillon {
namespace {

TEST_F(SwitchSummaryTest, EachColumnFillsItsSeries) {
  AddDay(2);
  Query();
  EXPECT_EQ(Values(44),
            (Lines{"6 M", "5 M", "4 W39", "3 W39", "2 W38", "1 W38", "20", "10  (50%)"}));
  EXPECT_EQ(Bars(44), (Lines{"100", "83", "100", "75", "100", "50", "100", "50"}));
  EXPECT_EQ(AxisTops(), (Lines{"6 M", "4", "2", "20"}));
  EXPECT_EQ(AxisHalves(), (Lines{"3 M", "2", "1", "10"}));
  ExpectNoEvent();
}

TEST_F(SwitchSummaryTest, WordsAreThoseOfThePanels) {
  FillRecord();
  const Hist45dSwitchRecord& record = Query();
  const auto words = [](const Panel& panel) {
    return Lines{panel.Head, panel.NameLeft, panel.NameRight};
  };
  EXPECT_EQ(words(record.Volume), (Lines{"W12", "W22", "W23"}));
  EXPECT_EQ(words(record.Broadcast), (Lines{"W13", "W24", "W25"}));
  EXPECT_EQ(words(record.Errors), (Lines{"W14", "W26", "W27"}));
  EXPECT_EQ(words(record.Ports), (Lines{"W48", "W49", "W50"}));
}

TEST_F(SwitchSummaryTest, ReportIsTheWordOfTheKind) {
  EXPECT_EQ(Query().Report, "W34");
  EXPECT_EQ(QueryTrunk().Report, "W35");
  EXPECT_EQ(Query().Report, "W34");
}

TEST_F(SwitchSummaryTest, AxesWithoutADayEndAtTwo) {
  FillRecord();
  Query();
  EXPECT_EQ(AxisTops(), (Lines{"2 M", "2", "2", "2"}));
  EXPECT_EQ(AxisHalves(), (Lines{"1 M", "1", "1", "1"}));
}

TEST_F(SwitchSummaryTest, VolumeHasItsMeanRateAboveTenMegabytes) {
  ExpectTexts("InHCOctetsMb24H", kVolumeTexts);
  ExpectTexts("OutHCOctetsMb24H", kVolumeTexts);
  ExpectNoEvent();
}

TEST_F(SwitchSummaryTest, EachVolumeIsJudgedByItself) {
  AddDay(1, {{"InHCOctetsMb24H", "10"}, {"OutHCOctetsMb24H", "10801"}});
  AddDay(2, {{"InHCOctetsMb24H", "11"}, {"OutHCOctetsMb24H", "5"}});
  AddDay(3, {{"InHCOctetsMb24H", "-1"}, {"OutHCOctetsMb24H", "11"}});
  const Panel& volume = Query().Volume;
  EXPECT_EQ((Lines{volume.Left[45], volume.Right[45]}), (Lines{"10 M", "11 G  (1 W41)"}));
  EXPECT_EQ((Lines{volume.Left[44], volume.Right[44]}), (Lines{"11 M  (1 W44)", "5 M"}));
  EXPECT_EQ((Lines{volume.Left[43], volume.Right[43]}), (Lines{"-", "11 M  (1 W44)"}));
}

// The rate has room for a figure of three groups, where that of a single port has two.
TEST_F(SwitchSummaryTest, BroadcastAndMulticastHaveARatePerSecondAbove60) {
  const std::vector<FigureText> cases =
      Joined(kPacketTexts,
             {{"60000000", "60 000 000 W39<br>(1 000 000 W40)"},
              {"74074020", "74 074 020 W39<br>(1 234 567 W40)"},
              {"1234567890", "1234 567 890 W39<br>(20 576 132 W40)"},  // 20576131.5 to the even 132
              {"9999999999", "9999 999 999 W39<br>(166 666 667 W40)"}});
  ExpectTexts("InBroadCastPpm24H", cases);
  ExpectTexts("InMultiCastPpm24H", cases);
  ExpectNoEvent();
}

TEST_F(SwitchSummaryTest, MinusOneIsADashInTheMulticastColumnAlone) {
  struct Case {
    std::string column;
    std::string text;
  };
  const Case cases[] = {{"InBroadCastPpm24H", "-1 W39"},
                        {"InMultiCastPpm24H", "-"},
                        {"InErrorsTot24H", "-1 W38"},
                        {"OutErrorsTot24H", "-1 W38"},
                        {"Ports", "-1"},
                        {"PortsInTraffic", "-1  (-5%)"}};
  for (const Case& row : cases) ExpectTexts(row.column, {{"-1", row.text}});
  ExpectNoEvent();
}

TEST_F(SwitchSummaryTest, BarOfAMissingMulticastFigureIsThatOfMinusOne) {
  AddDay(1, {{"InMultiCastPpm24H", "-1"}});
  AddDay(2, {{"InMultiCastPpm24H", "-1.4"}});
  Query();
  EXPECT_EQ(Value("InMultiCastPpm24H", 45), "-");
  EXPECT_EQ(Bar("InMultiCastPpm24H", 45), "-25");  // of 4
  EXPECT_EQ(Value("InMultiCastPpm24H", 44), "-1 W39");
  EXPECT_EQ(Bar("InMultiCastPpm24H", 44), "-35");
}

TEST_F(SwitchSummaryTest, ErrorsHaveARatePerMinuteAbove1440AndPerSecondAbove86400) {
  const std::vector<FigureText> cases =
      Joined(kErrorTexts, {{"86401", "86 401 W38<br>(1 W40)"},
                           {"129600", "129 600 W38<br>(2 W40)"},  // 1.5 to the even 2
                           {"216000", "216 000 W38<br>(2 W40)"},  // 2.5 to the even 2
                           {"86400000", "86 400 000 W38<br>(1 000 W40)"},
                           {"1234567890", "1234 567 890 W38<br>(14 289 W40)"},
                           {"9999999999", "9999 999 999 W38<br>(115 741 W40)"}});
  ExpectTexts("InErrorsTot24H", cases);
  ExpectTexts("OutErrorsTot24H", cases);
  ExpectNoEvent();
}

TEST_F(SwitchSummaryTest, PortsInTrafficShowTheirShareOfAllPorts) {
  struct Case {
    std::string ports;
    std::string inTraffic;
    std::string portsText;
    std::string inTrafficText;
  };
  const Case cases[] = {
      {"20", "0", "20", "0  (0%)"},
      {"20", "20", "20", "20  (100%)"},
      {"20", "30", "20", "30  (150%)"},
      {"8", "1", "8", "1  (13%)"},   // 12.5, away from zero
      {"40", "1", "40", "1  (3%)"},  // 2.5, away from zero
      {"250", "1", "250", "1  (0%)"},
      {"1000", "575", "1 000", "575  (57%)"},  // a hundred times 0.575 is below 57.5
      {"1234", "617", "1 234", "617  (50%)"},
      {"1234567", "1234567", "1 234 567", "1 234 567  (100%)"},
      {"1234567890", "12345679", "1234 567 890", "12 345 679  (1%)"},
      {"2.6", "1", "3", "1  (33%)"},  // of the 3 that is shown
      {"0", "0", "0", "0  (0%)"},     // without ports the share is that of one port
      {"0", "3", "0", "3  (300%)"},
      {"0.4", "2", "0", "2  (200%)"},
      {"-5", "3", "-5", "3  (300%)"},
      {"20", "-1", "20", "-1  (-5%)"},
      {"'many'", "3", "many", "3  (300%)"},
      {"20", "'some'", "20", "some"},
      {"'12 G'", "3", "12 G", "3  (25%)"},
  };
  int age = 0;
  for (const Case& row : cases) {
    AddDay(++age, {{"Ports", row.ports}, {"PortsInTraffic", row.inTraffic}});
  }
  Query();
  age = 0;
  for (const Case& row : cases) {
    const int position = PositionOf(++age);
    EXPECT_EQ(Value("Ports", position), row.portsText) << row.ports;
    EXPECT_EQ(Value("PortsInTraffic", position), row.inTrafficText) << row.ports;
  }
  ExpectNoEvent();
}

TEST_F(SwitchSummaryTest, VolumeAxisIsRoundedAndLabelledInItsUnit) {
  ExpectAxes("InHCOctetsMb24H", kVolumeAxes);
  ExpectNoEvent();
}

TEST_F(SwitchSummaryTest, OtherAxesAreLabelledAsCounts) {
  for (const std::string column : {"InBroadCastPpm24H", "InErrorsTot24H", "Ports"}) {
    ExpectAxes(column, kCountAxes);
  }
  ExpectNoEvent();
}

TEST_F(SwitchSummaryTest, AxisIsThatOfTheLargestFigureOfBothSeries) {
  Columns older;
  Columns largest;
  for (const auto& column : PortSums::InOrder()) {
    const bool isLeft = column.values == &Panel::Left;
    older[column.name] = isLeft ? "7" : "0";
    largest[column.name] = isLeft ? "3" : "22";
  }
  AddDay(1, older);
  AddDay(20, largest);
  AddDay(45, older);
  Query();
  EXPECT_EQ(AxisTops(), (Lines{"25 M", "25", "25", "25"}));
  EXPECT_EQ(AxisHalves(), (Lines{"13 M", "13", "13", "13"}));
  EXPECT_EQ(Bars(45), (Lines{"28", "1", "28", "1", "28", "1", "28", "1"}));
  EXPECT_EQ(Bars(26), (Lines{"12", "88", "12", "88", "12", "88", "12", "88"}));
  EXPECT_EQ(Bars(1), Bars(45));
}

TEST_F(SwitchSummaryTest, BarIsAWholePercentOfTheAxisTop) {
  const std::vector<FigureText> cases = {
      {"0", "1"},     {"1", "1"},        {"5", "1"},  // 0.5 to the even 0, which becomes 1
      {"6", "1"},     {"15", "2"},                    // 1.5 to the even 2
      {"25", "2"},                                    // 2.5 to the even 2
      {"45", "4"},                                    // 4.5 to the even 4
      {"575", "57"},                                  // a hundred times 0.575 is below 57.5
      {"995", "100"},                                 // 99.5 to the even 100
      {"-5", "1"},                                    // -0.5 to the even 0
      {"-15", "-2"},  {"-1000", "-100"}, {"'n/a'", "1"}, {"''", "1"},
  };
  AddDay(45, {{"InHCOctetsMb24H", "1000"}});
  int age = 0;
  for (const FigureText& row : cases) AddDay(++age, {{"OutHCOctetsMb24H", row.stored}});
  Query();
  EXPECT_EQ(Bar("InHCOctetsMb24H", 1), "100");
  age = 0;
  for (const FigureText& row : cases) {
    EXPECT_EQ(Bar("OutHCOctetsMb24H", PositionOf(++age)), row.text) << row.stored;
  }
}

TEST_F(SwitchSummaryTest, NegativeFiguresLeaveTheAxisAtTwo) {
  AddDayOf("-5");
  Query();
  EXPECT_EQ(AxisTops(), (Lines{"2 M", "2", "2", "2"}));
  EXPECT_EQ(Bars(45), Lines(8, "-250"));
  EXPECT_EQ(Values(45),
            (Lines{"0", "0", "-5 W39", "-5 W39", "-5 W38", "-5 W38", "-5", "-5  (-500%)"}));
  ExpectNoEvent();
}

TEST_F(SwitchSummaryTest, TextStandsUnchangedWithTheSmallestBar) {
  for (const std::string text : {"", "n/a", "unknown", "1,000", "--1"}) {
    SCOPED_TRACE(text);
    ClearDays();
    AddDayOf("'" + text + "'");
    Query();
    EXPECT_EQ(Values(45), Lines(8, text));
    EXPECT_EQ(Bars(45), Lines(8, "1"));
    EXPECT_EQ(AxisTops(), (Lines{"2 M", "2", "2", "2"}));
  }
  ExpectNoEvent();
}

// Its number makes it the largest figure, and its text is none that an axis could end at.
TEST_F(SwitchSummaryTest, TextThatBeginsWithALargeNumberMakesAnAxisOfZero) {
  AddDayOf("'12 G'");
  Query();
  EXPECT_EQ(Values(45), Lines(8, "12 G"));
  EXPECT_EQ(Bars(45), Lines(8, "1"));
  EXPECT_EQ(AxisTops(), (Lines{"0 M", "0", "0", "0"}));
  EXPECT_EQ(AxisHalves(), (Lines{"0 M", "0", "0", "0"}));
  ExpectNoEvent();
}

TEST_F(SwitchSummaryTest, TextIsInBytesOfThePagesCharset) {
  AddDayOf("'groß'");
  Query();
  EXPECT_EQ(Values(45), Lines(8, "gro\xDF"));
}

}  // namespace
}  // namespace quillon
