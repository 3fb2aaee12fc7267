// quillondb check: each kind of damage, in the words that the operator reads.
#include <pwd.h>
#include <unistd.h>

#include <algorithm>

#include "tools/quillondb_fixture.h"

namespace quillon {
namespace {

// What only a backup brings back.
const std::string kRestored =
    "; stop the service, and restore a backup ('quillondb restore --replace BACKUP DIR')";

struct Case {
  const char* file;
  std::string damage;  // SQL
  std::string finding;
};

const std::string kWithoutIni =
    "; the service ends at once without it, so set SnmpcDir in Settings_General to the directory of"
    " the management product's";

// How a null becomes what a new installation has.
std::string Usual(const std::string& table, const std::string& column, const std::string& value) {
  return fmt::format("; for the value of a new installation run \"UPDATE {} SET {} = {}\" in it",
                     table, column, value);
}

class QuillondbCheck : public Quillondb {
 protected:
  // The calendar day so many days from today, as the programs see it.
  static std::string DaysFromToday(int days) {
    return SqlRows("", fmt::format("SELECT date('now', 'localtime', '{} days')", days))[0][0];
  }

  // Whoever runs the test.
  static std::string Owner() {
    const passwd* entry = getpwuid(geteuid());
    return entry == nullptr ? std::to_string(geteuid()) : entry->pw_name;
  }

