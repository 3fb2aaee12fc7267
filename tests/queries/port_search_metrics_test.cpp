// What a found port shows of its day: metric texts where its statistics are of today, noughts where
// they are not, and the user that was seen on it.
#include "queries/search_fixture.h"

namespace quillon {
namespace {

class PortSearchMetricsTest : public SearchTest {
 protected:
  // The row of a single port that differs from an ordinary one in these columns.
  const SwitchTableRow& RowOf(const Columns& differing) {
    Sql("DELETE FROM VLAN;" + InsertPort(differing));
    FillRecord();
    SearchPorts();
    return Record().rows[1];
  }
};

// Stored days of an ordinary port, by whether they are today.
const std::vector<std::string> kToday = {"'2024-05-02 00:00:00'", "'2024-05-02 03:10:00'",
                                         "'2024-05-02 23:59:59'", "'2024-05-02'"};
const std::vector<std::string> kNotToday = {
    "'2024-05-01 23:59:59'",  // the day before
    "'2024-05-03 00:00:00'",  // the day behind
    "'2023-05-02 03:10:00'", "NULL",     "''", "'soon'",
    "'2024-05-02 25:00:00'",  // begins with today, but is no date
    "'2024-05-02x'",         "20240502",
};

TEST_F(PortSearchMetricsTest, PortOfTodayHasItsMetrics) {
  for (const std::string& day : kToday) {
    EXPECT_EQ(Metrics(RowOf({{"InOctetsDate", day}})), kMetricsOfToday) << day;
  }
  ExpectNoEvent();
}

TEST_F(PortSearchMetricsTest, PortOfAnotherDayOrOfNoneHasNoughtsAndItsNames) {
  for (const std::string& day : kNotToday) {
    const SwitchTableRow& row = RowOf({{"InOctetsDate", day}});
    EXPECT_EQ(Metrics(row), kNoMetrics) << day;
    EXPECT_EQ((Lines{row.device, row.vlanID, row.ifDescr, row.ifOper}),
              (Lines{"Core", "12", "Gi0/1", "down"}))
        << day;
    EXPECT_EQ(row.recNo, 7) << day;
    EXPECT_EQ(Record().TableCriteria, "1 (1)") << day;
  }
  ExpectNoEvent();
}

TEST_F(PortSearchMetricsTest, DayOfTheLastUpdateDoesNotCount) {
  EXPECT_EQ(Metrics(RowOf({{"LastUpdate", "'2020-01-01 03:10:00'"}})), kMetricsOfToday);
  EXPECT_EQ(Metrics(RowOf({{"LastUpdate", "NULL"}})), kMetricsOfToday);
  EXPECT_EQ(Metrics(RowOf({{"InOctetsDate", "'2024-05-01 03:10:00'"}})), kNoMetrics);
}

TEST_F(PortSearchMetricsTest, LargeFiguresOfAnotherDayAreNotShown) {
  EXPECT_EQ(Metrics(RowOf({{"InOctetsDate", "NULL"},
                           {"InHCOctetsMb24H", "108000001"},
                           {"OutHCOctetsMb24H", "-1"},
                           {"InBroadCastPpm24H", "1234567"},
                           {"InMultiCastPpm24H", "-1"},
                           {"InErrorsTot24H", "2000000"},
                           {"OutErrorsTot24H", "'many'"}})),
            kNoMetrics);
}

TEST_F(PortSearchMetricsTest, MissingFiguresOfAnotherDayAreNoFailure) {
  EXPECT_EQ(Metrics(RowOf({{"InOctetsDate", "'2024-05-01 03:10:00'"},
                           {"InHCOctetsMb24H", "NULL"},
                           {"OutHCOctetsMb24H", "NULL"},
                           {"InBroadCastPpm24H", "NULL"},
                           {"InMultiCastPpm24H", "NULL"},
                           {"InErrorsTot24H", "NULL"},
                           {"OutErrorsTot24H", "NULL"}})),
            kNoMetrics);
  ExpectNoEvent();
}

TEST_F(PortSearchMetricsTest, EachPortGoesByItsOwnDay) {
  AddPort({{"RecNo", "1"}, {"InOctetsDate", "'2024-05-01 03:10:00'"}});
  AddPort({{"RecNo", "2"}});
  AddPort({{"RecNo", "3"}, {"InOctetsDate", "NULL"}});
  SearchPorts();
  EXPECT_EQ(Metrics(Record().rows[1]), kNoMetrics);
  EXPECT_EQ(Metrics(Record().rows[2]), kMetricsOfToday);
  EXPECT_EQ(Metrics(Record().rows[3]), kNoMetrics);
}

TEST_F(PortSearchMetricsTest, DayIsThatOfTheClock) {
  house.clock.Set("2024-05-02 23:59:59");
  EXPECT_EQ(Metrics(RowOf({})), kMetricsOfToday);
  house.clock.Set("2024-05-03 00:00:00");
  EXPECT_EQ(Metrics(RowOf({})), kNoMetrics);
}

TEST_F(PortSearchMetricsTest, OverriddenReportDateIsTheDay) {
  house.settings.RepDateOverride = true;
  house.settings.txtRepDate = "2014-11-07";
  EXPECT_EQ(Metrics(RowOf({{"InOctetsDate", "'2014-11-07 03:10:00'"}})), kMetricsOfToday);
  EXPECT_EQ(Metrics(RowOf({})), kNoMetrics);
  house.settings.RepDateOverride = false;
  EXPECT_EQ(Metrics(RowOf({})), kMetricsOfToday);
}

TEST_F(PortSearchMetricsTest, ReportDateWithoutTheOverrideIsNotLookedAt) {
  house.settings.txtRepDate = "2014-11-07";
  EXPECT_EQ(Metrics(RowOf({})), kMetricsOfToday);
}

// One port a case: its six figures, and the twelve texts that they give.
TEST_F(PortSearchMetricsTest, MetricsHaveTheirUnitsAndRates) {
  struct Case {
    std::vector<std::string> figures;  // volumes in and out, broadcasts, multicasts, errors in, out
    Lines texts;
  };
  const Case cases[] = {
      {{"0", "0", "0", "0", "0", "0"},
       {"0", "0", "0", "0", "0", "0 W39", "0", "0 W39", "0", "0 W38", "0", "0 W38"}},
      // The mark of a missing figure is known to volumes and multicasts alone.
      {{"-1", "-1", "-1", "-1", "-1", "-1"},
       {"-", "-", "-", "-", "-1", "-1 W39", "-", "-", "-1", "-1 W38", "-1", "-1 W38"}},
      // The largest figures without a rate.
      {{"10", "10", "60", "60", "1440", "1440"},
       {"10 M", "10 M", "10 M", "10 M", "60", "60 W39", "60", "60 W39", "1 440", "1 440 W38",
        "1 440", "1 440 W38"}},
      // The smallest with one: 11 * 8000 / 86400 is 1.02.
      {{"11", "11", "61", "61", "1441", "1441"},
       {"11 M", "11 M  (1 W44)", "11 M", "11 M  (1 W44)", "61", "61 W39  (1 W40)", "61",
        "61 W39  (1 W40)", "1 441", "1 441 W38  (1 W39)", "1 441", "1 441 W38  (1 W39)"}},
      // The outgoing volume has its smallest rate by the incoming one.
      {{"10", "5000", "1", "1", "1", "1"},
       {"10 M", "10 M", "5 G", "5 000 M", "1", "1 W39", "1", "1 W39", "1", "1 W38", "1", "1 W38"}},
      // 11 lets it be shown: 5000 * 8000 / 86400 is 462.96.
      {{"11", "5000", "1", "1", "1", "1"},
       {"11 M", "11 M  (1 W44)", "5 G", "5 000 M  (463 W44)", "1", "1 W39", "1", "1 W39", "1",
        "1 W38", "1", "1 W38"}},
      {{"11", "0", "1", "1", "1", "1"},
       {"11 M", "11 M  (1 W44)", "0", "0  (0 W44)", "1", "1 W39", "1", "1 W39", "1", "1 W38", "1",
        "1 W38"}},
      {{"0", "10801", "1", "1", "1", "1"},
       {"0", "0", "11 G", "11 G  (1 W41)", "1", "1 W39", "1", "1 W39", "1", "1 W38", "1", "1 W38"}},
      {{"108000001", "108000000", "1234567", "74074020", "2000000", "1777776480"},
       {"108 T", "108 T  (10 W45)", "108 T", "108 T  (10 000 W41)", "1 234 567",
        "1 234 567 W39  (20 576 W40)", "74 074 020", "74 074 020 W39  (1234 567 W40)", "2 000 000",
        "2 000 000 W38  (1 389 W39)", "1777 776 480", "1777 776 480 W38  (1234 567 W39)"}},
      {{"''", "''", "''", "''", "''", "''"},
       {"0", "0", "0", "0", "", " W39", "", " W39", "", " W38", "", " W38"}},
  };
  for (const Case& row : cases) {
    EXPECT_EQ(Metrics(RowOf({{"InHCOctetsMb24H", row.figures[0]},
                             {"OutHCOctetsMb24H", row.figures[1]},
                             {"InBroadCastPpm24H", row.figures[2]},
                             {"InMultiCastPpm24H", row.figures[3]},
                             {"InErrorsTot24H", row.figures[4]},
                             {"OutErrorsTot24H", row.figures[5]}})),
              row.texts)
        << testing::PrintToString(row.figures);
  }
  ExpectNoEvent();
}

TEST_F(PortSearchMetricsTest, UnitsOfNoughtsAreWordsToo) {
  house.words.LangWord[39] = "pkt/min";
  house.words.LangWord[38] = "errors \"24 h\"";
  const SwitchTableRow& row = RowOf({{"InOctetsDate", "NULL"}});
  EXPECT_EQ(row.inBroadCastPpm24HF, "  0 pkt/min");
  EXPECT_EQ(row.inMultiCastPpm24HF, "  0 pkt/min");
  EXPECT_EQ(row.inErrorsTot24HF, "  0 errors \"24 h\"");
  EXPECT_EQ(row.outErrorsTot24HF, "  0 errors \"24 h\"");
}

TEST_F(PortSearchMetricsTest, LongTextInAVolumeStaysAndIsReportedByTheConversion) {
  const SwitchTableRow& row = RowOf({{"InHCOctetsMb24H", "'unknown'"}});
  EXPECT_EQ(row.inHCOctetsMb24H, "unknown");
  EXPECT_EQ(row.inHCOctetsMb24HF, "unknown");
  EXPECT_EQ(row.outErrorsTot24HF, "0 W38");
  EXPECT_EQ(Record().TableCriteria, "1 (1)");
  ASSERT_EQ(house.Events().size(), 2u);
  for (const std::string& event : house.Events()) {
    EXPECT_EQ(event.rfind("1\tmodQuillonWeb_ConvHCBytes\t", 0), 0u) << event;
  }
}

TEST_F(PortSearchMetricsTest, FirstAddressOfThePortIsItsUserWhateverItsKind) {
  for (const std::string isTrunk : {"FALSE", "TRUE", "NULL"}) {
    Sql("DELETE FROM MAC");
    AddAddress(7, 5, "'of port 5', '10.0.0.5', '2024-05-01 10:00:00'");
    AddAddress(8, 1, "'of device 8', '10.0.0.8', '2024-05-01 10:00:00'");
    AddAddress(7, 1, "'02 00 00 00 00 99', '10.0.0.99', '2024-04-01 10:00:00'");
    AddAddress(7, 1, "'02 00 00 00 00 11', '10.0.0.11', '2024-05-02 10:00:00'");
    EXPECT_EQ(User(RowOf({{"IsTrunk", isTrunk}})),
              (Lines{"02 00 00 00 00 99", "10.0.0.99", "2024-04-01"}))
        << isTrunk;
  }
  ExpectNoEvent();
}

TEST_F(PortSearchMetricsTest, PortWithoutAnAddressShowsADashAsLastSeenWhateverItsKind) {
  for (const std::string isTrunk : {"FALSE", "TRUE"}) {
    EXPECT_EQ(User(RowOf({{"IsTrunk", isTrunk}})), (Lines{"", "", "-"})) << isTrunk;
  }
}

TEST_F(PortSearchMetricsTest, UserIsLookedUpForPortsOfAnotherDayToo) {
  AddAddress(7, 1, "'mac', 'ip', '2024-04-01 10:00:00'");
  EXPECT_EQ(User(RowOf({{"InOctetsDate", "NULL"}})), (Lines{"mac", "ip", "2024-04-01"}));
}

TEST_F(PortSearchMetricsTest, EachRowHasTheUserOfItsOwnPort) {
  AddPort({{"RecNo", "1"}, {"IfIndex", "1"}});
  AddPort({{"RecNo", "1"}, {"IfIndex", "2"}});
  AddPort({{"RecNo", "2"}, {"IfIndex", "1"}});
  AddAddress(2, 1, "'mac 2.1', 'ip 2.1', '2024-05-01 10:00:00'");
  AddAddress(1, 2, "'mac 1.2', 'ip 1.2', '2024-05-02 10:00:00'");
  SearchPorts();
  EXPECT_EQ(User(Record().rows[1]), (Lines{"", "", "-"}));
  EXPECT_EQ(User(Record().rows[2]), (Lines{"mac 1.2", "ip 1.2", "2024-05-02"}));
  EXPECT_EQ(User(Record().rows[3]), (Lines{"mac 2.1", "ip 2.1", "2024-05-01"}));
}

TEST_F(PortSearchMetricsTest, LastSeenFollowsTheDateFormat) {
  struct Case {
    std::string format;
    std::string text;
  };
  const Case cases[] = {
      {"YYYY-MM-DD", "2024-04-01"}, {"MM/DD/YYYY", "04/01/2024"}, {"DD/MM/YYYY", "01/04/2024"}};
  AddAddress(7, 1, "'mac', 'ip', '2024-04-01 10:00:00'");
  for (const Case& row : cases) {
    house.settings.DatumFormat = row.format;
    const SwitchTableRow& port = RowOf({});
    EXPECT_EQ(port.userLastSeen, row.text) << row.format;
    EXPECT_EQ(Metrics(port), kMetricsOfToday) << row.format;  // the day is compared in its own form
  }
}

}  // namespace
}  // namespace quillon
