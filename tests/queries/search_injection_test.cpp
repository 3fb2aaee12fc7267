// Texts of users stand in the selects as they came. Whatever they hold, a search of switch ports
// only reads, and only Reports.mdb.
#include "queries/search_fixture.h"

namespace quillon {
namespace {

class SearchInjectionTest : public SearchTest {
 protected:
  SearchInjectionTest() {
    AddPort();
    AddMac();
    Sql(InsertStorage());
  }

  // All that a text could change: the tables with their rows, the other files.
  Lines State() const {
    Lines state = house.installation.Select("Reports.mdb",
                                            "SELECT * FROM VLAN; SELECT * FROM MAC;"
                                            "SELECT * FROM HostDiskInfo;"
                                            "SELECT type, name, sql FROM sqlite_master;"
                                            "PRAGMA user_version; PRAGMA journal_mode");
    for (const char* file : {"Quillon.mdb", "History.mdb"}) {
      state.push_back(house.installation.Read(file));
    }
    for (const std::string& name : house.installation.List("")) {
      if (!name.starts_with("Reports.mdb-")) state.push_back(name);  // side files come and go
    }
    return state;
  }

  // Texts that close the quote before them and are refused as a whole.
  static const Lines& Refused() {
    static const Lines texts = {
        "x'; DELETE FROM VLAN; --",
        "x'; DELETE FROM MAC WHERE ''='",
        "x'; DROP TABLE MAC; --",
        "x'; UPDATE VLAN SET DevName='gone'; --",
        "x'; INSERT INTO VLAN (RecNo) VALUES (1); --",
        "x'; CREATE TABLE Other (A); --",
        "x'; CREATE TRIGGER t AFTER INSERT ON VLAN BEGIN DELETE FROM MAC; END; --",
        "x'; ATTACH 'Quillon.mdb' AS other; --",
        "x'; ATTACH 'Other.mdb' AS other; --",
        "x'; PRAGMA user_version=5; --",
        "x'; PRAGMA journal_mode=DELETE; --",
        "x'; VACUUM INTO 'Copy.mdb'; --",
        "x'; BEGIN EXCLUSIVE; --",
        "x'; SELECT 1; --",
        "x' UNION SELECT sql FROM sqlite_master --",
        "x' UNION ALL SELECT name FROM sqlite_schema --",
        "x' UNION SELECT Pass FROM Settings_SmtpServer --",
        "x' UNION SELECT Pass FROM other.Settings_SmtpServer --",
        "x' UNION SELECT name FROM pragma_table_info('VLAN') --",
        "x' UNION SELECT a.name FROM pragma_database_list a --",
        "x' OR (SELECT Count(name) FROM sqlite_master) > 0 --",
        "x' OR load_extension('/lib/evil.so') --",
        "x' OR writefile('Other.mdb', 'x') --",
        "x' OR readfile('/etc/hostname') IS NULL --",
        "x' OR randomblob(100000000) IS NOT NULL --",
        "x' OR zeroblob(1000000000) IS NOT NULL --",
        "x' OR printf('%.100000000d', 1) = '' --",
        "x' OR 1 IN (WITH RECURSIVE n(i) AS (SELECT 0 UNION SELECT i FROM n) SELECT i FROM n) --",
        "x' /* no end",
        "x' OR ",
        "x' OR Colour = '1",
        std::string("a\0b", 3),
        "x' UNION SELECT RecNo, MacAddr, IpAddr, LastSeen, IfIndex FROM MAC --",
    };
    return texts;
  }

