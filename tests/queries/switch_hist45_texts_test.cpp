// The display texts of a port's figures: units, mean rates, and what has neither.
#include "queries/figure_cases.h"
#include "queries/hist45_fixture.h"

namespace quillon {
namespace {

class SwitchHist45TextsTest : public Hist45Test {
 protected:
  // One report over a day for each case, newest first, in which both columns hold its figure.
  const Hist45SwitchRecord& ReportCases(const std::string& left, const std::string& right,
                                        const std::vector<FigureText>& cases) {
    EXPECT_LE(cases.size(), static_cast<std::size_t>(kNewest));
    int age = 0;
    for (const FigureText& row : cases) {
      AddPortHistory(++age, {{left, row.stored}, {right, row.stored}});
    }
    return ReportPort();
  }

  void ForgetDays(std::size_t count) const {
    History("DELETE FROM VLAN_HistCtrl");
    for (std::size_t age = 1; age <= count; ++age) {
      History("DELETE FROM " + PortTable(static_cast<int>(age)));
    }
  }

  static void ExpectTexts(const Days<std::string>& texts, const std::vector<FigureText>& cases) {
    int age = 0;
    for (const FigureText& row : cases) EXPECT_EQ(texts[PositionOf(++age)], row.text) << row.stored;
  }
};

TEST_F(SwitchHist45TextsTest, VolumeHasItsMeanRateAboveTenMegabytes) {
  const Panel& volume = ReportCases("InHCOctetsMb24H", "OutHCOctetsMb24H", kVolumeTexts).Volume;
  ExpectTexts(volume.Left, kVolumeTexts);
  ExpectTexts(volume.Right, kVolumeTexts);
  ExpectNoEvent();
}

TEST_F(SwitchHist45TextsTest, NegativeVolumeHasNoRate) {
  const std::vector<FigureText> cases = {
      {"-2", "0"}, {"-11", "0"}, {"-0.4", "0"}, {"-1.4", "-"},  // a whole -1 in its digits
  };
  const Panel& volume = ReportCases("InHCOctetsMb24H", "OutHCOctetsMb24H", cases).Volume;
  ExpectTexts(volume.Left, cases);
  ExpectTexts(volume.Right, cases);
  ExpectNoEvent();
}

TEST_F(SwitchHist45TextsTest, EachVolumeIsTestedByItself) {
  AddPortHistory(1, {{"InHCOctetsMb24H", "10"}, {"OutHCOctetsMb24H", "5000"}});
  AddPortHistory(2, {{"InHCOctetsMb24H", "5000"}, {"OutHCOctetsMb24H", "5"}});
  AddPortHistory(3, {{"InHCOctetsMb24H", "5000"}, {"OutHCOctetsMb24H", "-1"}});
  const Panel& volume = ReportPort().Volume;
  EXPECT_EQ(volume.Left[45], "10 M");
  EXPECT_EQ(volume.Right[45], "5 000 M  (463 W44)");
  EXPECT_EQ(volume.Left[44], "5 000 M  (463 W44)");
  EXPECT_EQ(volume.Right[44], "5 M");
  EXPECT_EQ(volume.Right[43], "-");
}

TEST_F(SwitchHist45TextsTest, PacketsHaveARatePerSecondAbove60AMinute) {
  const std::vector<FigureText> cases =
      Joined(kPacketTexts, {{"74074020", "74 074 020 W39<br>(1234 567 W40)"},
                            {"9999999999", "9999 999 999 W39<br>(166666 667 W40)"}});
  const Panel& broadcast = ReportCases("InBroadCastPpm24H", "InMultiCastPpm24H", cases).Broadcast;
  ExpectTexts(broadcast.Left, cases);
  ExpectTexts(broadcast.Right, cases);
  ExpectNoEvent();
}

TEST_F(SwitchHist45TextsTest, PacketsOfMinusOneAreAFigureInBroadcastOnly) {
  const std::vector<FigureText> broadcast = {{"-1", "-1 W39"}};
  const std::vector<FigureText> multicast = {{"-1", "-"}};
  const Panel& panel = ReportCases("InBroadCastPpm24H", "InMultiCastPpm24H", broadcast).Broadcast;
  ExpectTexts(panel.Left, broadcast);
  ExpectTexts(panel.Right, multicast);
}

TEST_F(SwitchHist45TextsTest, ErrorsHaveARatePerMinuteAbove1440ADay) {
  const std::vector<FigureText> cases =
      Joined(kErrorTexts, {{"2000000", "2 000 000 W38<br>(1 389 W39)"},
                           {"1777776480", "1777 776 480 W38<br>(1234 567 W39)"},
                           {"9999999999", "9999 999 999 W38<br>(6944 444 W39)"}});
  const Panel& errors = ReportCases("InErrorsTot24H", "OutErrorsTot24H", cases).Errors;
  ExpectTexts(errors.Left, cases);
  ExpectTexts(errors.Right, cases);
  ExpectNoEvent();
}

TEST_F(SwitchHist45TextsTest, TextInAFigureStandsAsItIs) {
  const std::vector<FigureText> cases = {
      {"'n/a'", "n/a"}, {"''", ""},   {"'unknown'", "unknown"}, {"'1,000'", "1,000"},
      {"'&H1'", "&H1"}, {"'-'", "-"}, {"'1.2.3'", "1.2.3"},     {"'zwölf'", "zw\xF6lf"},
  };
  const Panel& volume = ReportCases("InHCOctetsMb24H", "OutHCOctetsMb24H", cases).Volume;
  ExpectTexts(volume.Left, cases);
  ExpectTexts(volume.Right, cases);
  ForgetDays(cases.size());
  const Panel& packets = ReportCases("InBroadCastPpm24H", "InMultiCastPpm24H", cases).Broadcast;
  ExpectTexts(packets.Left, cases);
  ExpectTexts(packets.Right, cases);
  ForgetDays(cases.size());
  const Panel& errors = ReportCases("InErrorsTot24H", "OutErrorsTot24H", cases).Errors;
  ExpectTexts(errors.Left, cases);
  ExpectTexts(errors.Right, cases);
  ExpectNoEvent();
}

TEST_F(SwitchHist45TextsTest, UnitsAreTheWordsOfTheLanguage) {
  house.words.LangWord[44] = "kbit/s";
  house.words.LangWord[40] = "";
  house.words.LangWord[38] = "Fehler <b>am Tag</b>";
  house.words.LangWord[39] = "je Minute";
  AddPortHistory(
      1, {{"InHCOctetsMb24H", "5000"}, {"InBroadCastPpm24H", "61"}, {"OutErrorsTot24H", "1441"}});
  ReportPort();
  EXPECT_EQ(Figures(kNewest)[0], "5 000 M  (463 kbit/s)");
  EXPECT_EQ(Figures(kNewest)[2], "61 je Minute<br>(1 )");
  EXPECT_EQ(Figures(kNewest)[5], "1 441 Fehler <b>am Tag</b><br>(1 je Minute)");
}

}  // namespace
}  // namespace quillon
