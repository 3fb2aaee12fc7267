// quillondb demo: the made-up network, its history and the report of today.
#include "tools/quillondb_fixture.h"

namespace quillon {
namespace {

// Calendar days from a date column to today, as SQL.
std::string Age(const std::string& column) {
  return "CAST(julianday('" + HoursAgo(0, "%Y-%m-%d") + "') - julianday(date(" + column +
         ")) AS INTEGER)";
}

using QuillondbDemo = Quillondb;

TEST_F(QuillondbDemo, NeedsCreatedDatabases) {
  const Outcome outcome = Run("demo {}");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.error.find("quillondb create"), std::string::npos) << outcome.error;
}

TEST_F(QuillondbDemo, LeavesAnInstallationThatPassesTheCheck) {
  CreateWithDemo();
  CopyWebFiles();
  UseFreePort();
  EXPECT_EQ(Run("check {}").out, "ok\n");
}

TEST_F(QuillondbDemo, RefusesDatabasesThatHoldStatistics) {
  CreateWithDemo();
  Sql("Reports.mdb", "UPDATE VLAN SET IfAlias = 'mine'");
  const Outcome again = Run("demo {}");
  EXPECT_EQ(again.status, 1);
  EXPECT_NE(again.error.find("--replace"), std::string::npos) << again.error;
  EXPECT_EQ(Number("Reports.mdb", "SELECT COUNT(DISTINCT IfAlias) FROM VLAN"), 1);
}

TEST_F(QuillondbDemo, RefusesAHistoryWithASingleDay) {
  Run("create {}");
  Sql("History.mdb", "INSERT INTO Disk_Day33 (RecNo) VALUES (1)");
  const Outcome outcome = Run("demo {}");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.error.find("Disk_Day33"), std::string::npos) << outcome.error;
  EXPECT_EQ(Number("Reports.mdb", "SELECT COUNT(*) FROM VLAN"), 0);
}

TEST_F(QuillondbDemo, ReplaceEmptiesAndRefills) {
  CreateWithDemo();
  const std::string day = Text("History.mdb", "SELECT COUNT(*) FROM VLAN_Day01");
  Sql("Reports.mdb", "UPDATE VLAN SET IfAlias = 'mine'");
  Sql("History.mdb", "DELETE FROM VLAN_HistSum; INSERT INTO VLAN_Day01 (RecNo) VALUES (9999)");
  EXPECT_EQ(Run("demo {} --replace").status, 0);
  EXPECT_EQ(Number("Reports.mdb", "SELECT COUNT(*) FROM VLAN WHERE IfAlias = 'mine'"), 0);
  EXPECT_EQ(Text("History.mdb", "SELECT COUNT(*) FROM VLAN_Day01"), day);
  EXPECT_GT(Number("History.mdb", "SELECT COUNT(*) FROM VLAN_HistSum"), 700);
}

TEST_F(QuillondbDemo, LeavesTheSettingsAlone) {
  Run("create {}");
  Sql("Quillon.mdb", "UPDATE Settings_WebServer SET TcpPort = 8181");
  Run("demo {}");
  EXPECT_EQ(Text("Quillon.mdb", "SELECT TcpPort FROM Settings_WebServer"), "8181");
  EXPECT_EQ(Number("Quillon.mdb", "SELECT COUNT(*) FROM Settings_RepReceiver"), 0);
}

TEST_F(QuillondbDemo, LetsTheSiteListenOnThePortThatItIsGiven) {
  Run("create {}");
  EXPECT_EQ(Run("demo {} --port 8181").status, 0);
  EXPECT_EQ(Text("Quillon.mdb", "SELECT TcpPort FROM Settings_WebServer"), "8181");
  EXPECT_EQ(Number("Reports.mdb", "SELECT COUNT(*) FROM VLAN"), 400);
}

TEST_F(QuillondbDemo, ChangesNothingWhereThePortIsWrong) {
  Run("create {}");
  for (const char* port : {"0", "65536", "70000", "-1"}) {
    EXPECT_EQ(Run(std::string("demo {} --port ") + port).status, 2) << port;
  }
  EXPECT_EQ(Text("Quillon.mdb", "SELECT TcpPort FROM Settings_WebServer"), "8080");
  EXPECT_EQ(Number("Reports.mdb", "SELECT COUNT(*) FROM VLAN"), 0);
}

class QuillondbDemoMail : public QuillondbDemo {
 protected:
  std::vector<Row> Receivers() const {
    return Sql("Quillon.mdb", "SELECT Name, Recipient FROM Settings_RepReceiver ORDER BY rowid");
  }

