// The sums of a day over the access or the trunk ports: which ports count, how each addition
// rounds, and what keeps a class from getting its row. Locks of other programs are in
// history_locks_test.
#include "import/import_fixture.h"
#include "import/port_metrics.h"
#include "import/switch_history.h"

namespace quillon {
namespace {

class SwitchSumsTest : public ImportTest {
 protected:
  static std::string Literal(bool isTrunk) { return isTrunk ? "TRUE" : "FALSE"; }

  // A port with that value, an SQL literal, in all six metrics.
  void AddUniformPort(const std::string& value, Columns differing = {}) const {
    for (const std::string& metric : kMetrics) differing.emplace(metric, value);
    AddPort(differing);
  }

  void EmptyBothSides() const {
    ReportsSql("DELETE FROM VLAN");
    HistorySql("DELETE FROM VLAN_HistSum");
  }

  void Sum(bool isTrunk = false) { SwitchStatsSum(house.imports, isTrunk); }

  // Fields of all rows of the sums, oldest first.
  Lines Sums(const std::string& fields) const {
    return History("SELECT " + fields + " FROM VLAN_HistSum ORDER BY rowid");
  }
  Lines Counts() const { return Sums("Ports, PortsInTraffic"); }

  // The sums of these values in all six metrics, which have to be alike; "" where there is no row.
  std::string SumOf(const Lines& values) {
    EmptyBothSides();
    for (const std::string& value : values) AddUniformPort(value);
    Sum();
    const Lines rows = Sums(
        "InErrorsTot24H, OutErrorsTot24H, InBroadCastPpm24H,"
        " InMultiCastPpm24H, InHCOctetsMb24H, OutHCOctetsMb24H");
    if (rows.empty()) return "";
    const std::string sum = rows[0].substr(0, rows[0].find('|'));
    EXPECT_EQ(rows, Lines{sum + "|" + sum + "|" + sum + "|" + sum + "|" + sum + "|" + sum});
    return sum;
  }

