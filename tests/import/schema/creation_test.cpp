// The databases of a new installation: every table and column, the seed, the files themselves.
#include "import/schema/creation.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/file_size_limit.h"
#include "support/sql_rows.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

using Row = SqlRow;

// A directory of its own with freshly created databases.
class CreateDatabasesTest : public testing::Test {
 protected:
  CreateDatabasesTest() {
    std::string name = (fs::temp_directory_path() / "quillon-creation-XXXXXX").string();
    directory_ = mkdtemp(name.data());
  }
  ~CreateDatabasesTest() override { fs::remove_all(directory_); }

  void Create() const { CreateDatabases(directory_.string()); }

  fs::path Path(const std::string& name) const { return directory_ / name; }

  std::vector<Row> Select(const std::string& file, const std::string& sql) const {
    return SqlRows(Path(file).string(), sql);
  }

  std::string Value(const std::string& file, const std::string& sql) const {
    const std::vector<Row> rows = Select(file, sql);
    return rows.size() == 1 && rows[0].size() == 1 ? rows[0][0] : "no single value: " + sql;
  }

  // "RecNo INTEGER, IfIndex INTEGER, ..." as the table was declared.
  std::string Columns(const std::string& file, const std::string& table) const {
    std::string text;
    for (const Row& row :
         Select(file, "SELECT name, type FROM pragma_table_info('" + table + "')")) {
      text += (text.empty() ? "" : ", ") + row[0] + " " + row[1];
    }
    return text;
  }

  fs::path directory_;
};

constexpr const char* kVlanDayColumns =
    "RecNo INTEGER, IfIndex INTEGER, InErrorsTot24H NUMERIC, OutErrorsTot24H NUMERIC,"
    " InBroadCastPpm24H NUMERIC, InMultiCastPpm24H NUMERIC, InHCOctetsMb24H NUMERIC,"
    " OutHCOctetsMb24H NUMERIC, IsTrunk BOOLEAN";

constexpr const char* kDiskDayColumns =
    "RecNo INTEGER, DevName TEXT, StorDescr TEXT, Type INTEGER, TotalM SINGLE, UsedM SINGLE,"
    " FreeM SINGLE, UsedProc NUMERIC, Trend14d NUMERIC, Trend30d NUMERIC";

struct ExpectedTable {
  const char* file;
  const char* table;
  const char* columns;
};