  std::vector<Row> MailServer() const {
    return Sql("Quillon.mdb", "SELECT MailServer, MailPort FROM Settings_SmtpServer");
  }

  void AddReceiver(const std::string& name) const {
    Sql("Quillon.mdb", "INSERT INTO Settings_RepReceiver (Name, Recipient) VALUES ('" + name +
                           "', '" + name + "@example.org')");
  }
};

TEST_F(QuillondbDemoMail, GoesToThePortThatItIsGiven) {
  Run("create {}");
  EXPECT_EQ(Run("demo {} --mail-port 2525").status, 0);
  EXPECT_EQ(MailServer(), (std::vector<Row>{{"127.0.0.1", "2525"}}));
  EXPECT_EQ(Receivers(), (std::vector<Row>{{"Demonstration", "demonstration@localhost"}}));
  EXPECT_EQ(Number("Reports.mdb", "SELECT COUNT(*) FROM VLAN"), 400);
}

TEST_F(QuillondbDemoMail, ComesEachDayWithListsASummaryAttachmentsAndLinks) {
  Run("create {}");
  Run("demo {} --mail-port 2525");
  EXPECT_EQ(Sql("Quillon.mdb",
                "SELECT TimeSchedule, Top10Rep1, Top10Rep2, Top10Rep3, Top10Rep4, Top10Rep5,"
                " PortRep, PortRepDetails, AttachReport, IncludeUrl FROM Settings_RepReceiver"),
            (std::vector<Row>{{"1", "Access InVolume", "Access InErrors", "Trunk OutVolume",
                               "Access Summary", "None", "1", "1", "1", "1"}}));
}

TEST_F(QuillondbDemoMail, ReportsAPortOfTheDemonstrationThatHasAHistory) {
  Run("create {}");
  Run("demo {} --mail-port 2525");
  const std::vector<Row> port =
      Sql("Quillon.mdb", "SELECT PortRepRecNo, PortRepIfIndex FROM Settings_RepReceiver");
  ASSERT_EQ(port.size(), 1u);
  const std::string isPort = "RecNo = " + port[0][0] + " AND IfIndex = " + port[0][1];
  EXPECT_EQ(Number("Reports.mdb",
                   "SELECT COUNT(*) FROM VLAN WHERE InHCOctetsMb24H > 0"
                   " AND date(InOctetsDate) = '" +
                       HoursAgo(0, "%Y-%m-%d") + "' AND " + isPort),
            1);
  for (const Row& day : Sql("History.mdb", "SELECT HistTable FROM VLAN_HistCtrl")) {
    EXPECT_EQ(Number("History.mdb", "SELECT COUNT(*) FROM " + day[0] + " WHERE " + isPort), 1)
        << day[0];
  }
}

TEST_F(QuillondbDemoMail, LeavesAnInstallationThatPassesTheCheck) {
  Run("create {}");
  Run("demo {} --mail-port 2525");
  CopyWebFiles();
  UseFreePort();
  EXPECT_EQ(Run("check {}").out, "ok\n");
}

TEST_F(QuillondbDemoMail, ReplaceGivesItANewPortAndNoSecondReceiver) {
  Run("create {}");
  Run("demo {} --mail-port 2525");
  Sql("Quillon.mdb", "UPDATE Settings_RepReceiver SET TimeSchedule = 3, Top10Rep1 = 'None'");
  EXPECT_EQ(Run("demo {} --replace --mail-port 2626").status, 0);
  EXPECT_EQ(MailServer(), (std::vector<Row>{{"127.0.0.1", "2626"}}));
  EXPECT_EQ(Sql("Quillon.mdb", "SELECT TimeSchedule, Top10Rep1 FROM Settings_RepReceiver"),
            (std::vector<Row>{{"1", "Access InVolume"}}));
}

TEST_F(QuillondbDemoMail, StaysAwayWithoutAPortAndLeavesOtherReceivers) {
  Run("create {}");
  AddReceiver("first");
  Run("demo {} --mail-port 2525");
  AddReceiver("second");
  EXPECT_EQ(Receivers().size(), 3u);
  EXPECT_EQ(Run("demo {} --replace").status, 0);
  EXPECT_EQ(Receivers(),
            (std::vector<Row>{{"first", "first@example.org"}, {"second", "second@example.org"}}));
  EXPECT_EQ(MailServer(), (std::vector<Row>{{"127.0.0.1", "2525"}}));
}