  void ExpectEmptyTable(const std::string& procedure, const std::string& text) {
    ExpectFailureOf(procedure, "Reports.mdb", text);
    EXPECT_EQ(RecNos(), std::vector<int>{}) << text;
    EXPECT_EQ(Record().TableCriteria, kBefore) << text;
    EXPECT_EQ(Record().rows[1].device, kBefore) << text;
  }
};

TEST_F(SearchInjectionTest, PatternsOfPortsAreRefusedAndChangeNothing) {
  const Lines before = State();
  for (const std::string& text : Refused()) {
    for (const bool ofDevice : {true, false}) {
      house.ForgetEvents();
      FillRecord();
      EXPECT_EQ(SearchPorts(ofDevice ? text : "*", ofDevice ? "*" : text)[ofDevice ? 0 : 1], text);
      ExpectEmptyTable(kPortSearch, text);
    }
  }
  house.ForgetEvents();
  EXPECT_TRUE(State() == before);
  EXPECT_EQ(PortsOf("*"), std::vector<int>{7});
  ExpectNoEvent();
}

TEST_F(SearchInjectionTest, AddressesAreRefusedAndChangeNothing) {
  const Lines before = State();
  for (const std::string& text : Refused()) {
    // With a dot the text stays as it is, else its dashes become blanks.
    for (const std::string& value : {text, "." + text}) {
      house.ForgetEvents();
      FillRecord();
      SearchMac(value);
      ExpectEmptyTable(kMacSearch, value);
    }
  }
  house.ForgetEvents();
  EXPECT_TRUE(State() == before);
  EXPECT_EQ(PortsWithMac("*"), std::vector<int>{7});
  ExpectNoEvent();
}

// What passes the count and fails in the list leaves the bare total.
TEST_F(SearchInjectionTest, TextThatFailsInTheListAloneLeavesTheTotal) {
  FillRecord();
  SearchPorts("Core", "*' UNION ALL SELECT 99 --");
  ExpectFailureOf(kPortSearch, "Reports.mdb");
  EXPECT_EQ(Record().TableCriteria, "1");
  EXPECT_EQ(RecNos(), std::vector<int>{});
  house.ForgetEvents();
  FillRecord();
  SearchMac("*.*' UNION ALL SELECT 99 --");
  ExpectFailureOf(kMacSearch, "Reports.mdb");
  EXPECT_EQ(Record().TableCriteria, "1");
  EXPECT_EQ(RecNos(), std::vector<int>{});
}

TEST_F(SearchInjectionTest, ConditionOfATextOnlyWidensTheSearch) {
  const Lines before = State();
  AddPort({{"RecNo", "8"}, {"DevName", "'Edge'"}, {"IfDescr", "'Fa1'"}});
  struct Case {
    std::string device;
    std::string port;
    std::vector<int> found;
  };
  const Case cases[] = {
      {"x' OR 'a'='a", "*", {7, 8}},
      {"x", "x' OR 'a'='a", {7, 8}},
      {"Core' --", "nothing", {7}},  // a comment cuts the port pattern off
      {"*", "x' OR RecNo IN (SELECT RecNo FROM MAC) --", {7}},
      {"*", "x' OR EXISTS (SELECT 1 FROM HostDiskInfo) --", {7, 8}},
      {"*", "*';", {}},
  };
  for (const Case& row : cases) {
    house.ForgetEvents();
    EXPECT_EQ(PortsOf(row.device, row.port), row.found) << row.device << ", " << row.port;
    EXPECT_EQ(house.Events().empty(), !row.found.empty()) << row.device << ", " << row.port;
  }
  EXPECT_EQ(PortsWithMac("x' OR 'a'='a"), std::vector<int>{7});
  Sql("DELETE FROM VLAN WHERE RecNo = 8");
  EXPECT_TRUE(State() == before);
}

// Each joins a table of 400 rows with itself until no machine comes to an end.
TEST_F(SearchInjectionTest, JoinWithoutEndIsStopped) {
  Sql("INSERT INTO MAC (RecNo, IfIndex, MacAddr, IpAddr, LastSeen)" + NumbersUpTo(400) +
      "SELECT n, 1, 'mac ' || n, 'ip', '2024-01-01 10:00:00' FROM Number");
  const std::string join =
      "x' OR (SELECT Count(a.RecNo) FROM MAC a, MAC b, MAC c, MAC d, MAC e) < 0 OR 'a'='b";
  const Lines before = State();
  FillRecord();
  SearchPorts("*", join);
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodSelectSql_SqlSearchDevicePort\tReports.mdb: the select took too long"});
  EXPECT_EQ(Record().TableCriteria, kBefore);
  EXPECT_EQ(RecNos(), std::vector<int>{});
  house.ForgetEvents();
  FillRecord();
  SearchMac(join);
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodSelectSql_SqlSearchMacIp\tReports.mdb: the select took too long"});
  EXPECT_EQ(Record().TableCriteria, kBefore);
  EXPECT_EQ(RecNos(), std::vector<int>{});
  house.ForgetEvents();
  EXPECT_TRUE(State() == before);
  EXPECT_EQ(PortsOf("Core"), std::vector<int>{7});
  EXPECT_EQ(PortsWithMac("02 *"), std::vector<int>{7});
  ExpectNoEvent();
}

}  // namespace
}  // namespace quillon
