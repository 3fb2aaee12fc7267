// The program quillondb, started as a user starts it, on directories of the test's own.
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace quillon {
namespace {

namespace fs = std::filesystem;

using Row = std::vector<std::string>;

// While this lives, the process and those that it starts are in a zone in which it is mid-day
// now, so that no test runs across midnight.
class MiddayZone {
 public:
  MiddayZone() {
    if (const char* zone = std::getenv("TZ")) before_ = zone;
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    gmtime_r(&now, &utc);
    setenv("TZ", fmt::format("MID{}", utc.tm_hour - 12).c_str(), 1);
    tzset();
  }
  ~MiddayZone() {
    if (before_) {
      setenv("TZ", before_->c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }
  MiddayZone(const MiddayZone&) = delete;
  MiddayZone& operator=(const MiddayZone&) = delete;

 private:
  std::optional<std::string> before_;
};

struct Outcome {
  int status = -1;
  std::string out;
  std::string error;
};

// Runs the program in a directory that is removed at the end.
class Quillondb : public testing::Test {
 protected:
  Quillondb() {
    std::string name = (fs::temp_directory_path() / "quillondb-XXXXXX").string();
    root_ = mkdtemp(name.data());
    home_ = root_ / "home";
  }
  ~Quillondb() override { fs::remove_all(root_); }

  // "{}" in the arguments stands for the installation directory.
  Outcome Run(const std::string& arguments) const {
    const std::string out = (root_ / "out").string();
    const std::string error = (root_ / "error").string();
    const int status = std::system(
        fmt::format("'{}' {} >'{}' 2>'{}'", QUILLONDB_PATH,
                    fmt::format(fmt::runtime(arguments), "'" + home_.string() + "'"), out, error)
            .c_str());
    return {WEXITSTATUS(status), Content(out), Content(error)};
  }

  void CreateWithDemo() const {
    ASSERT_EQ(Run("create {}").status, 0);
    const Outcome demo = Run("demo {}");
    ASSERT_EQ(demo.status, 0) << demo.error;
  }

  static std::string Content(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
  }

  // All rows of one or more statements; a null reads as "NULL".
  std::vector<Row> Sql(const std::string& file, const std::string& sql) const {
    sqlite3* database = nullptr;
    EXPECT_EQ(sqlite3_open((home_ / file).c_str(), &database), SQLITE_OK);
    std::vector<Row> rows;
    const auto collect = [](void* result, int columns, char** values, char**) {
      Row row;
      for (int i = 0; i < columns; ++i) row.emplace_back(values[i] ? values[i] : "NULL");
      static_cast<std::vector<Row>*>(result)->push_back(std::move(row));
      return 0;
    };
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), collect, &rows, nullptr), SQLITE_OK) << sql;
    sqlite3_close(database);
    return rows;
  }

  std::string Text(const std::string& file, const std::string& sql) const {
    const std::vector<Row> rows = Sql(file, sql);
    return rows.size() == 1 && rows[0].size() == 1 ? rows[0][0] : "no single value: " + sql;
  }

  long Number(const std::string& file, const std::string& sql) const {
    return std::strtol(Text(file, sql).c_str(), nullptr, 10);
  }

  MiddayZone zone_;
  fs::path root_;
  fs::path home_;
};

// The wall clock so many hours ago, by a pattern of strftime.
std::string HoursAgo(int hours, const char* pattern) {
  const std::time_t moment = std::time(nullptr) - hours * 3600;
  std::tm local{};
  localtime_r(&moment, &local);
  char text[32];
  std::strftime(text, sizeof text, pattern, &local);
  return text;
}

// Calendar days from a date column to today, as SQL.
std::string Age(const std::string& column) {
  return "CAST(julianday('" + HoursAgo(0, "%Y-%m-%d") + "') - julianday(date(" + column +
         ")) AS INTEGER)";
}

using QuillondbUsage = Quillondb;

TEST_F(QuillondbUsage, WrongUsageExitsWith2AndSaysWhy) {
  const std::pair<const char*, const char*> kCases[] = {{"", "subcommand"},
                                                        {"explode {}", "subcommand"},
                                                        {"create", "DIR"},
                                                        {"create {} --replace", "--replace"},
                                                        {"demo {} --force", "--force"}};
  for (const auto& [arguments, word] : kCases) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 2) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    EXPECT_NE(outcome.error.find(word), std::string::npos) << arguments << ": " << outcome.error;
  }
}

TEST_F(QuillondbUsage, HelpNamesEveryCommand) {
  const Outcome help = Run("--help");
  EXPECT_EQ(help.status, 0);
  for (const char* command : {"create", "demo", "check", "report-done"}) {
    EXPECT_NE(help.out.find(command), std::string::npos) << command;
  }
}

TEST_F(QuillondbUsage, VersionIsThatOfTheService) {
  const Outcome version = Run("--version");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "9.05\n");
}

using QuillondbCreate = Quillondb;