TEST_F(QuillondbDemoMail, ChangesTheServerAndItsPortAloneOfTheMailSettings) {
  Run("create {}");
  const std::string others =
      "SELECT FromAddr, Subject, Priority, CharSet, TimeOut, Retries, UseAuth, AuthMode, Account,"
      " Pass, Encoding, BodyEncoding, BodyFormat FROM Settings_SmtpServer";
  Sql("Quillon.mdb", "UPDATE Settings_SmtpServer SET Subject = 'mine', Retries = 7");
  const std::vector<Row> before = Sql("Quillon.mdb", others);
  Run("demo {} --mail-port 2525");
  EXPECT_EQ(Sql("Quillon.mdb", others), before);
}

TEST_F(QuillondbDemoMail, ChangesNothingWhereItsPortIsWrong) {
  Run("create {}");
  const std::vector<Row> before = MailServer();
  for (const char* port : {"0", "65536", "-1", "smtp"}) {
    EXPECT_EQ(Run(std::string("demo {} --mail-port ") + port).status, 2) << port;
  }
  EXPECT_EQ(MailServer(), before);
  EXPECT_EQ(Receivers(), std::vector<Row>{});
  EXPECT_EQ(Number("Reports.mdb", "SELECT COUNT(*) FROM VLAN"), 0);
}

TEST_F(QuillondbDemo, GivesTheSameRowsAgain) {
  CreateWithDemo();
  const std::string ports =
      "SELECT group_concat(IfDescr || IfAlias || InHCOctetsMb24H || InErrorsTot24H) FROM VLAN";
  const std::string sums = "SELECT group_concat(UsedMUnix || StorageDate) FROM Disk_HistSum";
  const std::string before = Text("Reports.mdb", ports) + Text("History.mdb", sums);
  Run("demo {} --replace");
  EXPECT_EQ(Text("Reports.mdb", ports) + Text("History.mdb", sums), before);
}

TEST_F(QuillondbDemo, HasThirtySwitchesFourHundredPortsAndFifteenServers) {
  CreateWithDemo();
  EXPECT_EQ(Number("Reports.mdb", "SELECT COUNT(*) FROM VLAN"), 400);
  EXPECT_EQ(Number("Reports.mdb", "SELECT COUNT(DISTINCT RecNo) FROM VLAN"), 30);
  EXPECT_EQ(
      Number("Reports.mdb", "SELECT COUNT(*) FROM (SELECT DISTINCT RecNo, IfIndex FROM VLAN)"),
      400);
  EXPECT_EQ(Number("Reports.mdb", "SELECT COUNT(DISTINCT RecNo) FROM HostDiskInfo"), 15);
  for (const char* memory : {"Physical", "Virtual"}) {
    EXPECT_EQ(Number("Reports.mdb", fmt::format("SELECT COUNT(*) FROM HostDiskInfo"
                                                " WHERE StorDescr = '{}'",
                                                memory)),
              15);
  }
}

TEST_F(QuillondbDemo, HasWhateverAPageCanStumbleOver) {
  CreateWithDemo();
  struct Case {
    const char* table;
    std::string condition;
    long atLeast;
  };
  const std::string today = "'" + HoursAgo(0, "%Y-%m-%d") + "'";
  const Case kCases[] = {
      {"VLAN", "IsTrunk = 1", 50},
      {"VLAN", "IsTrunk = 0", 250},
      {"VLAN", "IfAlias = 'Büro Empfang'", 1},
      {"VLAN", "IfAlias LIKE 'Москва%'", 1},
      {"VLAN", "IfAlias LIKE '%''%'", 1},
      {"VLAN", "IfAlias LIKE '%&%'", 1},
      {"VLAN", "IfAlias = ''", 50},
      {"VLAN", "DevName LIKE 'Z%rich%'", 1},
      {"VLAN", "IfDescr = 'GigabitEthernet1/0/7'", 1},
      {"VLAN", "IfDescr = 'ge-0/0/12'", 1},
      {"VLAN", "IfDescr = 'Port 7'", 1},
      {"VLAN", "VlanID = -1", 50},
      {"VLAN", "VlanID > 0", 200},
      {"VLAN", "InMultiCastPpm24H = -1", 20},
      {"VLAN", "InHCOctetsMb24H = -1 AND OutHCOctetsMb24H = -1", 10},
      {"VLAN", "InHCOctetsMb24H = 0", 20},
      {"VLAN", "InHCOctetsMb24H BETWEEN 1 AND 50", 10},
      {"VLAN", "IsTrunk = 0 AND InHCOctetsMb24H > 1000000", 1},
      {"VLAN", "IsTrunk = 1 AND InHCOctetsMb24H > 1000000", 1},
      {"VLAN", "InBroadCastPpm24H > 2000", 1},
      {"VLAN", "InErrorsTot24H > 500000", 2},
      {"VLAN", "OutErrorsTot24H > 50000", 1},
      {"VLAN", "date(InOctetsDate) = " + today, 350},
      {"VLAN", "date(InOctetsDate) < " + today + " AND date(LastUpdate) = " + today, 2},
      {"VLAN", "date(LastUpdate) < " + today, 5},
      {"MAC",
       "MacAddr GLOB '[0-9A-F][0-9A-F] [0-9A-F][0-9A-F] [0-9A-F][0-9A-F]"
       " [0-9A-F][0-9A-F] [0-9A-F][0-9A-F] [0-9A-F][0-9A-F]'",
       200},
      {"HostDiskInfo", "StorDescr LIKE '_:'", 12},
      {"HostDiskInfo", "StorDescr = '/'", 5},
      {"HostDiskInfo", "StorDescr = '/var/log'", 1},
      {"HostDiskInfo", "FreeRawM = 0 AND UsedRawM = 0", 1},
      {"HostDiskInfo", "UsedProc > 90", 2},
      {"HostDiskInfo", "date(LastUpdate) = " + today, 50},
      {"HostDiskInfo", "date(LastUpdate) < " + today, 3},
  };
  for (const Case& expected : kCases) {
    EXPECT_GE(Number("Reports.mdb", fmt::format("SELECT COUNT(*) FROM {} WHERE {}", expected.table,
                                                expected.condition)),
              expected.atLeast)
        << expected.condition;
  }
}