constexpr ExpectedTable kTables[] = {
    {"Quillon.mdb", "Settings_General", "DebugMode BOOLEAN, DatumFormat TEXT, SnmpcDir TEXT"},
    {"Quillon.mdb", "Settings_WebServer",
     "IpAddr TEXT, TcpPort INTEGER, Enabled BOOLEAN, Status TEXT, CharSet TEXT"},
    {"Quillon.mdb", "Settings_SnmpAgent",
     "Enabled BOOLEAN, SendAppEvents BOOLEAN, TrapComm TEXT, Status TEXT"},
    {"Quillon.mdb", "Settings_RepReceiver",
     "Name TEXT, Recipient TEXT, TimeSchedule INTEGER, WeekDay TEXT, Top10Rep1 TEXT,"
     " Top10Rep2 TEXT, Top10Rep3 TEXT, Top10Rep4 TEXT, Top10Rep5 TEXT, PortRep BOOLEAN,"
     " PortRepRecNo INTEGER, PortRepIfIndex INTEGER, PortRepDetails BOOLEAN,"
     " AttachReport BOOLEAN, IncludeUrl BOOLEAN"},
    {"Quillon.mdb", "Settings_SmtpServer",
     "MailServer TEXT, MailPort INTEGER, FromAddr TEXT, Subject TEXT, Priority TEXT,"
     " CharSet TEXT, TimeOut INTEGER, Retries INTEGER, UseAuth BOOLEAN, AuthMode TEXT,"
     " Account TEXT, Pass TEXT, Encoding INTEGER, BodyEncoding INTEGER, BodyFormat INTEGER"},
    {"Reports.mdb", "VLAN",
     "RecNo INTEGER, DevName TEXT, IpAddr TEXT, VlanID INTEGER, IfIndex INTEGER, IfDescr TEXT,"
     " IfSpeed TEXT, IfAlias TEXT, IfAdmin TEXT, IfOper TEXT, IsTrunk BOOLEAN,"
     " InOctetsDate DATE, LastUpdate DATE, InHCOctetsMb24H NUMERIC, OutHCOctetsMb24H NUMERIC,"
     " InBroadCastPpm24H NUMERIC, InMultiCastPpm24H NUMERIC, InErrorsTot24H NUMERIC,"
     " OutErrorsTot24H NUMERIC"},
    {"Reports.mdb", "MAC",
     "RecNo INTEGER, IfIndex INTEGER, MacAddr TEXT, IpAddr TEXT, LastSeen DATE"},
    {"Reports.mdb", "HostDiskInfo",
     "RecNo INTEGER, DevName TEXT, StorDescr TEXT, FreeRawM NUMERIC, UsedRawM NUMERIC,"
     " UsedProc NUMERIC, UsedProc14Trend NUMERIC, UsedProc30Trend NUMERIC, LastUpdate DATE"},
    {"History.mdb", "General_Info",
     "LastReport DATE, LastImport DATE, ReportStart TEXT, ReportEnd TEXT"},
    {"History.mdb", "VLAN_HistCtrl", "TrafficDate DATE, HistTable TEXT"},
    {"History.mdb", "Disk_HistCtrl", "StorageDate DATE, HistTable TEXT"},
    {"History.mdb", "VLAN_HistSum",
     "TrafficDate DATE, IsTrunk BOOLEAN, InErrorsTot24H INTEGER, OutErrorsTot24H INTEGER,"
     " InBroadCastPpm24H INTEGER, InMultiCastPpm24H INTEGER, InHCOctetsMb24H INTEGER,"
     " OutHCOctetsMb24H INTEGER, Ports INTEGER, PortsInTraffic INTEGER"},
    {"History.mdb", "Disk_HistSum",
     "StorageDate DATE, TotalMWindows SINGLE, UsedMWindows SINGLE, TotalMUnix SINGLE,"
     " UsedMUnix SINGLE, TotalMPhysical SINGLE, UsedMPhysical SINGLE, TotalMVirtual SINGLE,"
     " UsedMVirtual SINGLE, NumWindows INTEGER, NumUnix INTEGER, NumPhysical INTEGER,"
     " NumVirtual INTEGER"},
};

TEST_F(CreateDatabasesTest, MakesEveryTableWithItsColumnsAndTypes) {
  Create();
  for (const ExpectedTable& expected : kTables) {
    EXPECT_EQ(Columns(expected.file, expected.table), expected.columns) << expected.table;
  }
}

TEST_F(CreateDatabasesTest, MakesNoOtherTablesThanThese) {
  Create();
  const std::string count = "SELECT COUNT(*) FROM sqlite_schema WHERE type = 'table'";
  EXPECT_EQ(Value("Quillon.mdb", count), "5");
  EXPECT_EQ(Value("Reports.mdb", count), "3");
  EXPECT_EQ(Value("History.mdb", count), "95");  // five and twice 45 day tables
}

TEST_F(CreateDatabasesTest, ComparesEveryTextWithoutRegardToCase) {
  Create();
  for (const char* file : {"Quillon.mdb", "Reports.mdb", "History.mdb"}) {
    for (const Row& row :
         Select(file, "SELECT name, sql FROM sqlite_schema WHERE sql LIKE '% TEXT%'")) {
      std::string sql = row[1];
      for (std::size_t at = 0; (at = sql.find(" TEXT", at)) != std::string::npos; ++at) {
        EXPECT_EQ(sql.substr(at, 20), " TEXT COLLATE NOCASE") << row[0];
      }
    }
  }
}

TEST_F(CreateDatabasesTest, MakesEachDayTableThatAControlRowNames) {
  Create();
  for (const Row& row : Select("History.mdb", "SELECT HistTable FROM VLAN_HistCtrl")) {
    EXPECT_EQ(Columns("History.mdb", row[0]), kVlanDayColumns) << row[0];
  }
  for (const Row& row : Select("History.mdb", "SELECT HistTable FROM Disk_HistCtrl")) {
    EXPECT_EQ(Columns("History.mdb", row[0]), kDiskDayColumns) << row[0];
  }
}

