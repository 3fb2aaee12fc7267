// What a day table of the switches takes over from VLAN, and how long the sums are kept. The
// rotation itself, the pauses and the failures that disks have alike are in rotation_test.
#include "import/switch_history.h"

#include "import/import_fixture.h"
#include "import/port_metrics.h"
#include "support/refusal.h"

namespace quillon {
namespace {

class SwitchCopyTest : public ImportTest {
 protected:
  void Copy() { SwitchStatsCopyToHist_(house.imports, "VLAN_Day01"); }

  Lines Copied(const std::string& fields) const {
    return History("SELECT " + fields + " FROM VLAN_Day01 ORDER BY rowid");
  }
};

TEST_F(SwitchCopyTest, EachFieldGoesOverUnderItsName) {
  AddPort({{"RecNo", "81"},
           {"IfIndex", "82"},
           {"InErrorsTot24H", "83"},
           {"OutErrorsTot24H", "84"},
           {"InBroadCastPpm24H", "85"},
           {"InMultiCastPpm24H", "86"},
           {"InHCOctetsMb24H", "87"},
           {"OutHCOctetsMb24H", "88"},
           {"IsTrunk", "TRUE"}});
  Copy();
  EXPECT_EQ(Copied("RecNo, IfIndex, InErrorsTot24H, OutErrorsTot24H, InBroadCastPpm24H,"
                   " InMultiCastPpm24H, InHCOctetsMb24H, OutHCOctetsMb24H, IsTrunk"),
            Lines{"81|82|83|84|85|86|87|88|1"});
  ExpectNoEvent();
}

TEST_F(SwitchCopyTest, RowsComeInTheirStoredOrder) {
  for (const char* recNo : {"5", "2", "9", "1"}) {
    AddPort({{"RecNo", recNo}, {"IfIndex", "2"}});
    AddPort({{"RecNo", recNo}, {"IfIndex", "1"}, {"IsTrunk", "TRUE"}});
  }
  Copy();
  EXPECT_EQ(Copied("RecNo, IfIndex"),
            (Lines{"5|2", "5|1", "2|2", "2|1", "9|2", "9|1", "1|2", "1|1"}));
}

TEST_F(SwitchCopyTest, FiguresGoOverUnchanged) {
  struct Case {
    std::string stored;
    std::string copied;  // as the engine writes it down as a literal
  };
  const Case cases[] = {
      {"-1", "-1"},
      {"0", "0"},
      {"1234567", "1234567"},
      {"-20", "-20"},
      {"2.5", "2.5"},
      {"0.1", "0.1"},
      {"-0.75", "-0.75"},
      {"1.23456789012345", "1.23456789012345"},
      {"2147483648", "2147483648"},
      {"9007199254740993", "9007199254740993"},
      {"'n/a'", "'n/a'"},
      {"''", "''"},
      {"' 5 G'", "' 5 G'"},
      {"'größer'", "'größer'"},
      {"NULL", "NULL"},
  };
  for (const std::string& metric : kMetrics) {
    Lines expected;
    HistorySql("DELETE FROM VLAN_Day01");
    ReportsSql("DELETE FROM VLAN");
    for (const Case& row : cases) {
      AddPort({{metric, row.stored}});
      expected.push_back(row.copied);
    }
    Copy();
    EXPECT_EQ(Copied("quote(" + metric + ")"), expected) << metric;
  }
  ExpectNoEvent();
}

TEST_F(SwitchCopyTest, RealKeepsEveryBit) {
  AddPort({{"InHCOctetsMb24H", "1.0 / 3"}});
  Copy();
  EXPECT_EQ(Copied("InHCOctetsMb24H = 1.0 / 3"), Lines{"1"});
}

TEST_F(SwitchCopyTest, NullKeysAndClassStayNull) {
  AddPort({{"RecNo", "NULL"}});
  AddPort({{"IfIndex", "NULL"}});
  AddPort({{"IsTrunk", "NULL"}});
  Copy();
  EXPECT_EQ(Copied("RecNo, IfIndex, IsTrunk"), (Lines{"NULL|1|0", "7|NULL|0", "7|1|NULL"}));
  ExpectNoEvent();
}

TEST_F(SwitchCopyTest, AccessAndTrunkPortsShareTheTable) {
  AddPort({{"RecNo", "1"}, {"IsTrunk", "FALSE"}});
  AddPort({{"RecNo", "2"}, {"IsTrunk", "TRUE"}});
  AddPort({{"RecNo", "3"}, {"IsTrunk", "FALSE"}});
  Copy();
  EXPECT_EQ(Copied("RecNo, IsTrunk"), (Lines{"1|0", "2|1", "3|0"}));
}

TEST_F(SwitchCopyTest, OnlyPortsWhoseTrafficIsOfTodayGoOver) {
  AddPort({{"RecNo", "1"}, {"InOctetsDate", "'2024-05-02 00:00:00'"}});
  AddPort({{"RecNo", "2"}, {"InOctetsDate", "'2024-05-02 23:59:59'"}});
  AddPort({{"RecNo", "3"}, {"InOctetsDate", "'2024-05-02'"}});
  AddPort({{"RecNo", "4"}, {"InOctetsDate", "'2024-05-01 23:59:59'"}});
  AddPort({{"RecNo", "5"}, {"InOctetsDate", "'2024-05-03 00:00:00'"}});
  AddPort({{"RecNo", "6"}, {"InOctetsDate", "'2023-05-02 03:10:00'"}});
  AddPort({{"RecNo", "7"}, {"InOctetsDate", "'2024-02-05 03:10:00'"}});
  AddPort({{"RecNo", "8"}, {"InOctetsDate", "NULL"}});
  Copy();
  EXPECT_EQ(Copied("RecNo"), (Lines{"1", "2", "3"}));
  ExpectNoEvent();
}

TEST_F(SwitchCopyTest, MomentOfTheLastUpdateDoesNotCount) {
  AddPort({{"RecNo", "1"}, {"LastUpdate", "'2024-05-01 03:10:00'"}});
  AddPort({{"RecNo", "2"}, {"LastUpdate", "NULL"}});
  AddPort({{"RecNo", "3"}, {"InOctetsDate", "'2024-05-01 03:10:00'"}});
  Copy();
  EXPECT_EQ(Copied("RecNo"), (Lines{"1", "2"}));
}

TEST_F(SwitchCopyTest, OverriddenReportDateIsTheDay) {
  AddPort({{"RecNo", "1"}});
  AddPort({{"RecNo", "2"}, {"InOctetsDate", "'2014-11-07 23:59:59'"}});
  AddPort({{"RecNo", "3"}, {"InOctetsDate", "'2014-11-06 23:59:59'"}});
  OverrideReportDate("2014-11-07");
  Copy();
  EXPECT_EQ(Copied("RecNo"), Lines{"2"});
}

TEST_F(SwitchCopyTest, OnlyTheTableGivenIsFilledAndItsRowsStay) {
  AddPort();
  HistorySql("INSERT INTO VLAN_Day33 (RecNo) VALUES (99)");
  SwitchStatsCopyToHist_(house.imports, "VLAN_Day33");
  EXPECT_EQ(History("SELECT RecNo FROM VLAN_Day33 ORDER BY rowid"), (Lines{"99", "7"}));
  EXPECT_EQ(Copied("RecNo"), Lines{});
  EXPECT_EQ(History("SELECT Count(*) FROM VLAN_HistCtrl WHERE TrafficDate > '2000-01-01 00:00:00'"),
            Lines{"0"});
}

TEST_F(SwitchCopyTest, StatisticsStayAsTheyAre) {
  AddPorts(3);
  const Lines before = Reports("SELECT * FROM VLAN");
  Copy();
  EXPECT_EQ(Reports("SELECT * FROM VLAN"), before);
  EXPECT_EQ(before.size(), 3u);
}

// Ten thousand rows are a large network; the loop's own select must not run into a time limit,
// and each of its pauses is only 10 ms long.
TEST_F(SwitchCopyTest, LargeNetworkGoesOverWhole) {
  ReportsSql("BEGIN;" + InsertPort() + NumbersUpTo(9999) +
             "INSERT INTO VLAN SELECT VLAN.* FROM VLAN, Number;"
             "UPDATE VLAN SET IfIndex = rowid; COMMIT;");
  Copy();
  EXPECT_EQ(Copied("Count(*), Count(DISTINCT IfIndex), Sum(InHCOctetsMb24H)"),
            Lines{"10000|10000|50000"});
  EXPECT_EQ(SleptMs(), 10'000 / 101 * 10);
  ExpectNoEvent();
}

TEST_F(SwitchCopyTest, FieldThatIsMissingFailsAndLeavesNoHalfRow) {
  for (const std::string& metric : kMetrics) {
    SCOPED_TRACE(metric);
    AddPort();
    ReportsSql("ALTER TABLE VLAN RENAME COLUMN " + metric + " TO Renamed");
    house.ForgetEvents();
    Copy();
    ExpectFailure("modImport_SwitchStatsCopyToHist_VLAN_Day01", metric);
    EXPECT_EQ(Copied("RecNo"), Lines{});
    ReportsSql("ALTER TABLE VLAN RENAME COLUMN Renamed TO " + metric);
  }
}

TEST_F(SwitchCopyTest, FieldThatTheDayTableLacksFailsAndLeavesNoHalfRow) {
  AddPort();
  HistorySql("ALTER TABLE VLAN_Day01 RENAME COLUMN IsTrunk TO Renamed");
  Copy();
  ExpectFailure("modImport_SwitchStatsCopyToHist_VLAN_Day01", "IsTrunk");
  EXPECT_EQ(Copied("RecNo"), Lines{});
}

class SwitchSumsClearingTest : public ImportTest {
 protected:
  // A row of each class; the date is an SQL literal.
  void AddSums(const std::string& date) const {
    HistorySql(InsertRow("VLAN_HistSum", {{"TrafficDate", date}, {"IsTrunk", "FALSE"}}) +
               InsertRow("VLAN_HistSum", {{"TrafficDate", date}, {"IsTrunk", "TRUE"}}));
  }
  Lines Left() const {
    return History("SELECT TrafficDate, IsTrunk FROM VLAN_HistSum ORDER BY rowid");
  }
};

TEST_F(SwitchSumsClearingTest, RowsOfMoreThan1200DayBoundariesGo) {
  struct Case {
    std::string now;
    std::string date;
    bool stays;
  };
  const Case cases[] = {
      {"2024-05-02 12:00:00", "'2021-01-18 12:00:00'", true},
      {"2024-05-02 12:00:00", "'2021-01-17 12:00:00'", false},
      // Boundaries between days and not spans of 24 hours.
      {"2024-05-02 23:59:59", "'2021-01-18 00:00:00'", true},
      {"2024-05-02 00:00:01", "'2021-01-17 23:59:59'", false},
      {"2024-05-02 00:01:00", "'2021-01-18 23:59:00'", true},
      {"2024-05-02 12:00:00", "'2021-01-18'", true},
      {"2024-05-02 12:00:00", "'2021-01-17'", false},
      {"2024-05-02 12:00:00", "'1999-12-31 12:00:00'", false},
      {"2024-05-02 12:00:00", "'2024-05-01 12:00:00'", true},
      {"2024-05-02 12:00:00", "'2024-05-02 12:00:00'", true},
      {"2024-05-02 12:00:00", "'2031-01-01 00:00:00'", true},
      {"2024-05-02 12:00:00", "NULL", true},
  };
  for (const Case& row : cases) {
    HistorySql("DELETE FROM VLAN_HistSum");
    house.clock.Set(row.now);
    AddSums(row.date);
    ClearSwitchHistSum(house.imports);
    EXPECT_EQ(Left().size(), row.stays ? 2u : 0u) << row.date << " at " << row.now;
  }
  ExpectNoEvent();
}

TEST_F(SwitchSumsClearingTest, OldRowsGoWhereverTheyStand) {
  for (const char* date : {"'2024-05-01 12:00:00'", "'2020-01-01 12:00:00'", "NULL",
                           "'2024-04-30 12:00:00'", "'2019-01-01 12:00:00'"}) {
    AddSums(date);
  }
  ClearSwitchHistSum(house.imports);
  EXPECT_EQ(Left(), (Lines{"2024-05-01 12:00:00|0", "2024-05-01 12:00:00|1", "NULL|0", "NULL|1",
                           "2024-04-30 12:00:00|0", "2024-04-30 12:00:00|1"}));
  ExpectNoEvent();
}

TEST_F(SwitchSumsClearingTest, ManyOldRowsGoInOneRun) {
  HistorySql(NumbersUpTo(600) +
             "INSERT INTO VLAN_HistSum (TrafficDate, Ports)"
             " SELECT CASE n % 2 WHEN 0 THEN '2020-01-01 12:00:00' ELSE '2024-01-01 12:00:00' END,"
             " n FROM Number");
  ClearSwitchHistSum(house.imports);
  EXPECT_EQ(History("SELECT Count(*), Sum(Ports % 2) FROM VLAN_HistSum"), Lines{"300|300"});
  ExpectNoEvent();
}

TEST_F(SwitchSumsClearingTest, DateThatCannotBeReadStaysAndHoldsNothingUp) {
  HistorySql(
      "INSERT INTO VLAN_HistSum (TrafficDate) VALUES"
      " ('soon'), (NULL), ('2000-01-01T00:00:00'), ('2000-01-01 00:00:00')");
  ClearSwitchHistSum(house.imports);
  EXPECT_EQ(History("SELECT TrafficDate FROM VLAN_HistSum"),
            (Lines{"soon", "NULL", "2000-01-01T00:00:00"}));
  ExpectNoEvent();
}

TEST_F(SwitchSumsClearingTest, EmptyTableIsNoFailure) {
  ClearSwitchHistSum(house.imports);
  EXPECT_EQ(Left(), Lines{});
  ExpectNoEvent();
}

TEST_F(SwitchSumsClearingTest, RealClockCountsUnderAnOverriddenReportDate) {
  AddSums("'2021-01-17 12:00:00'");
  AddSums("'2021-01-18 12:00:00'");
  for (const char* date : {"2014-11-07", "2034-11-07"}) {
    OverrideReportDate(date);
    ClearSwitchHistSum(house.imports);
    EXPECT_EQ(Left(), (Lines{"2021-01-18 12:00:00|0", "2021-01-18 12:00:00|1"})) << date;
  }
}

TEST_F(SwitchSumsClearingTest, SumsOfTheDisksStay) {
  HistorySql("INSERT INTO Disk_HistSum (StorageDate) VALUES ('2001-01-01 00:00:00')");
  ClearSwitchHistSum(house.imports);
  EXPECT_EQ(History("SELECT StorageDate FROM Disk_HistSum"), Lines{"2001-01-01 00:00:00"});
}

TEST_F(SwitchSumsClearingTest, MissingTableFails) {
  HistorySql("DROP TABLE VLAN_HistSum");
  ClearSwitchHistSum(house.imports);
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodImport_ClearSwitchHistSum\tHistory.mdb: no such table: VLAN_HistSum"});
}

TEST_F(SwitchSumsClearingTest, FailureLeavesTheRowsThatWentBeforeItGone) {
  for (const char* date : {"'2020-01-01 12:00:00'", "'2020-01-02 12:00:00'"}) AddSums(date);
  HistorySql(Refusal("DELETE", "VLAN_HistSum", "OLD.rowid = 3"));
  ClearSwitchHistSum(house.imports);
  ExpectFailure("modImport_ClearSwitchHistSum", "refused");
  EXPECT_EQ(Left(), (Lines{"2020-01-02 12:00:00|0", "2020-01-02 12:00:00|1"}));
}

}  // namespace
}  // namespace quillon