TEST_F(QuillondbDemo, HasNoNullsInStatistics) {
  CreateWithDemo();
  for (const char* table : {"VLAN", "MAC", "HostDiskInfo"}) {
    for (const Row& column :
         Sql("Reports.mdb", fmt::format("SELECT name FROM pragma_table_info('{}')", table))) {
      EXPECT_EQ(Number("Reports.mdb",
                       fmt::format("SELECT COUNT(*) FROM {} WHERE {} IS NULL", table, column[0])),
                0)
          << table << " " << column[0];
    }
  }
}

TEST_F(QuillondbDemo, KnowsAnAddressOnMostAccessPortsAndOnNoTrunk) {
  CreateWithDemo();
  const std::string ports =
      "SELECT COUNT(*) FROM VLAN WHERE IsTrunk = {} AND EXISTS (SELECT * FROM MAC WHERE"
      " MAC.RecNo = VLAN.RecNo AND MAC.IfIndex = VLAN.IfIndex)";
  EXPECT_GT(Number("Reports.mdb", fmt::format(fmt::runtime(ports), 0)), 200);
  EXPECT_EQ(Number("Reports.mdb", fmt::format(fmt::runtime(ports), 1)), 0);
  EXPECT_EQ(Number("Reports.mdb", "SELECT COUNT(*) FROM MAC WHERE LastSeen > '" +
                                      HoursAgo(-1, "%Y-%m-%d %H:%M:%S") + "'"),
            0);
}

TEST_F(QuillondbDemo, MakesTodaysImportDue) {
  CreateWithDemo();
  const std::vector<Row> rows =
      Sql("History.mdb",
          "SELECT date(LastReport), date(LastImport), ReportStart, ReportEnd"
          " FROM General_Info");
  ASSERT_EQ(rows.size(), 1u);
  const std::string today = HoursAgo(0, "%Y-%m-%d");
  const std::string yesterday = HoursAgo(23, "%Y-%m-%d");
  EXPECT_EQ(rows[0],
            (Row{today, yesterday, yesterday + "&nbsp;&nbsp03:00", today + "&nbsp;&nbsp03:00"}));
}

TEST_F(QuillondbDemo, LeavesTheControlRowsAsDailyImportsDo) {
  CreateWithDemo();
  const std::pair<std::string, std::string> kControls[] = {{"VLAN_HistCtrl", "TrafficDate"},
                                                           {"Disk_HistCtrl", "StorageDate"}};
  for (const auto& [table, date] : kControls) {
    const auto count = [&](const std::string& condition) {
      return Number("History.mdb",
                    "SELECT COUNT(*) FROM " + table + " WHERE " + Age(date) + condition);
    };
    EXPECT_EQ(count(" = 2"), 1) << table << ": yesterday's import";
    EXPECT_EQ(count(" = 46"), 1) << table << ": the row that is free without a gap";
    EXPECT_EQ(count(" < 2"), 0) << table;
    EXPECT_EQ(count(" > 46"), 45 - count(" BETWEEN 2 AND 46")) << table;
    EXPECT_EQ(count(" BETWEEN 2 AND 46"), 41) << table << ": four nights were missed";
    EXPECT_EQ(Number("History.mdb", "SELECT COUNT(DISTINCT date(" + date + ")) FROM " + table), 45)
        << table << ": no day twice";
  }
}