TEST_F(CreateDatabasesTest, NamesDayTablesInOrder) {
  Create();
  const std::string ends = "SELECT MIN(HistTable) || ' ' || MAX(HistTable) FROM ";
  EXPECT_EQ(Value("History.mdb", ends + "VLAN_HistCtrl"), "VLAN_Day01 VLAN_Day45");
  EXPECT_EQ(Value("History.mdb", ends + "Disk_HistCtrl"), "Disk_Day01 Disk_Day45");
  EXPECT_EQ(Value("History.mdb", "SELECT HistTable FROM Disk_HistCtrl WHERE rowid = 7"),
            "Disk_Day07");
}

TEST_F(CreateDatabasesTest, SeedsControlRowsThatAreAllFree) {
  Create();
  const std::string free =
      "SELECT COUNT(*) || ' ' || COUNT(DISTINCT HistTable) FROM {} "
      "WHERE julianday('now') - julianday({}) > 46";
  const auto select = [&](std::string table, std::string date) {
    std::string sql = free;
    sql.replace(sql.rfind("{}"), 2, date);
    return sql.replace(sql.find("{}"), 2, table);
  };
  EXPECT_EQ(Value("History.mdb", select("VLAN_HistCtrl", "TrafficDate")), "45 45");
  EXPECT_EQ(Value("History.mdb", select("Disk_HistCtrl", "StorageDate")), "45 45");
}

TEST_F(CreateDatabasesTest, SeedsMarksOfThePastWithoutNulls) {
  Create();
  const std::vector<Row> rows = Select("History.mdb", "SELECT * FROM General_Info");
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0], (Row{"2000-01-01 00:00:00", "2000-01-01 00:00:00", "", ""}));
}

TEST_F(CreateDatabasesTest, SeedsNoSumsAndNoStatistics) {
  Create();
  for (const char* table : {"VLAN_HistSum", "Disk_HistSum", "VLAN_Day01", "Disk_Day45"}) {
    EXPECT_EQ(Value("History.mdb", std::string("SELECT COUNT(*) FROM ") + table), "0") << table;
  }
  for (const char* table : {"VLAN", "MAC", "HostDiskInfo"}) {
    EXPECT_EQ(Value("Reports.mdb", std::string("SELECT COUNT(*) FROM ") + table), "0") << table;
  }
}

TEST_F(CreateDatabasesTest, SeedsTheSettingsOfANewInstallation) {
  Create();
  const auto row = [&](const std::string& table) {
    const std::vector<Row> rows = Select("Quillon.mdb", "SELECT * FROM " + table);
    return rows.size() == 1 ? rows[0] : Row{"not one row"};
  };
  EXPECT_EQ(row("Settings_General"), (Row{"0", "YYYY-MM-DD", directory_.string()}));
  EXPECT_EQ(row("Settings_WebServer"), (Row{"0.0.0.0", "8080", "1", "", "ISO-8859-1"}));
  EXPECT_EQ(row("Settings_SnmpAgent"), (Row{"1", "1", "public", ""}));
}

TEST_F(CreateDatabasesTest, SeedsAMailServerWithoutNullsAndNobodyToMail) {
  Create();
  const std::vector<Row> rows = Select("Quillon.mdb", "SELECT * FROM Settings_SmtpServer");
  ASSERT_EQ(rows.size(), 1u);
  for (const std::string& value : rows[0]) EXPECT_NE(value, "NULL");
  EXPECT_EQ(Value("Quillon.mdb", "SELECT COUNT(*) FROM Settings_RepReceiver"), "0");
}

TEST_F(CreateDatabasesTest, IndexesPortsAndDevicesAndNothingElse) {
  Create();
  const std::string columns =
      "SELECT group_concat(c.name, ',') FROM sqlite_schema i, pragma_index_info(i.name) c"
      " WHERE i.type = 'index' AND i.tbl_name = '";
  EXPECT_EQ(Value("Reports.mdb", columns + "VLAN'"), "IfIndex,RecNo,RecNo");
  EXPECT_EQ(Value("Reports.mdb", columns + "MAC'"), "IfIndex,RecNo");
  EXPECT_EQ(Value("Reports.mdb", columns + "HostDiskInfo'"), "NULL");
  EXPECT_EQ(Value("History.mdb", columns + "VLAN_Day17'"), "RecNo,IfIndex");
  EXPECT_EQ(Value("History.mdb", columns + "Disk_Day17'"), "RecNo");
  EXPECT_EQ(Value("History.mdb", columns + "VLAN_HistSum'"), "NULL");
}

