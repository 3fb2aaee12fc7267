// The twelve metric texts of a port, row by row: units, thresholds of the rates, marks of
// missing figures.
#include "queries/switch_top10_fixture.h"

namespace quillon {
namespace {

// A stored figure as SQL literal, and the short and full text that it gives.
struct MetricCase {
  std::string stored;
  std::string shortForm;
  std::string fullForm;
};

class SwitchTop10MetricsTest : public SwitchTop10Test {
 protected:
  // The texts of a single port with these figures.
  const SwitchTableRow& Texts(const Columns& figures) {
    Sql("DELETE FROM VLAN");
    AddPort(figures);
    return Query().rows[1];
  }

  template <std::size_t N>
  void ExpectTexts(const std::string& column, std::string SwitchTableRow::*shortForm,
                   std::string SwitchTableRow::*fullForm, const MetricCase (&cases)[N]) {
    for (const MetricCase& row : cases) {
      const SwitchTableRow& texts = Texts({{column, row.stored}});
      EXPECT_EQ(texts.*shortForm, row.shortForm) << column << " " << row.stored;
      EXPECT_EQ(texts.*fullForm, row.fullForm) << column << " " << row.stored;
    }
  }
};

TEST_F(SwitchTop10MetricsTest, IncomingVolumeHasItsMeanRateAboveTenMegabytes) {
  const MetricCase cases[] = {
      {"-1", "-", "-"},
      {"0", "0", "0"},
      {"1", "1 M", "1 M"},
      {"10", "10 M", "10 M"},
      {"10.5", "11 M", "11 M  (1 W44)"},
      {"11", "11 M", "11 M  (1 W44)"},
      {"27", "27 M", "27 M  (2 W44)"},  // 2.5 to the even 2
      {"999", "999 M", "999 M  (92 W44)"},
      {"1234", "1 G", "1 234 M  (114 W44)"},
      {"1500", "2 G", "1 500 M  (139 W44)"},
      {"10800", "11 G", "11 G  (1 000 W44)"},
      {"10801", "11 G", "11 G  (1 W41)"},
      {"27000", "27 G", "27 G  (2 W41)"},  // 2.5 to the even 2
      {"37800", "38 G", "38 G  (4 W41)"},  // 3.5 to the even 4
      {"108000000", "108 T", "108 T  (10 000 W41)"},
      {"108000001", "108 T", "108 T  (10 W45)"},
      {"113400000", "113 T", "113 T  (10 W45)"},  // 10.5 to the even 10
      {"124200000", "124 T", "124 T  (12 W45)"},  // 11.5 to the even 12
      {"13333323600000", "13 333 P", "13 333 P  (1234 567 W45)"},
  };
  ExpectTexts("InHCOctetsMb24H", &SwitchTableRow::inHCOctetsMb24H,
              &SwitchTableRow::inHCOctetsMb24HF, cases);
  ExpectNoEvent();
}

TEST_F(SwitchTop10MetricsTest, OutgoingVolumeTestsTheIncomingOneForItsSmallestRate) {
  struct Case {
    std::string in;
    std::string out;
    std::string shortForm;
    std::string fullForm;
  };
  const Case cases[] = {
      {"10", "5000", "5 G", "5 000 M"},
      {"11", "5000", "5 G", "5 000 M  (463 W44)"},
      {"11", "5", "5 M", "5 M  (0 W44)"},
      {"11", "10", "10 M", "10 M  (1 W44)"},
      {"11", "0", "0", "0  (0 W44)"},
      {"11", "-1", "-", "-  (0 W44)"},
      {"10", "11", "11 M", "11 M"},
      {"0", "10800", "11 G", "11 G"},
      {"-1", "10800", "11 G", "11 G"},
      {"1000000", "10800", "11 G", "11 G  (1 000 W44)"},
      {"0", "10801", "11 G", "11 G  (1 W41)"},
      {"0", "108000000", "108 T", "108 T  (10 000 W41)"},
      {"0", "108000001", "108 T", "108 T  (10 W45)"},
      {"-1", "-1", "-", "-"},
      {"0", "0", "0", "0"},
  };
  for (const Case& row : cases) {
    const SwitchTableRow& texts =
        Texts({{"InHCOctetsMb24H", row.in}, {"OutHCOctetsMb24H", row.out}});
    EXPECT_EQ(texts.outHCOctetsMb24H, row.shortForm) << row.in << " in, " << row.out << " out";
    EXPECT_EQ(texts.outHCOctetsMb24HF, row.fullForm) << row.in << " in, " << row.out << " out";
  }
  ExpectNoEvent();
}

TEST_F(SwitchTop10MetricsTest, IncomingVolumeDoesNotLookAtTheOutgoingOne) {
  const SwitchTableRow& texts = Texts({{"InHCOctetsMb24H", "10"}, {"OutHCOctetsMb24H", "99999"}});
  EXPECT_EQ(texts.inHCOctetsMb24HF, "10 M");
}

TEST_F(SwitchTop10MetricsTest, BroadcastHasARatePerSecondAbove60) {
  const MetricCase cases[] = {
      {"0", "0", "0 W39"},
      {"-1", "-1", "-1 W39"},
      {"2.5", "3", "3 W39"},
      {"60", "60", "60 W39"},
      {"60.4", "60", "60 W39  (1 W40)"},
      {"61", "61", "61 W39  (1 W40)"},
      {"90", "90", "90 W39  (2 W40)"},     // 1.5 to the even 2
      {"150", "150", "150 W39  (2 W40)"},  // 2.5 to the even 2
      {"1234567", "1 234 567", "1 234 567 W39  (20 576 W40)"},
      {"74074020", "74 074 020", "74 074 020 W39  (1234 567 W40)"},
  };
  ExpectTexts("InBroadCastPpm24H", &SwitchTableRow::inBroadCastPpm24H,
              &SwitchTableRow::inBroadCastPpm24HF, cases);
  ExpectNoEvent();
}

TEST_F(SwitchTop10MetricsTest, MulticastIsLikeBroadcastButForItsMarkOfNoFigure) {
  const MetricCase cases[] = {
      {"-1", "-", "-"},
      {"-2", "-2", "-2 W39"},
      {"0", "0", "0 W39"},
      {"60", "60", "60 W39"},
      {"61", "61", "61 W39  (1 W40)"},
      {"150", "150", "150 W39  (2 W40)"},
      {"74074020", "74 074 020", "74 074 020 W39  (1234 567 W40)"},
  };
  ExpectTexts("InMultiCastPpm24H", &SwitchTableRow::inMultiCastPpm24H,
              &SwitchTableRow::inMultiCastPpm24HF, cases);
  ExpectNoEvent();
}

TEST_F(SwitchTop10MetricsTest, ErrorsHaveARatePerMinuteAbove1440) {
  const MetricCase cases[] = {
      {"0", "0", "0 W38"},
      {"-1", "-1", "-1 W38"},
      {"1440", "1 440", "1 440 W38"},
      {"1441", "1 441", "1 441 W38  (1 W39)"},
      {"2160", "2 160", "2 160 W38  (2 W39)"},  // 1.5 to the even 2
      {"3600", "3 600", "3 600 W38  (2 W39)"},  // 2.5 to the even 2
      {"2000000", "2 000 000", "2 000 000 W38  (1 389 W39)"},
      {"1777776480", "1777 776 480", "1777 776 480 W38  (1234 567 W39)"},
  };
  ExpectTexts("InErrorsTot24H", &SwitchTableRow::inErrorsTot24H, &SwitchTableRow::inErrorsTot24HF,
              cases);
  ExpectTexts("OutErrorsTot24H", &SwitchTableRow::outErrorsTot24H,
              &SwitchTableRow::outErrorsTot24HF, cases);
  ExpectNoEvent();
}

TEST_F(SwitchTop10MetricsTest, EmptyTextIsZeroInAVolumeAndNothingElsewhere) {
  const MetricCase volume[] = {{"''", "0", "0"}};
  const MetricCase packets[] = {{"''", "", " W39"}};
  const MetricCase errors[] = {{"''", "", " W38"}};
  ExpectTexts("InHCOctetsMb24H", &SwitchTableRow::inHCOctetsMb24H,
              &SwitchTableRow::inHCOctetsMb24HF, volume);
  ExpectTexts("OutHCOctetsMb24H", &SwitchTableRow::outHCOctetsMb24H,
              &SwitchTableRow::outHCOctetsMb24HF, volume);
  ExpectTexts("InBroadCastPpm24H", &SwitchTableRow::inBroadCastPpm24H,
              &SwitchTableRow::inBroadCastPpm24HF, packets);
  ExpectTexts("InMultiCastPpm24H", &SwitchTableRow::inMultiCastPpm24H,
              &SwitchTableRow::inMultiCastPpm24HF, packets);
  ExpectTexts("InErrorsTot24H", &SwitchTableRow::inErrorsTot24H, &SwitchTableRow::inErrorsTot24HF,
              errors);
  ExpectTexts("OutErrorsTot24H", &SwitchTableRow::outErrorsTot24H,
              &SwitchTableRow::outErrorsTot24HF, errors);
  ExpectNoEvent();
}

TEST_F(SwitchTop10MetricsTest, TextInACountStandsWithItsUnitAndWithoutARate) {
  const MetricCase packets[] = {{"'n/a'", "n/a", "n/a W39"}, {"'1,000'", "1,000", "1,000 W39"}};
  const MetricCase errors[] = {{"'many'", "many", "many W38"}};
  ExpectTexts("InBroadCastPpm24H", &SwitchTableRow::inBroadCastPpm24H,
              &SwitchTableRow::inBroadCastPpm24HF, packets);
  ExpectTexts("InMultiCastPpm24H", &SwitchTableRow::inMultiCastPpm24H,
              &SwitchTableRow::inMultiCastPpm24HF, packets);
  ExpectTexts("OutErrorsTot24H", &SwitchTableRow::outErrorsTot24H,
              &SwitchTableRow::outErrorsTot24HF, errors);
  ExpectNoEvent();
}

TEST_F(SwitchTop10MetricsTest, ShortTextInAVolumeIsZero) {
  const MetricCase cases[] = {{"'n/a'", "0", "0"}, {"'-'", "0", "0"}};
  ExpectTexts("InHCOctetsMb24H", &SwitchTableRow::inHCOctetsMb24H,
              &SwitchTableRow::inHCOctetsMb24HF, cases);
  ExpectNoEvent();
}

TEST_F(SwitchTop10MetricsTest, LongTextInAVolumeStaysAndIsReportedByTheConversion) {
  const SwitchTableRow& texts = Texts({{"InHCOctetsMb24H", "'unknown'"}});
  EXPECT_EQ(texts.inHCOctetsMb24H, "unknown");
  EXPECT_EQ(texts.inHCOctetsMb24HF, "unknown");
  EXPECT_EQ(texts.inErrorsTot24H, "1");
  EXPECT_EQ(texts.userLastSeen, "-");
  ASSERT_EQ(house.Events().size(), 2u);
  for (const std::string& event : house.Events()) {
    EXPECT_EQ(event.rfind("1\tmodQuillonWeb_ConvHCBytes\t", 0), 0u) << event;
  }
}

}  // namespace
}  // namespace quillon
