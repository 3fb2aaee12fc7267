// The search for the ports on which an address was seen: in which order, how many, and with what.
// The forms of an address are in mac_search_forms_test, failures in search_failure_test, the dump
// in search_dump_test.
#include "queries/search_fixture.h"

namespace quillon {
namespace {

class MacSearchTest : public SearchTest {
 protected:
  // Addresses 1, 2, ... up to that count, of which address n was seen on port 1 of device n, the
  // later ones later: 192.0.2.n at n minutes past noon.
  void AddAddresses(int count) const {
    Sql("INSERT INTO MAC (RecNo, IfIndex, MacAddr, IpAddr, LastSeen)" + NumbersUpTo(count) +
        "SELECT n, 1, printf('02 00 00 00 00 %02X', n), '192.0.2.' || n,"
        " datetime('2024-05-01 12:00:00', '+' || n || ' minutes') FROM Number");
  }

  // Port 1 of each of these devices.
  void AddDevices(const std::vector<int>& recNos) const {
    for (const int recNo : recNos) AddPort({{"RecNo", std::to_string(recNo)}});
  }
};

TEST_F(MacSearchTest, HeadAndReportAreTheWordsOfTheSearch) {
  FillRecord();
  SearchMac();
  EXPECT_EQ(Record().TableHead, "W47");
  EXPECT_EQ(Record().TableReport, "W5");
  ExpectNoEvent();
}

TEST_F(MacSearchTest, NoHitIsNoughtOfNought) {
  AddPort();
  AddMac();
  for (const std::string value : {"ff ff*", "203.0.113.*", "nonsense"}) {
    EXPECT_EQ(PortsWithMac(value), std::vector<int>{}) << value;
    EXPECT_EQ(Record().TableCriteria, "0 (0)") << value;
  }
  ExpectNoEvent();
}

TEST_F(MacSearchTest, PortShowsItsFieldsAndTheUserOfTheEntry) {
  AddPort({{"RecNo", "8"}, {"IfIndex", "10101"}, {"VlanID", "-1"}});
  AddMac({{"RecNo", "8"}, {"IfIndex", "10101"}});
  SearchMac("02 00 00 00 00 01");
  const SwitchTableRow& row = Record().rows[1];
  EXPECT_EQ(row.recNo, 8);
  EXPECT_EQ(row.ifIndex, 10101);
  EXPECT_EQ((Lines{row.device, row.ipAddr, row.vlanID, row.ifDescr, row.ifSpeed, row.ifAlias,
                   row.ifAdmin, row.ifOper}),
            (Lines{"Core", "10.0.0.7", "-", "Gi0/1", "1000000000", "Uplink", "up", "down"}));
  EXPECT_EQ(Metrics(row), kMetricsOfToday);
  EXPECT_EQ(User(row), (Lines{"02 00 00 00 00 01", "192.0.2.1", "2024-05-01"}));
  EXPECT_EQ(Record().TableCriteria, "1 (1)");
  ExpectNoEvent();
}

TEST_F(MacSearchTest, PortOfAnotherDayHasNoughts) {
  for (const std::string day : {"'2024-05-01 23:59:59'", "'2024-05-03 00:00:00'", "NULL", "'soon'",
                                "'2024-05-02 25:00:00'"}) {
    Sql("DELETE FROM VLAN; DELETE FROM MAC");
    FillRecord();
    AddPort({{"InOctetsDate", day}});
    AddMac();
    SearchMac();
    EXPECT_EQ(Metrics(Record().rows[1]), kNoMetrics) << day;
    EXPECT_EQ(Record().rows[1].device, "Core") << day;
    EXPECT_EQ(Record().rows[1].userIpAddr, "192.0.2.1") << day;
  }
  ExpectNoEvent();
}

TEST_F(MacSearchTest, OverriddenReportDateIsTheDay) {
  house.settings.RepDateOverride = true;
  house.settings.txtRepDate = "2014-11-07";
  AddPort({{"RecNo", "1"}});
  AddPort({{"RecNo", "2"}, {"InOctetsDate", "'2014-11-07 03:10:00'"}});
  AddMac({{"RecNo", "1"}, {"LastSeen", "'2024-05-01 10:00:00'"}});
  AddMac({{"RecNo", "2"}, {"LastSeen", "'2024-04-01 10:00:00'"}});
  SearchMac();
  EXPECT_EQ(Metrics(Record().rows[1]), kNoMetrics);
  EXPECT_EQ(Metrics(Record().rows[2]), kMetricsOfToday);
}

TEST_F(MacSearchTest, TrunkPortsAreFoundWithTheirUsersToo) {
  AddPort({{"IsTrunk", "TRUE"}});
  AddMac();
  EXPECT_EQ(PortsWithMac("*"), std::vector<int>{7});
  EXPECT_EQ(Record().rows[1].userMacAddr, "02 00 00 00 00 01");
}

TEST_F(MacSearchTest, AddressesSeenLastComeFirst) {
  AddDevices({1, 2, 3, 4});
  AddMac({{"RecNo", "1"}, {"LastSeen", "'2024-04-30 10:00:00'"}});
  AddMac({{"RecNo", "2"}, {"LastSeen", "'2024-05-02 09:59:59'"}});
  AddMac({{"RecNo", "3"}, {"LastSeen", "'2023-12-31 23:59:59'"}});
  AddMac({{"RecNo", "4"}, {"LastSeen", "'2024-05-02 10:00:00'"}});
  EXPECT_EQ(PortsWithMac("*"), (std::vector<int>{4, 2, 1, 3}));
}

TEST_F(MacSearchTest, AddressesSeenAtOneTimeComeInStoredOrder) {
  AddDevices({1, 2, 3, 4, 5});
  for (const char* recNo : {"3", "1", "5", "2", "4"}) AddMac({{"RecNo", recNo}});
  EXPECT_EQ(PortsWithMac("*"), (std::vector<int>{3, 1, 5, 2, 4}));
}

TEST_F(MacSearchTest, TwoAddressesOnOnePortTakeTwoRows) {
  AddPort();
  AddMac({{"MacAddr", "'02 00 00 00 00 0A'"}, {"IpAddr", "'192.0.2.10'"}});
  AddMac({{"MacAddr", "'02 00 00 00 00 0B'"},
          {"IpAddr", "''"},
          {"LastSeen", "'2024-05-02 09:00:00'"}});
  EXPECT_EQ(PortsWithMac("*"), (std::vector<int>{7, 7}));
  EXPECT_EQ(User(Record().rows[1]), (Lines{"02 00 00 00 00 0B", "", "2024-05-02"}));
  EXPECT_EQ(User(Record().rows[2]), (Lines{"02 00 00 00 00 0A", "192.0.2.10", "2024-05-01"}));
  EXPECT_EQ(Record().rows[2].ifDescr, "Gi0/1");
  EXPECT_EQ(Record().TableCriteria, "2 (2)");
}

TEST_F(MacSearchTest, UserIsThatOfTheEntryAndNotTheFirstOneOfThePort) {
  AddPort();
  AddMac({{"MacAddr", "'02 00 00 00 00 99'"}, {"IpAddr", "'192.0.2.99'"}});
  AddMac({{"MacAddr", "'02 00 00 00 00 01'"}, {"LastSeen", "'2024-04-01 10:00:00'"}});
  EXPECT_EQ(PortsWithMac("192.0.2.1"), std::vector<int>{7});
  EXPECT_EQ(User(Record().rows[1]), (Lines{"02 00 00 00 00 01", "192.0.2.1", "2024-04-01"}));
}

TEST_F(MacSearchTest, PortIsThatOfBothNumbersOfTheEntry) {
  AddPort({{"RecNo", "1"}, {"IfIndex", "2"}, {"IfDescr", "'1.2'"}});
  AddPort({{"RecNo", "2"}, {"IfIndex", "1"}, {"IfDescr", "'2.1'"}});
  AddPort({{"RecNo", "2"}, {"IfIndex", "2"}, {"IfDescr", "'2.2'"}});
  AddPort({{"RecNo", "-7"}, {"IfIndex", "-1"}, {"IfDescr", "'below'"}});
  AddMac({{"RecNo", "2"}, {"IfIndex", "2"}, {"LastSeen", "'2024-05-01 12:00:00'"}});
  AddMac({{"RecNo", "1"}, {"IfIndex", "2"}, {"LastSeen", "'2024-05-01 11:00:00'"}});
  AddMac({{"RecNo", "-7"}, {"IfIndex", "-1"}, {"LastSeen", "'2024-05-01 10:00:00'"}});
  AddMac({{"RecNo", "1"}, {"IfIndex", "1"}, {"LastSeen", "'2024-05-01 09:00:00'"}});
  EXPECT_EQ(PortsWithMac("*"), (std::vector<int>{2, 1, -7}));
  EXPECT_EQ(Record().rows[1].ifDescr, "2.2");
  EXPECT_EQ(Record().rows[2].ifDescr, "1.2");
  EXPECT_EQ(Record().rows[3].ifDescr, "below");
  EXPECT_EQ(Record().TableCriteria, "3 (4)");
}

TEST_F(MacSearchTest, FirstStoredRowOfAPortIsTaken) {
  AddPort({{"IfDescr", "'first'"}});
  AddPort({{"IfDescr", "'second'"}});
  AddMac();
  EXPECT_EQ(PortsWithMac("*"), std::vector<int>{7});
  EXPECT_EQ(Record().rows[1].ifDescr, "first");
}

TEST_F(MacSearchTest, AddressOnAVanishedPortCountsAndTakesNoRow) {
  AddDevices({1, 3});
  AddAddresses(3);
  EXPECT_EQ(PortsWithMac("*"), (std::vector<int>{3, 1}));
  EXPECT_EQ(Record().TableCriteria, "2 (3)");
  ExpectNoEvent();
}

TEST_F(MacSearchTest, EntryWithoutAMacAddressCountsAndTakesNoRow) {
  AddDevices({1, 2, 3});
  AddAddresses(3);
  Sql("UPDATE MAC SET MacAddr = '' WHERE RecNo = 2");
  EXPECT_EQ(PortsWithMac("192.0.2.*"), (std::vector<int>{3, 1}));
  EXPECT_EQ(Record().TableCriteria, "2 (3)");
  EXPECT_EQ(PortsWithMac("*"), (std::vector<int>{3, 1}));
  EXPECT_EQ(Record().TableCriteria, "2 (3)");
  Sql("UPDATE MAC SET MacAddr = ' ' WHERE RecNo = 2");  // a blank is an address
  EXPECT_EQ(PortsWithMac("*"), (std::vector<int>{3, 2, 1}));
  ExpectNoEvent();
}

TEST_F(MacSearchTest, EntryWithoutAnIpAddressTakesARow) {
  AddPort();
  AddMac({{"IpAddr", "''"}});
  EXPECT_EQ(PortsWithMac("*"), std::vector<int>{7});
  EXPECT_EQ(Record().rows[1].userIpAddr, "");
}

TEST_F(MacSearchTest, NullNeverMatches) {
  AddPort();
  AddMac({{"MacAddr", "NULL"}});
  EXPECT_EQ(PortsWithMac("*"), std::vector<int>{});
  EXPECT_EQ(Record().TableCriteria, "0 (0)");
  Sql("DELETE FROM MAC");
  AddMac({{"IpAddr", "NULL"}});
  EXPECT_EQ(PortsWithMac("*.*"), std::vector<int>{});
  EXPECT_EQ(Record().TableCriteria, "0 (0)");
  ExpectNoEvent();
}

TEST_F(MacSearchTest, TenPortsAreShownAtTheMost) {
  for (const int count : {9, 10, 11, 15}) {
    Sql("DELETE FROM VLAN; DELETE FROM MAC");
    AddPorts(count);
    AddAddresses(count);
    std::vector<int> newest;
    for (int n = count; n > 0 && n > count - 10; --n) newest.push_back(n);
    EXPECT_EQ(PortsWithMac("*"), newest) << count;
  }
  EXPECT_EQ(Record().TableCriteria, "10 (15)");
}

TEST_F(MacSearchTest, NoPortIsLookedUpBehindTheTenthRow) {
  AddPorts(11);
  AddAddresses(11);
  Sql("UPDATE VLAN SET DevName = NULL WHERE RecNo = 1");  // which was seen before all others
  EXPECT_EQ(PortsWithMac("*"), (std::vector<int>{11, 10, 9, 8, 7, 6, 5, 4, 3, 2}));
  EXPECT_EQ(Record().TableCriteria, "10 (11)");
  ExpectNoEvent();
}

// Of 150 addresses the newest hundred are 150 down to 51.
TEST_F(MacSearchTest, OnlyTheNewestHundredAddressesAreConsidered) {
  AddDevices({46, 47, 48, 49, 50, 51, 52, 53, 54, 55});
  AddAddresses(150);
  EXPECT_EQ(PortsWithMac("*"), (std::vector<int>{55, 54, 53, 52, 51}));
  EXPECT_EQ(Record().TableCriteria, "5 (150)");
  EXPECT_EQ(Record().rows[5].userMacAddr, "02 00 00 00 00 33");  // 51
  ExpectNoEvent();
}

TEST_F(MacSearchTest, OfAddressesSeenAtOneTimeTheFirstHundredAreConsidered) {
  AddDevices({98, 99, 100, 101, 102});
  AddAddresses(150);
  Sql("UPDATE MAC SET LastSeen = '2024-05-01 10:00:00'");
  EXPECT_EQ(PortsWithMac("*"), (std::vector<int>{98, 99, 100}));
  EXPECT_EQ(Record().TableCriteria, "3 (150)");
}

TEST_F(MacSearchTest, NullBehindTheHundredthEntryIsNotReached) {
  AddDevices({150});
  AddAddresses(150);
  Sql("UPDATE MAC SET IpAddr = NULL WHERE RecNo = 50;"
      "UPDATE MAC SET LastSeen = NULL WHERE RecNo = 1;"
      "UPDATE MAC SET RecNo = NULL WHERE RecNo = 2;");
  EXPECT_EQ(PortsWithMac("*"), std::vector<int>{150});
  EXPECT_EQ(Record().TableCriteria, "1 (150)");
  ExpectNoEvent();
}

// A text that groups the addresses makes a count of each device's own. Here the rows stand in front
// even where they are more.
TEST_F(MacSearchTest, CriteriaMayShowMoreRowsThanItCounted) {
  AddPorts(3);
  AddAddresses(3);
  SearchMac("*' GROUP BY RecNo HAVING '1");
  EXPECT_EQ(RecNos(), (std::vector<int>{3, 2, 1}));
  EXPECT_EQ(Record().TableCriteria, "3 (1)");
  ExpectNoEvent();
}

TEST_F(MacSearchTest, LastSeenFollowsTheDateFormat) {
  struct Case {
    std::string format;
    std::string text;
  };
  const Case cases[] = {
      {"YYYY-MM-DD", "2024-04-03"}, {"MM/DD/YYYY", "04/03/2024"}, {"DD/MM/YYYY", "03/04/2024"}};
  AddPort();
  AddMac({{"LastSeen", "'2024-04-03'"}});
  for (const Case& row : cases) {
    house.settings.DatumFormat = row.format;
    SearchMac();
    EXPECT_EQ(Record().rows[1].userLastSeen, row.text) << row.format;
    EXPECT_EQ(Metrics(Record().rows[1]), kMetricsOfToday) << row.format;
  }
}

TEST_F(MacSearchTest, TextsAreBytesOfThePagesCharset) {
  AddPort({{"DevName", "'Zürich Москва <'"}});
  AddMac({{"MacAddr", "'ä€'"}, {"IpAddr", "'O''Neil \"ü\"'"}});
  SearchMac();
  EXPECT_EQ(Record().rows[1].device, "Z\xFCrich ?????? <");
  EXPECT_EQ(User(Record().rows[1]), (Lines{"\xE4?", "O'Neil \"\xFC\"", "2024-05-01"}));
  EXPECT_EQ(PortsWithMac("\xC4*"), std::vector<int>{7});
  ExpectNoEvent();
}

TEST_F(MacSearchTest, RowsThatAreNotFoundKeepTheirTexts) {
  FillRecord();
  AddPort();
  AddMac();
  EXPECT_EQ(PortsWithMac("*"), std::vector<int>{7});
  EXPECT_EQ(Record().rows[2].device, kBefore);
  EXPECT_EQ(User(Record().rows[2]), (Lines{kBefore, kBefore, kBefore}));
}

TEST_F(MacSearchTest, OnlyTheSlotAskedForIsWritten) {
  AddPort();
  AddMac();
  for (const int slot : {1, 15, 20}) {
    SearchMac("*", static_cast<ConnectionId>(slot));
    EXPECT_EQ(house.records.SwitchTableRep[slot].rows[1].device, "Core") << slot;
  }
  EXPECT_EQ(house.records.SwitchTableRep[2].TableCriteria, "");
  EXPECT_EQ(house.records.SwitchTableRep[2].rows[1].device, "");
}

TEST_F(MacSearchTest, RunsNoEventInside) {
  AddAddresses(150);
  AddPorts(20);
  bool ran = false;
  house.loop.Post([&] { ran = true; });
  SearchMac();
  EXPECT_FALSE(ran);
  EXPECT_EQ(house.clock.slept().count(), 0);
}

}  // namespace
}  // namespace quillon