  static std::string Joined(const Lines& values) {
    std::string text;
    for (const std::string& value : values) text += value + " ";
    return text;
  }
};

TEST_F(SwitchSumsTest, EachMetricIsSummedUnderItsName) {
  AddPort({{"InErrorsTot24H", "1"},
           {"OutErrorsTot24H", "2"},
           {"InBroadCastPpm24H", "3"},
           {"InMultiCastPpm24H", "4"},
           {"InHCOctetsMb24H", "5"},
           {"OutHCOctetsMb24H", "6"}});
  AddPort({{"InErrorsTot24H", "100"},
           {"OutErrorsTot24H", "200"},
           {"InBroadCastPpm24H", "300"},
           {"InMultiCastPpm24H", "400"},
           {"InHCOctetsMb24H", "0"},
           {"OutHCOctetsMb24H", "600"}});
  Sum();
  EXPECT_EQ(Sums("TrafficDate, IsTrunk, InErrorsTot24H, OutErrorsTot24H, InBroadCastPpm24H,"
                 " InMultiCastPpm24H, InHCOctetsMb24H, OutHCOctetsMb24H, Ports, PortsInTraffic"),
            Lines{"2024-05-01 12:00:00|0|101|202|303|404|5|606|2|1"});
  EXPECT_EQ(Sums("typeof(InErrorsTot24H), typeof(OutHCOctetsMb24H), typeof(Ports)"),
            Lines{"integer|integer|integer"});
  ExpectNoEvent();
}

TEST_F(SwitchSumsTest, ClassesAreSummedApart) {
  AddUniformPort("1");
  AddUniformPort("10", {{"IsTrunk", "TRUE"}});
  AddUniformPort("20", {{"IsTrunk", "TRUE"}});
  AddUniformPort("1000", {{"IsTrunk", "NULL"}});
  Sum(false);
  Sum(true);
  EXPECT_EQ(Sums("IsTrunk, InErrorsTot24H, OutHCOctetsMb24H, Ports, PortsInTraffic"),
            (Lines{"0|1|1|1|1", "1|30|30|2|2"}));
}

TEST_F(SwitchSumsTest, ClassWithoutPortsGetsARowOfZeros) {
  AddPort({{"IsTrunk", "TRUE"}});
  Sum(false);
  ReportsSql("DELETE FROM VLAN");
  Sum(true);
  EXPECT_EQ(Sums("*"), (Lines{"2024-05-01 12:00:00|0|0|0|0|0|0|0|0|0",
                              "2024-05-01 12:00:00|1|0|0|0|0|0|0|0|0"}));
  ExpectNoEvent();
}

TEST_F(SwitchSumsTest, PortsOfOtherDaysCountAsPortsAndNothingElse) {
  for (const char* lastUpdate :
       {"'2024-05-01 23:59:59'", "'2024-05-03 00:00:00'", "'2023-05-02 03:10:00'", "NULL"}) {
    AddUniformPort("7", {{"LastUpdate", lastUpdate}});
  }
  Sum();
  EXPECT_EQ(Sums("*"), Lines{"2024-05-01 12:00:00|0|0|0|0|0|0|0|4|0"});
  ExpectNoEvent();
}

TEST_F(SwitchSumsTest, WholeDayOfTheLastUpdateIsToday) {
  AddUniformPort("1", {{"LastUpdate", "'2024-05-02 00:00:00'"}});
  AddUniformPort("10", {{"LastUpdate", "'2024-05-02 23:59:59'"}});
  AddUniformPort("100", {{"LastUpdate", "'2024-05-02'"}});
  AddUniformPort("1000", {{"LastUpdate", "'2024-05-01 23:59:59'"}});
  Sum();
  EXPECT_EQ(Sums("InHCOctetsMb24H, Ports, PortsInTraffic"), Lines{"111|4|3"});
}

TEST_F(SwitchSumsTest, DayOfTheTrafficDoesNotCount) {
  AddUniformPort("1", {{"InOctetsDate", "'2024-05-01 03:10:00'"}});
  AddUniformPort("10", {{"InOctetsDate", "NULL"}});
  AddUniformPort("100", {{"LastUpdate", "'2024-05-01 03:10:00'"}});
  Sum();
  EXPECT_EQ(Sums("InHCOctetsMb24H, Ports, PortsInTraffic"), Lines{"11|3|2"});
}

TEST_F(SwitchSumsTest, PortIsInTrafficWhenMoreThanNothingCameIn) {
  struct Case {
    std::string incoming;
    std::string counts;
  };
  const Case cases[] = {{"-1", "1|0"},    {"-0.4", "1|0"}, {"0", "1|0"},
                        {"0.001", "1|1"}, {"1", "1|1"},    {"2147483647", "1|1"}};
  for (const Case& row : cases) {
    EmptyBothSides();
    AddPort({{"InHCOctetsMb24H", row.incoming}, {"OutHCOctetsMb24H", "9"}});
    Sum();
    EXPECT_EQ(Counts(), Lines{row.counts}) << row.incoming;
  }
}

TEST_F(SwitchSumsTest, OutgoingTrafficAloneIsNoneAtAll) {
  AddPort({{"InHCOctetsMb24H", "0"}, {"OutHCOctetsMb24H", "500"}});
  Sum();
  EXPECT_EQ(Counts(), Lines{"1|0"});
}

TEST_F(SwitchSumsTest, UnknownFiguresLowerTheSumByOne) {
  EXPECT_EQ(SumOf({"7", "-1"}), "6");
  EXPECT_EQ(SumOf({"-1", "-1", "-1"}), "-3");
}

// Each addition gives a whole number, so the order counts and fractions do not add up.
TEST_F(SwitchSumsTest, EachAdditionIsRoundedWithTiesToEven) {
  struct Case {
    Lines values;
    std::string sum;
  };
  const Case cases[] = {
      {{"0.5"}, "0"},
      {{"1.5"}, "2"},
      {{"2.5"}, "2"},
      {{"3.5"}, "4"},
      {{"-0.5"}, "0"},
      {{"-1.5"}, "-2"},
      {{"-2.5"}, "-2"},
      {{"0.5", "0.5", "0.5", "0.5"}, "0"},
      {{"1.5", "1.5"}, "4"},  // 2, 3.5
      {{"2.5", "2.5"}, "4"},  // 2, 4.5
      {{"1", "0.5"}, "2"},
      {{"0.5", "1"}, "1"},
      {{"1", "1.5"}, "2"},
      {{"1", "-0.5"}, "0"},
      {{"3", "-0.5"}, "2"},
      {{"0.4", "0.4", "0.4", "0.4", "0.4"}, "0"},
      {{"0.6", "0.6", "0.6"}, "3"},
      {{"2.49", "2.51"}, "5"},  // 2, 4.51
      {{"-0.6", "0.6"}, "0"},
      {{"1000000", "0.5"}, "1000000"},
      {{"1000001", "0.5"}, "1000002"},
      {{"2147483645", "0.5"}, "2147483646"},
  };
  for (const Case& row : cases) EXPECT_EQ(SumOf(row.values), row.sum) << Joined(row.values);
  ExpectNoEvent();
}

TEST_F(SwitchSumsTest, SumReachesTheEndsOfThirtyTwoBits) {
  const std::string largest = "2147483647";
  const std::string smallest = "-2147483648";
  struct Case {
    Lines values;
    std::string sum;
  };
  const Case cases[] = {
      {{largest}, largest},           {{"2147483646", "1"}, largest},
      {{"2147483647.4"}, largest},    {{"2147483646.5"}, "2147483646"},
      {{largest, "0.4"}, largest},    {{largest, "-1", "1"}, largest},
      {{smallest}, smallest},         {{"-2147483647", "-1"}, smallest},
      {{smallest, "-0.5"}, smallest}, {{smallest, largest}, "-1"},
  };
  for (const Case& row : cases) EXPECT_EQ(SumOf(row.values), row.sum) << Joined(row.values);
  ExpectNoEvent();
}

TEST_F(SwitchSumsTest, OverflowOfAnySumKeepsTheRowOfItsClassOut) {
  for (const std::string& metric : kMetrics) {
    for (const auto& [first, second] : {std::pair{"2147483647", "1"}, {"-2147483648", "-1"}}) {
      for (const bool isTrunk : {false, true}) {
        SCOPED_TRACE(metric + " " + first + " " + second + " " + Literal(isTrunk));
        EmptyBothSides();
        house.ForgetEvents();
        AddPort({{metric, first}, {"IsTrunk", Literal(isTrunk)}});
        AddPort({{metric, second}, {"IsTrunk", Literal(isTrunk)}});
        AddPort({{"IsTrunk", Literal(!isTrunk)}});
        Sum(false);
        Sum(true);
        ExpectFailure("modImport_SwitchStatsSum", "out of range");
        EXPECT_EQ(Sums("IsTrunk, OutHCOctetsMb24H, Ports"), Lines{isTrunk ? "0|4|1" : "1|4|1"});
      }
    }
  }
}

TEST_F(SwitchSumsTest, OverflowCountsAtEachAddition) {
  const Lines overflows[] = {{"2147483647", "1", "-5"},
                             {"-2147483648", "-1", "5"},
                             {"2147483647.5"},
                             {"2147483647", "0.5"},
                             {"2147483648"},
                             {"-2147483649"},
                             {"1e300"},
                             {"-1e300"}};
  std::size_t events = 0;
  for (const Lines& values : overflows) {
    EXPECT_EQ(SumOf(values), "") << Joined(values);
    EXPECT_EQ(house.Events().size(), ++events) << Joined(values);
  }
}

TEST_F(SwitchSumsTest, FiguresOfOtherDaysDoNotOverflow) {
  AddUniformPort("2147483647");
  AddUniformPort("2147483647", {{"LastUpdate", "'2024-05-01 03:10:00'"}});
  Sum();
  EXPECT_EQ(Sums("InHCOctetsMb24H, Ports, PortsInTraffic"), Lines{"2147483647|2|1"});
  ExpectNoEvent();
}

TEST_F(SwitchSumsTest, FigureThatIsNoNumberKeepsTheRowOfItsClassOut) {
  struct Case {
    std::string stored;
    std::string held;
  };
  const Case cases[] = {{"NULL", "null"}, {"'n/a'", "\"n/a\""}, {"''", "\"\""}};
  for (const std::string& metric : kMetrics) {
    for (const Case& row : cases) {
      SCOPED_TRACE(metric + " " + row.stored);
      EmptyBothSides();
      house.ForgetEvents();
      AddPort();
      AddPort({{metric, row.stored}});
      AddPort({{"IsTrunk", "TRUE"}});
      Sum(false);
      Sum(true);
      EXPECT_EQ(house.Events(), Lines{"1\tmodImport_SwitchStatsSum\tfield " + metric + " holds " +
                                      row.held + " and not a number"});
      EXPECT_EQ(Sums("IsTrunk, OutHCOctetsMb24H, Ports"), Lines{"1|4|1"});
    }
  }
}

TEST_F(SwitchSumsTest, FiguresOfOtherDaysNeedNotBeNumbers) {
  AddUniformPort("NULL", {{"LastUpdate", "'2024-05-01 03:10:00'"}});
  AddUniformPort("'n/a'", {{"LastUpdate", "NULL"}});
  Sum();
  EXPECT_EQ(Counts(), Lines{"2|0"});
  ExpectNoEvent();
}

TEST_F(SwitchSumsTest, DateIsThePresentMomentLess24Hours) {
  struct Case {
    std::string now;
    std::string date;
  };
  const Case cases[] = {
      {"2024-05-02 12:00:00", "2024-05-01 12:00:00"},
      {"2024-05-02 00:00:00", "2024-05-01 00:00:00"},
      {"2024-05-02 22:59:59", "2024-05-01 22:59:59"},
      {"2024-05-02 23:00:00", "2024-05-01 23:00:00"},
      {"2024-05-02 23:59:59", "2024-05-01 23:59:59"},
      {"2024-03-01 03:30:00", "2024-02-29 03:30:00"},
      {"2024-01-01 03:30:00", "2023-12-31 03:30:00"},
      {"2024-03-31 03:30:00", "2024-03-30 03:30:00"},
      {"2024-10-27 02:30:00", "2024-10-26 02:30:00"},
  };
  for (const Case& row : cases) {
    HistorySql("DELETE FROM VLAN_HistSum");
    house.clock.Set(row.now);
    Sum(false);
    Sum(true);
    EXPECT_EQ(Sums("TrafficDate"), (Lines{row.date, row.date})) << row.now;
  }
}

TEST_F(SwitchSumsTest, PresentMomentIsTheOneBehindTheLastPort) {
  AddPorts(101);
  house.loop.Post([&] { house.clock.Advance(std::chrono::minutes(90)); });
  Sum();
  EXPECT_EQ(Sums("TrafficDate, Ports, PortsInTraffic"), Lines{"2024-05-01 13:30:00|101|101"});
}

TEST_F(SwitchSumsTest, OverriddenReportDateIsThePresentMoment) {
  AddUniformPort("1");
  AddUniformPort("10", {{"LastUpdate", "'2014-11-07 23:59:59'"}});
  AddUniformPort("100", {{"LastUpdate", "'2014-11-06 23:59:59'"}});
  OverrideReportDate("2014-11-07");
  Sum();
  EXPECT_EQ(Sums("TrafficDate, InHCOctetsMb24H, Ports, PortsInTraffic"),
            Lines{"2014-11-06 00:00:00|10|3|1"});
}

TEST_F(SwitchSumsTest, SecondImportOfADayAddsASecondRow) {
  AddUniformPort("1");
  Sum();
  AddUniformPort("10");
  Sum();
  EXPECT_EQ(Sums("TrafficDate, InHCOctetsMb24H, Ports"),
            (Lines{"2024-05-01 12:00:00|1|1", "2024-05-01 12:00:00|11|2"}));
}

TEST_F(SwitchSumsTest, PausesAfterMoreThanAHundredPortsOfTheClass) {
  struct Case {
    int ports;
    std::int64_t waited;
  };
  const Case cases[] = {{0, 0}, {1, 0}, {100, 0}, {101, 10}, {201, 10}, {202, 20}, {303, 30}};
  for (const Case& row : cases) {
    ReportsSql("DELETE FROM VLAN");
    AddPorts(row.ports);
    for (const char* lastUpdate : {"'2024-05-02 03:10:00'", "'2024-05-01 03:10:00'"}) {
      ReportsSql(std::string("UPDATE VLAN SET LastUpdate = ") + lastUpdate);
      const std::int64_t before = SleptMs();
      Sum(false);
      EXPECT_EQ(SleptMs() - before, row.waited) << row.ports << lastUpdate;
      Sum(true);  // no port is of this class
      EXPECT_EQ(SleptMs() - before, row.waited) << row.ports << lastUpdate;
    }
  }
}

TEST_F(SwitchSumsTest, PortsOfTheOtherClassDoNotCountForAPause) {
  AddPorts(100);
  AddPort({{"IsTrunk", "TRUE"}});
  Sum(false);
  Sum(true);
  EXPECT_EQ(SleptMs(), 0);
}

TEST_F(SwitchSumsTest, EventsInThePausesMayWriteBothDatabases) {
  AddPorts(150);
  Lines rowsSoFar{"not looked"};
  house.loop.Post([&] {
    rowsSoFar = Counts();
    HistorySql("UPDATE General_Info SET ReportStart = 'written'");
    AddPort({{"IsTrunk", "TRUE"}});
  });
  Sum();
  EXPECT_EQ(rowsSoFar, Lines{});
  EXPECT_EQ(History("SELECT ReportStart FROM General_Info"), Lines{"written"});
  EXPECT_EQ(Reports("SELECT Count(*) FROM VLAN"), Lines{"151"});
  EXPECT_EQ(Sums("OutHCOctetsMb24H, Ports"), Lines{"600|150"});
  ExpectNoEvent();
}

TEST_F(SwitchSumsTest, StopInAPauseAddsNoRow) {
  AddPorts(150);
  house.loop.Post([&] { house.loop.Quit(); });
  EXPECT_THROW(Sum(), LoopEnded);
  EXPECT_EQ(Counts(), Lines{});
  ExpectNoEvent();
}

TEST_F(SwitchSumsTest, MissingPiecesFail) {
  struct Case {
    std::string reports;
    std::string history;
    std::string text;
  };
  const Case cases[] = {
      {"", "ALTER TABLE VLAN_HistSum RENAME COLUMN PortsInTraffic TO Renamed", "PortsInTraffic"},
      {"", "DROP TABLE VLAN_HistSum", "History.mdb: no such table: VLAN_HistSum"},
      {"DROP TABLE VLAN", "", "Reports.mdb: no such table: VLAN"},
  };
  AddPort();
  for (const Case& row : cases) {
    SCOPED_TRACE(row.text);
    house.ForgetEvents();
    ReportsSql(row.reports);
    HistorySql(row.history);
    Sum();
    ExpectFailure("modImport_SwitchStatsSum", row.text);
  }
}

TEST_F(SwitchSumsTest, MissingStatisticsAddNoRow) {
  house.installation.Remove("Reports.mdb");
  Sum();
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodImport_SwitchStatsSum\tReports.mdb: the database file is missing"});
  EXPECT_EQ(Counts(), Lines{});
}

}  // namespace
}  // namespace quillon