TEST_F(CreateDatabasesTest, WritesAheadInALogAndLeavesNoSideFiles) {
  Create();
  EXPECT_EQ(std::distance(fs::directory_iterator(directory_), fs::directory_iterator()), 3);
  for (const char* file : {"Quillon.mdb", "Reports.mdb", "History.mdb"}) {
    EXPECT_EQ(Value(file, "PRAGMA journal_mode"), "wal");
  }
}

TEST_F(CreateDatabasesTest, KeepsFilesAndSideFilesFromOtherUsers) {
  Create();
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(Path("Quillon.mdb").c_str(), &database), SQLITE_OK);
  sqlite3_exec(database, "UPDATE Settings_General SET DebugMode = 1", nullptr, nullptr, nullptr);
  constexpr fs::perms kOwner = fs::perms::owner_read | fs::perms::owner_write;
  for (const char* file :
       {"Quillon.mdb", "Quillon.mdb-wal", "Quillon.mdb-shm", "Reports.mdb", "History.mdb"}) {
    EXPECT_EQ(fs::status(Path(file)).permissions(), kOwner) << file;
  }
  sqlite3_close(database);
}

TEST_F(CreateDatabasesTest, TakesARelativeDirectoryAsAnAbsoluteOne) {
  const fs::path before = fs::current_path();
  fs::current_path(directory_);
  CreateDatabases("./");
  fs::current_path(before);
  EXPECT_EQ(Value("Quillon.mdb", "SELECT SnmpcDir FROM Settings_General"), directory_.string());
}

TEST_F(CreateDatabasesTest, KeepsAnApostropheInTheDirectory) {
  const fs::path odd = directory_ / "operator's";
  fs::create_directory(odd);
  CreateDatabases(odd.string());
  EXPECT_EQ(Value("operator's/Quillon.mdb", "SELECT SnmpcDir FROM Settings_General"), odd.string());
}

// What CreateDatabases complains about; empty where it does not.
std::string Complaint(const fs::path& directory) {
  try {
    CreateDatabases(directory.string());
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

TEST_F(CreateDatabasesTest, RefusesWhereAnyDatabaseExistsAndTouchesNothing) {
  for (const char* existing : {"Quillon.mdb", "Reports.mdb", "History.mdb", "History.mdb-wal"}) {
    std::ofstream(Path(existing)) << "kept";
    const std::string complaint = Complaint(directory_);
    EXPECT_NE(complaint.find(std::string(existing) + " exists already"), std::string::npos)
        << complaint;
    EXPECT_EQ(std::distance(fs::directory_iterator(directory_), fs::directory_iterator()), 1);
    EXPECT_EQ(fs::file_size(Path(existing)), 4u);
    fs::remove(Path(existing));
  }
}

TEST_F(CreateDatabasesTest, RefusesADanglingLinkInTheWay) {
  fs::create_symlink("nowhere", Path("Reports.mdb"));
  EXPECT_NE(Complaint(directory_).find("Reports.mdb exists already"), std::string::npos);
}

TEST_F(CreateDatabasesTest, SaysWhichFileCannotBeWritten) {
  const std::string complaint = Complaint(directory_ / "missing");
  EXPECT_NE(complaint.find("missing/Quillon.mdb"), std::string::npos) << complaint;
}

TEST_F(CreateDatabasesTest, LeavesNothingHalfMadeWhenTheLastFileCannotBeWritten) {
  std::string complaint;
  {
    const FileSizeLimit limit(200000);  // enough for the first two
    complaint = Complaint(directory_);
  }
  EXPECT_EQ(complaint.find("History.mdb: "), 0u) << complaint;
  EXPECT_TRUE(fs::is_empty(directory_));
}

}  // namespace
}  // namespace quillon