  // The damage to a whole installation is found, and it alone.
  void ExpectFinding(const Case& damaged) const {
    fs::remove_all(home_);
    CreateForCheck();
    Sql(damaged.file, damaged.damage);
    const Outcome check = Run("check {}");
    EXPECT_EQ(check.status, 1) << damaged.damage;
    EXPECT_EQ(check.out, damaged.finding + "\n") << damaged.damage;
    EXPECT_NE(check.error, "") << damaged.damage;
  }
};

TEST_F(QuillondbCheck, SaysThatThereIsNoDirectory) {
  const Outcome check = Run("check {}");
  EXPECT_EQ(check.status, 1);
  EXPECT_EQ(check.out, home_.string() + " is no directory\n");
}

TEST_F(QuillondbCheck, FindsEachKindOfDamageInADatabase) {
  const Case kCases[] = {
      {"Reports.mdb", "DROP TABLE MAC", "Reports.mdb: the table MAC is missing" + kRestored},
      {"Reports.mdb", "ALTER TABLE VLAN DROP COLUMN IfAlias",
       "Reports.mdb: the column IfAlias of VLAN is missing" + kRestored},
      {"Reports.mdb",
       "DROP TABLE MAC; CREATE TABLE MAC (RecNo INTEGER, IfIndex INTEGER,"
       " MacAddr TEXT, IpAddr TEXT, LastSeen TEXT)",
       "Reports.mdb: the column LastSeen of MAC is declared as TEXT instead of DATE" + kRestored},
      {"Quillon.mdb", "DELETE FROM Settings_SmtpServer",
       "Quillon.mdb: Settings_SmtpServer has 0 rows where exactly one belongs" + kRestored},
      {"Quillon.mdb", "INSERT INTO Settings_General VALUES (0, 'YYYY-MM-DD', '')",
       "Quillon.mdb: Settings_General has 2 rows where exactly one belongs; keep the first, which"
       " counts, and delete all others"},
      {"Quillon.mdb", "UPDATE Settings_WebServer SET Status = NULL",
       "Quillon.mdb: Status in Settings_WebServer is null" +
           Usual("Settings_WebServer", "Status", "''")},
      {"Quillon.mdb", "UPDATE Settings_General SET SnmpcDir = ''",
       "Quillon.mdb: SnmpcDir in Settings_General is empty; it has to be the directory of"
       " Morvane.ini"},
      {"Quillon.mdb", "UPDATE Settings_General SET SnmpcDir = '/nowhere'",
       "/nowhere/Morvane.ini is missing" + kWithoutIni},
      {"History.mdb", "UPDATE General_Info SET LastImport = NULL",
       "History.mdb: LastImport in General_Info is null" +
           Usual("General_Info", "LastImport", "'2000-01-01 00:00:00'")},
      {"History.mdb", "DELETE FROM VLAN_HistCtrl WHERE rowid = 3",
       "History.mdb: VLAN_HistCtrl has 44 rows instead of 45; add one with the date"
       " '2000-01-01 00:00:00' for each day table that none names"},
      {"History.mdb", "UPDATE Disk_HistCtrl SET StorageDate = NULL WHERE rowid = 3",
       "History.mdb: StorageDate in Disk_HistCtrl is null; its day table is never used, so run"
       " \"UPDATE Disk_HistCtrl SET StorageDate = '2000-01-01 00:00:00' WHERE StorageDate IS NULL\""
       " in it"},
      {"History.mdb", "UPDATE Disk_HistCtrl SET HistTable = 'Lost' WHERE rowid = 3",
       "History.mdb: Disk_HistCtrl: the table Lost is missing" + kRestored},
      {"History.mdb", "ALTER TABLE VLAN_Day07 RENAME COLUMN IsTrunk TO Trunk",
       "History.mdb: VLAN_HistCtrl: the column IsTrunk of VLAN_Day07 is missing" + kRestored},
      {"History.mdb", "UPDATE VLAN_HistCtrl SET HistTable = 'VLAN_Day01' WHERE rowid = 2",
       "History.mdb: 2 rows of VLAN_HistCtrl name the table VLAN_Day01; let one of them name it, "
       "and"
       " each other one a day table that none names"},
  };
  for (const Case& damaged : kCases) ExpectFinding(damaged);
}

TEST_F(QuillondbCheck, FindsSettingsThatTheServiceCannotUse) {
  const Case kCases[] = {
      {"Quillon.mdb", "UPDATE Settings_General SET DatumFormat = 'yyyy-mm-dd'",
       "Quillon.mdb: DatumFormat in Settings_General is 'yyyy-mm-dd'; it has to be YYYY-MM-DD,"
       " MM/DD/YYYY or DD/MM/YYYY"},
      {"Quillon.mdb", "UPDATE Settings_General SET DatumFormat = ''",
       "Quillon.mdb: DatumFormat in Settings_General is empty; it has to be YYYY-MM-DD,"
       " MM/DD/YYYY or DD/MM/YYYY"},
      {"Quillon.mdb", "UPDATE Settings_WebServer SET TcpPort = 0",
       "Quillon.mdb: TcpPort in Settings_WebServer is 0; the site cannot listen there; write a"
       " port from 1 to 65535"},
      {"Quillon.mdb", "UPDATE Settings_WebServer SET TcpPort = 65536",
       "Quillon.mdb: TcpPort in Settings_WebServer is 65536; the site cannot listen there; write"
       " a port from 1 to 65535"},
      {"Quillon.mdb", "UPDATE Settings_WebServer SET TcpPort = 'http'",
       "Quillon.mdb: TcpPort in Settings_WebServer is 'http'; the site cannot listen there; write"
       " a port from 1 to 65535"},
      {"Quillon.mdb", "UPDATE Settings_SmtpServer SET MailPort = 70000",
       "Quillon.mdb: MailPort in Settings_SmtpServer is 70000; no mail can be sent there; write a "
       "port"
       " from 1 to 65535"},
      {"Quillon.mdb", "UPDATE Settings_WebServer SET CharSet = 'ISO-8859-99'",
       "Quillon.mdb: CharSet in Settings_WebServer is 'ISO-8859-99', which this machine does not"
       " know; write a name out of 'iconv -l'"},
      {"Quillon.mdb", "UPDATE Settings_SmtpServer SET CharSet = ''",
       "Quillon.mdb: CharSet in Settings_SmtpServer is empty, which this machine does not know;"
       " write a name out of 'iconv -l'"},
      {"Quillon.mdb",
       "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 101)"
       " INSERT INTO Settings_RepReceiver SELECT i, 'a@b', 1, '', 'None', 'None', 'None', 'None',"
       " 'None', FALSE, 0, 0, FALSE, FALSE, FALSE FROM n",
       "Quillon.mdb: Settings_RepReceiver has 101 rows; beyond 100 nobody gets mail, so delete"
       " some"},
  };
  for (const Case& damaged : kCases) ExpectFinding(damaged);
}

TEST_F(QuillondbCheck, FindsDatesThatCannotBeRead) {
  const std::string advice =
      "; write a valid date as 'YYYY-MM-DD HH:MM:SS', or reading it can fail";
  const std::pair<const char*, const char*> kTexts[] = {
      {"'2024/05/01'", "'2024/05/01'"},
      {"'01.05.2024 03:00:00'", "'01.05.2024 03:00:00'"},
      {"'2024-02-30 03:00:00'", "'2024-02-30 03:00:00'"},
      {"'2024-05-01 24:00:00'", "'2024-05-01 24:00:00'"},
      {"'2024-05-01T03:00:00'", "'2024-05-01T03:00:00'"},
      {"'2024-05-01'", "'2024-05-01'"},
      {"45413", "45413"},
      {"'now'", "'now'"},
      {"''", "empty"}};
  for (const auto& [value, shown] : kTexts) {
    ExpectFinding({"History.mdb", std::string("UPDATE General_Info SET LastReport = ") + value,
                   std::string("History.mdb: LastReport in General_Info is ") + shown + advice});
  }
  ExpectFinding({"History.mdb", "UPDATE General_Info SET LastImport = 'yesterday'",
                 "History.mdb: LastImport in General_Info is 'yesterday'" + advice});
  ExpectFinding({"History.mdb", "UPDATE VLAN_HistCtrl SET TrafficDate = 'x' WHERE rowid = 3",
                 "History.mdb: TrafficDate in VLAN_HistCtrl is 'x'" + advice});
  ExpectFinding({"History.mdb", "UPDATE Disk_HistCtrl SET StorageDate = 'x' WHERE rowid < 4",
                 "History.mdb: StorageDate in Disk_HistCtrl is 'x' in 3 rows" + advice});
}

TEST_F(QuillondbCheck, FindsControlRowsThatNameNoTable) {
  const std::string advice = "; whatever reads the row fails; write the name of its day table";
  ExpectFinding({"History.mdb", "UPDATE VLAN_HistCtrl SET HistTable = NULL WHERE rowid = 3",
                 "History.mdb: HistTable in VLAN_HistCtrl is null" + advice});
  ExpectFinding({"History.mdb", "UPDATE Disk_HistCtrl SET HistTable = '' WHERE rowid < 3",
                 "History.mdb: HistTable in Disk_HistCtrl is empty in 2 rows" + advice});
}

TEST_F(QuillondbCheck, FindsDaysThatHoldUpTheCharts) {
  const std::string yesterday = DaysFromToday(-1);
  const std::string twice = "; charts show no day before it, so ";
  const std::string early = ", which is not over yet; until it is, charts show no day at all: ";
  const std::string freeEarly = "set its date back by 46 days, or wait until the day is over";
  const std::string setBack = "UPDATE VLAN_HistCtrl SET TrafficDate = ";
  ExpectFinding({"History.mdb", setBack + "datetime('now','localtime','-1 day') WHERE rowid < 4",
                 "History.mdb: 3 rows of VLAN_HistCtrl are of " + yesterday + twice +
                     "keep one and set the date of all others back by 46 days"});
  ExpectFinding(
      {"History.mdb", setBack + "datetime('now','localtime') WHERE rowid = 7",
       "History.mdb: rows of VLAN_HistCtrl are of " + DaysFromToday(0) + early + freeEarly});
  ExpectFinding(
      {"History.mdb",
       "UPDATE Disk_HistCtrl SET StorageDate = datetime('now','localtime','+2 days')"
       " WHERE rowid < 3",
       "History.mdb: rows of Disk_HistCtrl are of " + DaysFromToday(2) + early + freeEarly});
  const std::string sums =
      "INSERT INTO VLAN_HistSum (TrafficDate, IsTrunk)"
      " VALUES (datetime('now','localtime','-1 day'), 0), (datetime('now','localtime','-1 day'), ";
  ExpectFinding({"History.mdb", sums + "0);",
                 "History.mdb: 2 rows of VLAN_HistSum are of " + yesterday + twice +
                     "keep one of each IsTrunk and delete all others"});
  ExpectFinding({"History.mdb",
                 "INSERT INTO Disk_HistSum (StorageDate) VALUES"
                 " (datetime('now','localtime','-45 days')),"
                 " (date('now','localtime','-45 days') || ' 23:59:59')",
                 "History.mdb: 2 rows of Disk_HistSum are of " + DaysFromToday(-45) + twice +
                     "keep one and delete all others"});
}

TEST_F(QuillondbCheck, TakesDaysThatTheChartsDoNotReachAndOneRowOfEachKindOfPort) {
  CreateForCheck();
  Sql("History.mdb",
      "UPDATE VLAN_HistCtrl SET TrafficDate = datetime('now','localtime','-46 days');"
      "UPDATE Disk_HistCtrl SET StorageDate = datetime('now','localtime','-1 day') WHERE rowid = 1;"
      "INSERT INTO VLAN_HistSum (TrafficDate, IsTrunk)"
      " VALUES (datetime('now','localtime','-1 day'), 0), (datetime('now','localtime','-1 day'), "
      "1)");
  const Outcome check = Run("check {}");
  EXPECT_EQ(check.status, 0) << check.out;
}

TEST_F(QuillondbCheck, FindsRowsOfNoDevice) {
  const std::string advice =
      "; no device is meant by that; the management product has to write a number above 0";
  ExpectFinding({"Reports.mdb", "INSERT INTO VLAN (RecNo) VALUES (0), (0), (7)",
                 "Reports.mdb: RecNo in VLAN is 0 in 2 rows" + advice});
  ExpectFinding({"Reports.mdb", "INSERT INTO HostDiskInfo (FreeRawM, UsedRawM) VALUES (5, 5)",
                 "Reports.mdb: RecNo in HostDiskInfo is null" + advice});
}

TEST_F(QuillondbCheck, FindsMissingIndexes) {
  ExpectFinding({"Reports.mdb", "DROP INDEX VLAN_Port",
                 "Reports.mdb: VLAN has no index on (IfIndex, RecNo), so pages are slow; run"
                 " 'CREATE INDEX VLAN_IfIndex_RecNo ON VLAN (IfIndex, RecNo)' in it"});
  ExpectFinding({"History.mdb", "DROP INDEX Disk_Day07_Device",
                 "History.mdb: Disk_HistCtrl: Disk_Day07 has no index on (RecNo), so pages are"
                 " slow; run 'CREATE INDEX Disk_Day07_RecNo ON Disk_Day07 (RecNo)' in it"});
}

TEST_F(QuillondbCheck, TakesAnIndexUnderAnyNameAndADayTableToo) {
  CreateForCheck();
  Sql("Reports.mdb", "DROP INDEX MAC_Port; CREATE INDEX Mine ON MAC (IfIndex, RecNo)");
  Sql("History.mdb",
      "ALTER TABLE VLAN_Day07 RENAME TO Seventh;"
      "UPDATE VLAN_HistCtrl SET HistTable = 'Seventh' WHERE HistTable = 'VLAN_Day07'");
  EXPECT_EQ(Run("check {}").out, "ok\n");
}

TEST_F(QuillondbCheck, FindsAnotherJournalMode) {
  ExpectFinding({"Reports.mdb", "PRAGMA journal_mode = DELETE",
                 "Reports.mdb: the journal mode is delete instead of wal, so programs lock each"
                 " other out; run 'PRAGMA journal_mode=WAL' in it"});
}

TEST_F(QuillondbCheck, TakesEverySettingWithinItsLimits) {
  CreateForCheck();
  const char* const kChanges[] = {
      "UPDATE Settings_General SET DatumFormat = 'DD/MM/YYYY'",
      // Switched off, so that no check tries ports that may not be free.
      "UPDATE Settings_WebServer SET Enabled = FALSE", "UPDATE Settings_WebServer SET TcpPort = 1",
      "UPDATE Settings_WebServer SET TcpPort = 65535",
      "UPDATE Settings_WebServer SET CharSet = 'UTF-8'",
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100)"
      " INSERT INTO Settings_RepReceiver SELECT i, 'a@b', 1, '', 'None', 'None', 'None', 'None',"
      " 'None', FALSE, 0, 0, FALSE, FALSE, FALSE FROM n"};
  for (const char* change : kChanges) {
    Sql("Quillon.mdb", change);
    EXPECT_EQ(Run("check {}").out, "ok\n") << change;
  }
}

TEST_F(QuillondbCheck, FindsMorvaneIniWhereTheServiceDoes) {
  CreateForCheck();
  fs::create_directories(home_ / "nms/data");
  fs::rename(home_ / "Morvane.ini", home_ / "nms/data/Morvane.ini");
  const std::string elsewhere = (home_ / "nms/data").string();
  for (const std::string& folder : {elsewhere, elsewhere + "/", std::string("nms/data"),
                                    std::string("nms\\data"), std::string(".\\nms\\data\\")}) {
    Sql("Quillon.mdb", "UPDATE Settings_General SET SnmpcDir = '" + folder + "'");
    EXPECT_EQ(Run("check {}").out, "ok\n") << folder;
  }
  Sql("Quillon.mdb", "UPDATE Settings_General SET SnmpcDir = 'nms'");
  EXPECT_EQ(Run("check {}").out,
            (home_ / "nms/Morvane.ini").string() + " is missing" + kWithoutIni + "\n");
}

TEST_F(QuillondbCheck, FindsAFileThatIsNoDatabase) {
  CreateForCheck();
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
  CreateForCheck();
  fs::permissions(home_ / "Quillon.mdb", fs::perms::group_read, fs::perm_options::add);
  EXPECT_EQ(Run("check {}").out,
            fmt::format("Quillon.mdb: other users can reach the file; run 'chmod 600 {}'\n",
                        (home_ / "Quillon.mdb").string()));
}

TEST_F(QuillondbCheck, FindsAViewInThePlaceOfATable) {
  ExpectFinding({"Reports.mdb",
                 "DROP TABLE MAC; CREATE VIEW MAC AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL"
                 " SELECT i + 1 FROM n) SELECT i AS RecNo FROM n",
                 "Reports.mdb: MAC is a view instead of a table" + kRestored});
  ExpectFinding({"Quillon.mdb",
                 "DROP TABLE Settings_WebServer; CREATE VIEW Settings_WebServer AS"
                 " WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT FALSE AS"
                 " Enabled, '' AS IpAddr, 80 AS TcpPort, '' AS Status, '' AS CharSet FROM n",
                 "Quillon.mdb: Settings_WebServer is a view instead of a table" + kRestored});
  ExpectFinding(
      {"History.mdb", "DROP TABLE Disk_Day07; CREATE VIEW Disk_Day07 AS SELECT * FROM Disk_Day08",
       "History.mdb: Disk_HistCtrl: Disk_Day07 is a view instead of a table" + kRestored});
}

TEST_F(QuillondbCheck, FindsATrigger) {
  ExpectFinding({"Reports.mdb",
                 "CREATE TRIGGER Guard AFTER INSERT ON VLAN BEGIN DELETE FROM VLAN; END",
                 "Reports.mdb: the trigger Guard meddles with what is written into VLAN; run"
                 " 'DROP TRIGGER \"Guard\"' in it"});
}

TEST_F(QuillondbCheck, FindsRowsOfAReportThatTheImportCannotUse) {
  const std::string day =
      "; the row counts on no day; the management product has to write 'YYYY-MM-DD HH:MM:SS'";
  ExpectFinding({"Reports.mdb",
                 "INSERT INTO VLAN (RecNo, InOctetsDate) VALUES (1, '1.5.2026'), (1, '2026-05-01')",
                 "Reports.mdb: InOctetsDate in VLAN is '1.5.2026'" + day});
  ExpectFinding({"Reports.mdb",
                 "INSERT INTO HostDiskInfo (RecNo, FreeRawM, UsedRawM, LastUpdate)"
                 " VALUES (1, 5, 5, 'now')",
                 "Reports.mdb: LastUpdate in HostDiskInfo is 'now'" + day});
  ExpectFinding({"Reports.mdb", "INSERT INTO HostDiskInfo (RecNo, UsedRawM) VALUES (1, 5), (1, 5)",
                 "Reports.mdb: FreeRawM in HostDiskInfo is null in 2 rows; storages behind that row"
                 " are missing in the history; the management product has to write a number"});
}

TEST_F(QuillondbCheck, TellsFiveOfTheFindingsOfARule) {
  CreateForCheck();
  Sql("Reports.mdb",
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 300)"
      " INSERT INTO VLAN (RecNo, LastUpdate) SELECT 0, i FROM n");
  const std::string lines = Run("check {}").out;
  EXPECT_EQ(std::ranges::count(lines, '\n'), 1 + 5 + 1) << lines;
  EXPECT_TRUE(lines.ends_with("\nReports.mdb: and 295 more of this kind\n")) << lines;
}

TEST_F(QuillondbCheck, TellsAllFindingsAtOnce) {
  CreateForCheck();
  Sql("Reports.mdb", "DROP TABLE MAC; DROP TABLE VLAN");
  fs::remove(home_ / "Debug");
  EXPECT_EQ(Run("check {}").out,
            fmt::format("Debug: the folder is missing; run 'install -d -o {} {}'\n", Owner(),
                        (home_ / "Debug").string()) +
                "Reports.mdb: the table VLAN is missing" + kRestored +
                "\nReports.mdb: the table MAC is missing" + kRestored + "\n");
}

}  // namespace
}  // namespace quillon
