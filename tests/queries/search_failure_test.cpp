// The ways in which the two searches of switch ports fail, and what their record holds then. Texts
// that try to do harm are in search_injection_test.
#include "queries/search_fixture.h"

namespace quillon {
namespace {

class SearchFailureTest : public SearchTest {
 protected:
  // The tables empty, the record as an earlier report left it, and no event so far.
  void Begin() {
    Sql("DELETE FROM VLAN; DELETE FROM MAC");
    house.ForgetEvents();
    FillRecord();
  }

  // Two ports, of which the second one has the value in the column.
  void AddTwoPorts(const std::string& column, const std::string& value) const {
    AddPort({{"RecNo", "1"}});
    Columns second = {{"RecNo", "2"}};
    second[column] = value;
    AddPort(second);
  }

  // Finds the ports by other columns than this one, which may hold a null.
  void SearchPastColumn(const std::string& column) {
    SearchPorts(column == "DevName" ? "10.*" : "*", "*",
                column == "IfDescr" ? "IfAlias" : "IfDescr");
  }

  // Finds an address seen last on device 1 and one on device 2, each on its port 1.
  void SearchTwoAddresses() {
    AddMac({{"RecNo", "1"}, {"LastSeen", "'2024-05-02 10:00:00'"}});
    AddMac({{"RecNo", "2"}});
    SearchMac();
  }
};

TEST_F(SearchFailureTest, NullInAPortEndsTheFillAtItsField) {
  for (const FilledColumn& broken : ColumnsInOrder()) {
    SCOPED_TRACE(broken.column);
    Begin();
    AddTwoPorts(broken.column, "NULL");
    AddAddress(1, 1, "'mac', 'ip', '2024-05-01 10:00:00'");
    SearchPastColumn(broken.column);
    ExpectFailureOf(kPortSearch, broken.column);
    EXPECT_EQ(Record().TableCriteria, "2");  // not yet how many rows of them
    EXPECT_EQ(RecNos(), (std::vector<int>{1, 2}));
    ExpectFilledUpTo(Record().rows[1], "");
    ExpectFilledUpTo(Record().rows[2], broken.column);
    EXPECT_EQ(User(Record().rows[1]), (Lines{kBefore, kBefore, kBefore}));  // no look-up ran
  }
}

TEST_F(SearchFailureTest, NullInAPortOfAnAddressEndsTheFillAtItsField) {
  for (const FilledColumn& broken : ColumnsInOrder()) {
    SCOPED_TRACE(broken.column);
    Begin();
    AddTwoPorts(broken.column, "NULL");
    SearchTwoAddresses();
    ExpectFailureOf(kMacSearch, broken.column);
    EXPECT_EQ(Record().TableCriteria, "2");
    EXPECT_EQ(RecNos(), (std::vector<int>{1, 2}));
    ExpectFilledUpTo(Record().rows[1], "");
    EXPECT_EQ(User(Record().rows[1]), (Lines{"02 00 00 00 00 01", "192.0.2.1", "2024-05-02"}));
    ExpectFilledUpTo(Record().rows[2], broken.column);
    EXPECT_EQ(User(Record().rows[2]), (Lines{kBefore, kBefore, kBefore}));
  }
}

TEST_F(SearchFailureTest, HeadsAreSetBeforeANullIsMet) {
  Begin();
  AddPort({{"IfSpeed", "NULL"}});
  AddMac();
  SearchPorts();
  EXPECT_EQ((Lines{Record().TableHead, Record().TableReport}), (Lines{"W47", "W4"}));
  SearchMac();
  EXPECT_EQ((Lines{Record().TableHead, Record().TableReport}), (Lines{"W47", "W5"}));
}

TEST_F(SearchFailureTest, NullBehindTheTenthPortIsNotReached) {
  AddPorts(10);
  AddPort({{"DevName", "NULL"}, {"IfIndex", "NULL"}});
  SearchPorts("10.*");
  EXPECT_EQ(Record().TableCriteria, "10 (11)");
  ExpectNoEvent();
}

TEST_F(SearchFailureTest, DeviceOrPortThatIsNoNumberEndsTheFill) {
  struct Case {
    std::string column;
    std::string value;
    std::string criteria;
    std::vector<int> recNos;
  };
  const Case cases[] = {
      {"RecNo", "NULL", "1", {1}},  // a null is not counted
      {"RecNo", "'abc'", "2", {1}},
      {"RecNo", "2147483648", "2", {1}},
      {"IfIndex", "NULL", "2", {1, 2}},
      {"IfIndex", "'abc'", "2", {1, 2}},
      {"IfIndex", "2147483648", "2", {1, 2}},
  };
  for (const Case& row : cases) {
    Begin();
    AddTwoPorts(row.column, row.value);
    SearchPorts();
    ExpectFailureOf(kPortSearch, row.column, row.value);
    EXPECT_EQ(Record().TableCriteria, row.criteria) << row.column << " " << row.value;
    EXPECT_EQ(RecNos(), row.recNos) << row.column << " " << row.value;
  }
}

TEST_F(SearchFailureTest, NullInTheUserOfAPortEndsTheLookUps) {
  struct Case {
    std::string address;
    std::string column;
    Lines user;
  };
  const Case cases[] = {
      {"NULL, 'ip', '2024-05-01 10:00:00'", "MacAddr", {kBefore, kBefore, kBefore}},
      {"'mac', NULL, '2024-05-01 10:00:00'", "IpAddr", {"mac", kBefore, kBefore}},
      {"'mac', 'ip', NULL", "LastSeen", {"mac", "ip", kBefore}},
      {"'mac', 'ip', 'soon'", "LastSeen", {"mac", "ip", kBefore}},
  };
  for (const Case& row : cases) {
    Begin();
    AddPorts(2);
    AddAddress(1, 1, row.address);
    SearchPorts();
    ExpectFailureOf(kPortSearch, row.column);
    EXPECT_EQ(User(Record().rows[1]), row.user) << row.address;
    EXPECT_EQ(User(Record().rows[2]), (Lines{kBefore, kBefore, kBefore})) << row.address;
    EXPECT_EQ(RecNos(), (std::vector<int>{1, 2})) << row.address;
    EXPECT_EQ(Record().TableCriteria, "2 (2)") << row.address;
  }
}

// The list of addresses is read as a whole before the first port is looked up.
TEST_F(SearchFailureTest, BrokenEntryOfTheListLeavesTheTotalAndNoRow) {
  struct Case {
    std::string column;
    std::string value;
  };
  const Case cases[] = {
      {"IpAddr", "NULL"},          {"LastSeen", "NULL"}, {"LastSeen", "''"},
      {"LastSeen", "'0-not-yet'"}, {"RecNo", "NULL"},    {"RecNo", "'abc'"},
      {"RecNo", "2147483648"},     {"IfIndex", "NULL"},  {"IfIndex", "'abc'"},
      {"IfIndex", "-2147483649"},
  };
  for (const Case& row : cases) {
    Begin();
    AddPort({{"RecNo", "1"}});
    AddMac({{"RecNo", "1"}, {"LastSeen", "'2024-05-02 10:00:00'"}});  // the first of the list
    AddMac({{row.column, row.value}});
    SearchMac();
    ExpectFailureOf(kMacSearch, row.column, row.value);
    EXPECT_EQ(Record().TableCriteria, "2") << row.column << " " << row.value;
    EXPECT_EQ(RecNos(), std::vector<int>{}) << row.column << " " << row.value;
    EXPECT_EQ(Record().rows[1].device, kBefore) << row.column << " " << row.value;
    EXPECT_EQ(User(Record().rows[1]), (Lines{kBefore, kBefore, kBefore})) << row.column;
  }
}

TEST_F(SearchFailureTest, NullMacAddressIsNotCountedAndBreaksTheListOfAnIpSearch) {
  Begin();
  AddPort();
  AddMac();
  AddMac({{"MacAddr", "NULL"}});
  EXPECT_EQ(SearchMac("192.*"), "192.*");
  ExpectFailureOf(kMacSearch, "MacAddr");
  EXPECT_EQ(Record().TableCriteria, "1");
  EXPECT_EQ(RecNos(), std::vector<int>{});
}

TEST_F(SearchFailureTest, BrokenEntryBehindTenRowsFailsToo) {
  Begin();
  AddPorts(10);
  for (int recNo = 1; recNo <= 10; ++recNo) AddMac({{"RecNo", std::to_string(recNo)}});
  AddMac({{"IpAddr", "NULL"}, {"LastSeen", "'2020-01-01 10:00:00'"}});
  SearchMac();
  ExpectFailureOf(kMacSearch, "IpAddr");
  EXPECT_EQ(Record().TableCriteria, "11");
  EXPECT_EQ(RecNos(), std::vector<int>{});
}

TEST_F(SearchFailureTest, QuoteInAPatternLeavesAnEmptyTableAndTheCriteria) {
  struct Case {
    std::string device;
    std::string port;
  };
  const Case cases[] = {{"O'Neil", "*"}, {"*", "O'Neil"}, {"'", ""},       {"", "'"},
                        {"10.0.'", "*"}, {"\"'\"", "*"},  {"*", "it''s '"}};
  for (const Case& row : cases) {
    for (const std::string column : {"IfDescr", "IfAlias"}) {
      Begin();
      AddPort();
      const Lines shown = SearchPorts(row.device, row.port, column);
      ExpectFailureOf(kPortSearch, "Reports.mdb", row.device + row.port);
      EXPECT_EQ(shown,
                (Lines{row.device.empty() ? "*" : row.device, row.port.empty() ? "*" : row.port}));
      EXPECT_EQ(RecNos(), std::vector<int>{}) << row.device << row.port;
      EXPECT_EQ((Lines{Record().TableHead, Record().TableReport, Record().TableCriteria}),
                (Lines{"W47", "W4", kBefore}));
    }
  }
}

TEST_F(SearchFailureTest, QuoteInAnAddressLeavesAnEmptyTableAndTheCriteria) {
  for (const std::string value : {"O'Neil", "'", "192.0.2.'", "00'1B", "\"'\""}) {
    Begin();
    AddPort();
    AddMac();
    EXPECT_EQ(SearchMac(value), value);
    ExpectFailureOf(kMacSearch, "Reports.mdb", value);
    EXPECT_EQ(RecNos(), std::vector<int>{}) << value;
    EXPECT_EQ((Lines{Record().TableHead, Record().TableReport, Record().TableCriteria}),
              (Lines{"W47", "W5", kBefore}));
  }
}

TEST_F(SearchFailureTest, AddressWithAQuoteIsShownInItsSearchedForm) {
  EXPECT_EQ(SearchMac("00:1B:2C:3D:4E:5'"), "00 1B 2C 3D 4E 5'");
  ExpectFailureOf(kMacSearch, "Reports.mdb");
}

TEST_F(SearchFailureTest, SlotOutsideOneToTwentyFailsBeforeAPatternIsTouched) {
  AddPort();
  AddMac();
  for (const int number : {0, 21, -1, 32767}) {
    const auto slot = static_cast<ConnectionId>(number);
    std::string device;
    std::string port;
    std::string value;
    house.ForgetEvents();
    SqlSearchDevicePort(house.queries, slot, device, port, "IfDescr");
    ExpectFailureOf(kPortSearch, std::to_string(number));
    EXPECT_EQ((Lines{device, port}), (Lines{"", ""})) << number;
    house.ForgetEvents();
    SqlSearchMacIp(house.queries, slot, value);
    ExpectFailureOf(kMacSearch, std::to_string(number));
    EXPECT_EQ(value, "") << number;
  }
  for (const SwitchTableRecord& record : house.records.SwitchTableRep) {
    EXPECT_EQ(record.TableReport, "");
  }
}

TEST_F(SearchFailureTest, MissingDatabaseLeavesRecordAndPatternsAsTheyWere) {
  house.installation.Remove("Reports.mdb");
  FillRecord();
  EXPECT_EQ(SearchPorts("", ""), (Lines{"", ""}));
  ExpectFailureOf(kPortSearch, "Reports.mdb");
  house.ForgetEvents();
  EXPECT_EQ(SearchMac(""), "");
  EXPECT_EQ(SearchMac("00:11:22"), "00:11:22");
  EXPECT_EQ(house.Events().size(), 2u);
  EXPECT_EQ((Lines{Record().TableHead, Record().TableReport, Record().TableCriteria}),
            (Lines{kBefore, kBefore, kBefore}));
  EXPECT_FALSE(house.installation.Exists("Reports.mdb"));
}

TEST_F(SearchFailureTest, MissingTableOfPorts) {
  AddMac();
  Sql("DROP TABLE VLAN");
  FillRecord();
  SearchPorts();
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodSelectSql_SqlSearchDevicePort\tReports.mdb: no such table: VLAN"});
  EXPECT_EQ(Record().TableCriteria, kBefore);
  house.ForgetEvents();
  SearchMac();
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodSelectSql_SqlSearchMacIp\tReports.mdb: no such table: VLAN"});
  EXPECT_EQ(Record().TableCriteria, "1");
  house.ForgetEvents();
  SearchMac("nobody");
  ExpectNoEvent();  // no entry, no look-up of its port
  EXPECT_EQ(Record().TableCriteria, "0 (0)");
}

TEST_F(SearchFailureTest, MissingTableOfAddresses) {
  AddPort();
  Sql("DROP TABLE MAC");
  FillRecord();
  SearchMac();
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodSelectSql_SqlSearchMacIp\tReports.mdb: no such table: MAC"});
  EXPECT_EQ(Record().TableCriteria, kBefore);
  house.ForgetEvents();
  SearchPorts();
  ExpectFailureOf(kPortSearch, "no such table: MAC");
  EXPECT_EQ(Record().TableCriteria, "1 (1)");
  EXPECT_EQ(Metrics(Record().rows[1]), kMetricsOfToday);
  EXPECT_EQ(User(Record().rows[1]), (Lines{kBefore, kBefore, kBefore}));
}

TEST_F(SearchFailureTest, AnotherSearchMayRunInTheWaitOfTheEvent) {
  AddPort({{"DevName", "NULL"}});
  house.loop.Post([&] {
    Sql("UPDATE VLAN SET DevName = 'Written meanwhile'");
    SearchPorts("*", "*", "IfAlias", 5);
  });
  EXPECT_EQ(SearchPorts("10.*", ""), (Lines{"10.*", "*"}));
  EXPECT_EQ(house.records.SwitchTableRep[5].rows[1].device, "Written meanwhile");
  EXPECT_EQ(house.records.SwitchTableRep[5].TableCriteria, "1 (1)");
  EXPECT_EQ(Record().TableCriteria, "1");
  ExpectFailureOf(kPortSearch, "DevName");
}

}  // namespace
}  // namespace quillon
