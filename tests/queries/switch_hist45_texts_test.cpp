// The display texts of a port's figures: units, mean rates, and what has neither.
#include "queries/hist45_fixture.h"

namespace quillon {
namespace {

class SwitchHist45TextsTest : public Hist45Test {
 protected:
  // A stored figure as SQL literal and the text that it gives.
  struct TextCase {
    std::string stored;
    std::string text;
  };

  // One report over a day for each case, newest first, in which both columns hold its figure.
  template <std::size_t N>
  const Hist45SwitchRecord& ReportCases(const std::string& left, const std::string& right,
                                        const TextCase (&cases)[N]) {
    static_assert(N <= 45);
    int age = 0;
    for (const TextCase& row : cases) {
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

  template <std::size_t N>
  static void ExpectTexts(const Days<std::string>& texts, const TextCase (&cases)[N]) {
    int age = 0;
    for (const TextCase& row : cases) EXPECT_EQ(texts[PositionOf(++age)], row.text) << row.stored;
  }
};

TEST_F(SwitchHist45TextsTest, VolumeHasItsMeanRateAboveTenMegabytes) {
  const TextCase cases[] = {
      {"-1", "-"},
      {"0", "0"},
      {"0.4", "0"},
      {"1", "1 M"},
      {"9.5", "10 M"},
      {"10", "10 M"},
      {"10.0001", "10 M  (1 W44)"},
      {"10.5", "11 M  (1 W44)"},
      {"11", "11 M  (1 W44)"},
      {"27", "27 M  (2 W44)"},     // 2.5 to the even 2
      {"999", "999 M  (92 W44)"},  // 92.5 to the even 92
      {"1234", "1 234 M  (114 W44)"},
      {"1500", "1 500 M  (139 W44)"},
      {"10799", "11 G  (1 000 W44)"},
      {"10800", "11 G  (1 000 W44)"},
      {"10800.5", "11 G  (1 W41)"},
      {"10801", "11 G  (1 W41)"},
      {"16200", "16 G  (2 W41)"},  // 1.5 to the even 2
      {"27000", "27 G  (2 W41)"},  // 2.5 to the even 2
      {"37800", "38 G  (4 W41)"},  // 3.5 to the even 4
      {"1234567", "1 235 G  (114 W41)"},
      {"9999500", "10 000 G  (926 W41)"},
      {"12344678", "13 T  (1 143 W41)"},
      {"108000000", "108 T  (10 000 W41)"},
      {"108000000.5", "108 T  (10 W45)"},
      {"108000001", "108 T  (10 W45)"},
      {"113400000", "113 T  (10 W45)"},  // 10.5 to the even 10
      {"124200000", "124 T  (12 W45)"},  // 11.5 to the even 12
      {"1234567890", "1 235 T  (114 W45)"},
      {"9999999999", "10 000 T  (926 W45)"},
  };
  const Panel& volume = ReportCases("InHCOctetsMb24H", "OutHCOctetsMb24H", cases).Volume;
  ExpectTexts(volume.Left, cases);
  ExpectTexts(volume.Right, cases);
  ExpectNoEvent();
}

TEST_F(SwitchHist45TextsTest, NegativeVolumeHasNoRate) {
  const TextCase cases[] = {
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
  const TextCase cases[] = {
      {"0", "0 W39"},
      {"1", "1 W39"},
      {"-2", "-2 W39"},
      {"-1234", "-1 234 W39"},
      {"2.5", "3 W39"},  // a digit pattern rounds halves away from zero
      {"59.9", "60 W39"},
      {"60", "60 W39"},
      {"60.4", "60 W39<br>(1 W40)"},
      {"61", "61 W39<br>(1 W40)"},
      {"90", "90 W39<br>(2 W40)"},    // 1.5 to the even 2
      {"150", "150 W39<br>(2 W40)"},  // 2.5 to the even 2
      {"1234567", "1 234 567 W39<br>(20 576 W40)"},
      {"74074020", "74 074 020 W39<br>(1234 567 W40)"},
      {"9999999999", "9999 999 999 W39<br>(166666 667 W40)"},
  };
  const Panel& broadcast = ReportCases("InBroadCastPpm24H", "InMultiCastPpm24H", cases).Broadcast;
  ExpectTexts(broadcast.Left, cases);
  ExpectTexts(broadcast.Right, cases);
  ExpectNoEvent();
}

TEST_F(SwitchHist45TextsTest, PacketsOfMinusOneAreAFigureInBroadcastOnly) {
  const TextCase broadcast[] = {{"-1", "-1 W39"}};
  const TextCase multicast[] = {{"-1", "-"}};
  const Panel& panel = ReportCases("InBroadCastPpm24H", "InMultiCastPpm24H", broadcast).Broadcast;
  ExpectTexts(panel.Left, broadcast);
  ExpectTexts(panel.Right, multicast);
}

TEST_F(SwitchHist45TextsTest, ErrorsHaveARatePerMinuteAbove1440ADay) {
  const TextCase cases[] = {
      {"0", "0 W38"},
      {"1", "1 W38"},
      {"-1", "-1 W38"},
      {"-2.5", "-3 W38"},
      {"1439.5", "1 440 W38"},
      {"1440", "1 440 W38"},
      {"1440.4", "1 440 W38<br>(1 W39)"},
      {"1440.5", "1 441 W38<br>(1 W39)"},
      {"1441", "1 441 W38<br>(1 W39)"},
      {"2160", "2 160 W38<br>(2 W39)"},  // 1.5 to the even 2
      {"3600", "3 600 W38<br>(2 W39)"},  // 2.5 to the even 2
      {"2000000", "2 000 000 W38<br>(1 389 W39)"},
      {"1777776480", "1777 776 480 W38<br>(1234 567 W39)"},
      {"9999999999", "9999 999 999 W38<br>(6944 444 W39)"},
  };
  const Panel& errors = ReportCases("InErrorsTot24H", "OutErrorsTot24H", cases).Errors;
  ExpectTexts(errors.Left, cases);
  ExpectTexts(errors.Right, cases);
  ExpectNoEvent();
}

TEST_F(SwitchHist45TextsTest, TextInAFigureStandsAsItIs) {
  const TextCase cases[] = {
      {"'n/a'", "n/a"}, {"''", ""},   {"'unknown'", "unknown"}, {"'1,000'", "1,000"},
      {"'&H1'", "&H1"}, {"'-'", "-"}, {"'1.2.3'", "1.2.3"},     {"'zwölf'", "zw\xF6lf"},
  };
  const Panel& volume = ReportCases("InHCOctetsMb24H", "OutHCOctetsMb24H", cases).Volume;
  ExpectTexts(volume.Left, cases);
  ExpectTexts(volume.Right, cases);
  ForgetDays(std::size(cases));
  const Panel& packets = ReportCases("InBroadCastPpm24H", "InMultiCastPpm24H", cases).Broadcast;
  ExpectTexts(packets.Left, cases);
  ExpectTexts(packets.Right, cases);
  ForgetDays(std::size(cases));
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