TEST_F(QuillondbCreate, MakesADirectoryThatPassesTheCheck) {
  EXPECT_EQ(Run("create {}").status, 0);
  const Outcome check = Run("check {}");
  EXPECT_EQ(check.out, "ok\n");
  EXPECT_EQ(check.status, 0);
}

TEST_F(QuillondbCreate, MakesTheFoldersOfTheServiceAndItsMorvaneIni) {
  Run("create {}");
  for (const char* folder : {"WebReports", "WebReports/Cache", "WebReports/Mail", "Debug"}) {
    EXPECT_TRUE(fs::is_directory(home_ / folder)) << folder;
  }
  EXPECT_EQ(Content(home_ / "Morvane.ini"), "ServerIpAddr=127.0.0.1\r\nServerTrapPort=162\r\n");
  EXPECT_EQ(Text("Quillon.mdb", "SELECT SnmpcDir FROM Settings_General"), home_.string());
}

TEST_F(QuillondbCreate, KeepsAMorvaneIniThatIsThere) {
  fs::create_directories(home_);
  std::ofstream(home_ / "Morvane.ini") << "ServerTrapPort=1162\n";
  EXPECT_EQ(Run("create {}").status, 0);
  EXPECT_EQ(Content(home_ / "Morvane.ini"), "ServerTrapPort=1162\n");
}

TEST_F(QuillondbCreate, RefusesToOverwriteADatabase) {
  Run("create {}");
  Sql("Quillon.mdb", "UPDATE Settings_WebServer SET TcpPort = 8181");
  const Outcome again = Run("create {}");
  EXPECT_EQ(again.status, 1);
  EXPECT_NE(again.error.find("Quillon.mdb exists already"), std::string::npos) << again.error;
  EXPECT_EQ(Text("Quillon.mdb", "SELECT TcpPort FROM Settings_WebServer"), "8181");
}

TEST_F(QuillondbCreate, SaysWhenTheDirectoryCannotBeMade) {
  std::ofstream(home_) << "a file in the way";
  const Outcome outcome = Run("create {}");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.error.find(home_.string()), std::string::npos) << outcome.error;
}

using QuillondbDemo = Quillondb;

TEST_F(QuillondbDemo, NeedsCreatedDatabases) {
  const Outcome outcome = Run("demo {}");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.error.find("quillondb create"), std::string::npos) << outcome.error;
}

TEST_F(QuillondbDemo, LeavesAnInstallationThatPassesTheCheck) {
  CreateWithDemo();
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

using QuillondbReportDone = Quillondb;

TEST_F(QuillondbReportDone, SetsTheMarksInTheDatePatternOfTheSettings) {
  const std::pair<const char*, const char*> kPatterns[] = {
      {"YYYY-MM-DD", "%Y-%m-%d"}, {"MM/DD/YYYY", "%m/%d/%Y"}, {"DD/MM/YYYY", "%d/%m/%Y"}};
  Run("create {}");
  for (const auto& [pattern, format] : kPatterns) {
    Sql("Quillon.mdb", fmt::format("UPDATE Settings_General SET DatumFormat = '{}'", pattern));
    EXPECT_EQ(Run("report-done {}").status, 0);
    const std::vector<Row> rows =
        Sql("History.mdb",
            "SELECT date(LastReport), date(LastImport), ReportStart, ReportEnd"
            " FROM General_Info");
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0],
              (Row{HoursAgo(0, "%Y-%m-%d"), "2000-01-01", HoursAgo(23, format) + "&nbsp;&nbsp03:00",
                   HoursAgo(0, format) + "&nbsp;&nbsp03:00"}));
  }
}

TEST_F(QuillondbReportDone, NeedsCreatedDatabases) {
  const Outcome outcome = Run("report-done {}");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.error.find("quillondb create"), std::string::npos) << outcome.error;
}

TEST_F(QuillondbReportDone, SaysThatTheMarksHaveNoRow) {
  Run("create {}");
  Sql("History.mdb", "DELETE FROM General_Info");
  const Outcome outcome = Run("report-done {}");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.error.find("General_Info"), std::string::npos) << outcome.error;
}

using QuillondbCheck = Quillondb;

TEST_F(QuillondbCheck, SaysThatThereIsNoDirectory) {
  const Outcome check = Run("check {}");
  EXPECT_EQ(check.status, 1);
  EXPECT_EQ(check.out, home_.string() + " is no directory\n");
}