TEST_F(QuillondbDemo, KeepsTheDaysThatTodaysTrendsLookBackTo) {
  CreateWithDemo();
  for (const int age : {15, 31}) {
    EXPECT_EQ(Number("History.mdb", fmt::format("SELECT COUNT(*) FROM Disk_HistCtrl WHERE {} = {}",
                                                Age("StorageDate"), age)),
              1)
        << age;
  }
}

TEST_F(QuillondbDemo, FillsEveryDayTableThatAControlRowNames) {
  CreateWithDemo();
  for (const Row& row : Sql("History.mdb", "SELECT HistTable FROM VLAN_HistCtrl")) {
    EXPECT_GT(Number("History.mdb", "SELECT COUNT(*) FROM " + row[0]), 370) << row[0];
  }
  for (const Row& row : Sql("History.mdb", "SELECT HistTable FROM Disk_HistCtrl")) {
    EXPECT_GT(Number("History.mdb", "SELECT COUNT(*) FROM " + row[0]), 55) << row[0];
    EXPECT_EQ(Number("History.mdb", "SELECT COUNT(*) FROM " + row[0] +
                                        " WHERE TotalM <= 0 OR TotalM <> UsedM + FreeM OR"
                                        " Type NOT IN (10, 20, 30, 40)"),
              0)
        << row[0];
  }
}

TEST_F(QuillondbDemo, CarriesLessTrafficAtTheWeekend) {
  CreateWithDemo();
  const std::string mean =
      "SELECT CAST(AVG(InHCOctetsMb24H) AS INTEGER) FROM VLAN_HistSum"
      " WHERE IsTrunk = 1 AND strftime('%w', TrafficDate) ";
  EXPECT_LT(2 * Number("History.mdb", mean + "IN ('0', '6')"),
            Number("History.mdb", mean + "BETWEEN '1' AND '5'"));
}

TEST_F(QuillondbDemo, LetsDisksGrow) {
  CreateWithDemo();
  const std::string used = "SELECT UsedMWindows FROM Disk_HistSum ORDER BY StorageDate ";
  EXPECT_GT(Number("History.mdb", used + "DESC LIMIT 1"),
            Number("History.mdb", used + "LIMIT 1") * 11 / 10);
}

TEST_F(QuillondbDemo, SumsFourHundredDaysOnceADayAndClass) {
  CreateWithDemo();
  const long days = Number("History.mdb", "SELECT COUNT(*) FROM Disk_HistSum");
  EXPECT_GT(days, 380);
  EXPECT_LT(days, 400);
  EXPECT_EQ(Number("History.mdb", "SELECT COUNT(*) FROM VLAN_HistSum"), 2 * days);
  EXPECT_EQ(Number("History.mdb",
                   "SELECT COUNT(*) FROM (SELECT DISTINCT IsTrunk, date(TrafficDate)"
                   " FROM VLAN_HistSum)"),
            2 * days);
  EXPECT_EQ(Number("History.mdb", "SELECT MIN(" + Age("TrafficDate") + ") FROM VLAN_HistSum"), 2);
  EXPECT_EQ(Number("History.mdb", "SELECT MAX(" + Age("StorageDate") + ") FROM Disk_HistSum"), 401);
}

// The newest day table and the sums of that day tell the same figures.
TEST_F(QuillondbDemo, SumsAgreeWithTheDayTables) {
  CreateWithDemo();
  const std::string table =
      Text("History.mdb", "SELECT HistTable FROM Disk_HistCtrl ORDER BY StorageDate DESC LIMIT 1");
  const std::string newest = " FROM Disk_HistSum ORDER BY StorageDate DESC LIMIT 1";
  EXPECT_EQ(Number("History.mdb", "SELECT SUM(UsedM) FROM " + table + " WHERE Type = 10"),
            Number("History.mdb", "SELECT UsedMPhysical" + newest));
  EXPECT_EQ(Number("History.mdb", "SELECT COUNT(*) FROM " + table + " WHERE Type = 40"),
            Number("History.mdb", "SELECT NumUnix" + newest));
}

}  // namespace
}  // namespace quillon