TEST_F(QuillondbCheck, FindsEachKindOfDamageInADatabase) {
  struct Case {
    const char* file;
    const char* damage;
    const char* finding;
  };
  const Case kCases[] = {
      {"Reports.mdb", "DROP TABLE MAC", "Reports.mdb: the table MAC is missing"},
      {"Reports.mdb", "ALTER TABLE VLAN DROP COLUMN IfAlias",
       "Reports.mdb: the column IfAlias of VLAN is missing"},
      {"Reports.mdb",
       "DROP TABLE MAC; CREATE TABLE MAC (RecNo INTEGER, IfIndex INTEGER,"
       " MacAddr TEXT, IpAddr TEXT, LastSeen TEXT)",
       "Reports.mdb: the column LastSeen of MAC is declared as TEXT instead of DATE"},
      {"Quillon.mdb", "DELETE FROM Settings_SmtpServer",
       "Quillon.mdb: Settings_SmtpServer has 0 rows where exactly one belongs"},
      {"Quillon.mdb", "INSERT INTO Settings_General VALUES (0, '', '')",
       "Quillon.mdb: Settings_General has 2 rows where exactly one belongs"},
      {"Quillon.mdb", "UPDATE Settings_WebServer SET Status = NULL",
       "Quillon.mdb: Status in Settings_WebServer is null"},
      {"Quillon.mdb", "UPDATE Settings_General SET SnmpcDir = ''",
       "Quillon.mdb: SnmpcDir in Settings_General is empty; it has to be the directory of"
       " Morvane.ini"},
      {"Quillon.mdb", "UPDATE Settings_General SET SnmpcDir = '/nowhere'",
       "/nowhere/Morvane.ini is missing; the service ends at once without it"},
      {"History.mdb", "UPDATE General_Info SET LastImport = NULL",
       "History.mdb: LastImport in General_Info is null"},
      {"History.mdb", "DELETE FROM VLAN_HistCtrl WHERE rowid = 3",
       "History.mdb: VLAN_HistCtrl has 44 rows instead of 45"},
      {"History.mdb", "UPDATE Disk_HistCtrl SET StorageDate = NULL WHERE rowid = 3",
       "History.mdb: StorageDate in Disk_HistCtrl is null; its day table is never used"},
      {"History.mdb", "UPDATE Disk_HistCtrl SET HistTable = 'Lost' WHERE rowid = 3",
       "History.mdb: Disk_HistCtrl: the table Lost is missing"},
      {"History.mdb", "ALTER TABLE VLAN_Day07 RENAME COLUMN IsTrunk TO Trunk",
       "History.mdb: VLAN_HistCtrl: the column IsTrunk of VLAN_Day07 is missing"},
      {"History.mdb", "UPDATE VLAN_HistCtrl SET HistTable = 'VLAN_Day01' WHERE rowid = 2",
       "History.mdb: 2 rows of VLAN_HistCtrl name the table VLAN_Day01"},
  };
  for (const Case& damaged : kCases) {
    fs::remove_all(home_);
    Run("create {}");
    Sql(damaged.file, damaged.damage);
    const Outcome check = Run("check {}");
    EXPECT_EQ(check.status, 1) << damaged.damage;
    EXPECT_EQ(check.out, std::string(damaged.finding) + "\n") << damaged.damage;
    EXPECT_NE(check.error, "") << damaged.damage;
  }
}

TEST_F(QuillondbCheck, FindsMissingFilesAndFolders) {
  const std::pair<const char*, const char*> kCases[] = {
      {"History.mdb", "History.mdb: the file is missing"},
      {"WebReports/Mail", "WebReports/Mail: the folder is missing"},
      {"Debug", "Debug: the folder is missing"},
      {"Morvane.ini", "Morvane.ini is missing"}};
  for (const auto& [name, finding] : kCases) {
    fs::remove_all(home_);
    Run("create {}");
    fs::remove(home_ / name);
    const Outcome check = Run("check {}");
    EXPECT_EQ(check.status, 1) << name;
    EXPECT_NE(check.out.find(finding), std::string::npos) << check.out;
  }
}

TEST_F(QuillondbCheck, FindsAFileThatIsNoDatabase) {
  Run("create {}");
  std::ofstream(home_ / "Reports.mdb") << "This has been a spreadsheet once, and a long one.";
  const Outcome check = Run("check {}");
  EXPECT_EQ(check.status, 1);
  EXPECT_NE(check.out.find("Reports.mdb: file is not a database"), std::string::npos) << check.out;
}

TEST_F(QuillondbCheck, FindsADatabaseWithBrokenPages) {
  CreateWithDemo();
  std::fstream file(home_ / "Reports.mdb", std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(4 * 4096);
  file << std::string(4 * 4096, 'x');
  file.close();
  const Outcome check = Run("check {}");
  EXPECT_EQ(check.status, 1);
  EXPECT_NE(check.out.find("Reports.mdb: "), std::string::npos) << check.out;
}

TEST_F(QuillondbCheck, FindsADatabaseThatOtherUsersCanRead) {
  Run("create {}");
  fs::permissions(home_ / "Quillon.mdb", fs::perms::group_read, fs::perm_options::add);
  EXPECT_EQ(Run("check {}").out,
            "Quillon.mdb: other users can reach the file; set its mode to 0600\n");
}

TEST_F(QuillondbCheck, TellsAllFindingsAtOnce) {
  Run("create {}");
  Sql("Reports.mdb", "DROP TABLE MAC; DROP TABLE VLAN");
  fs::remove(home_ / "Debug");
  EXPECT_EQ(Run("check {}").out,
            "Reports.mdb: the table VLAN is missing\nReports.mdb: the table MAC is missing\n"
            "Debug: the folder is missing\n");
}

}  // namespace
}  // namespace quillon
