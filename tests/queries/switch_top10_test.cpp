// The ten worst switch ports: which ports come, in which order, with which texts and
// addresses. Metric texts are in switch_top10_metrics_test, failures in
// switch_top10_failure_test, the dump in switch_top10_dump_test.
#include <algorithm>

#include "queries/switch_top10_fixture.h"

namespace quillon {
namespace {

TEST_F(SwitchTop10Test, HeadAndReportAreTheWordsOfFieldAndKind) {
  struct Case {
    std::string field;
    std::string head;
  };
  const Case cases[] = {
      {"InHCOctetsMb24H", "W6"},   {"OutHCOctetsMb24H", "W7"}, {"InBroadCastPpm24H", "W8"},
      {"InMultiCastPpm24H", "W9"}, {"InErrorsTot24H", "W10"},  {"OutErrorsTot24H", "W11"},
  };
  for (const Case& row : cases) {
    Query(row.field, false);
    EXPECT_EQ(Record().TableHead, row.head) << row.field;
    EXPECT_EQ(Record().TableReport, "W2") << row.field;
    Query(row.field, true);
    EXPECT_EQ(Record().TableHead, row.head) << row.field;
    EXPECT_EQ(Record().TableReport, "W3") << row.field;
  }
  ExpectNoEvent();
}

TEST_F(SwitchTop10Test, CriteriaTellsShownAndAllPorts) {
  struct Case {
    int ports;
    std::string criteria;
  };
  const Case cases[] = {{0, "0 (0)"},    {1, "1 (1)"},    {3, "3 (3)"},     {9, "9 (9)"},
                        {10, "10 (10)"}, {11, "10 (11)"}, {214, "10 (214)"}};
  for (const Case& row : cases) {
    Sql("DELETE FROM VLAN");
    AddPorts(row.ports);
    Query();
    EXPECT_EQ(Record().TableCriteria, row.criteria) << row.ports << " ports";
    EXPECT_EQ(RecNos().size(), static_cast<std::size_t>(std::min(row.ports, 10))) << row.ports;
  }
  ExpectNoEvent();
}

TEST_F(SwitchTop10Test, RowsComeByTheFieldWithTheLargestFirst) {
  const std::string fields[] = {"InHCOctetsMb24H",   "OutHCOctetsMb24H", "InBroadCastPpm24H",
                                "InMultiCastPpm24H", "InErrorsTot24H",   "OutErrorsTot24H"};
  for (const std::string& field : fields) {
    Sql("DELETE FROM VLAN");
    AddPort({{"RecNo", "1"}, {field, "-1"}});
    AddPort({{"RecNo", "2"}, {field, "900"}});
    AddPort({{"RecNo", "3"}, {field, "1000"}});
    AddPort({{"RecNo", "4"}, {field, "900.5"}});
    Query(field);
    EXPECT_EQ(RecNos(), (std::vector<int>{3, 4, 2, 1})) << field;
  }
}

TEST_F(SwitchTop10Test, TenLargestOfManyAreTaken) {
  AddPorts(30);
  Sql("UPDATE VLAN SET InHCOctetsMb24H = RecNo * 100");
  Query();
  EXPECT_EQ(RecNos(), (std::vector<int>{30, 29, 28, 27, 26, 25, 24, 23, 22, 21}));
}

TEST_F(SwitchTop10Test, EqualValuesKeepTheStoredOrder) {
  for (const char* recNo : {"5", "2", "9", "1", "7", "3"}) {
    AddPort({{"RecNo", recNo}, {"IfIndex", "4"}});
  }
  AddPort({{"RecNo", "8"}, {"InHCOctetsMb24H", "6"}});
  Query();
  EXPECT_EQ(RecNos(), (std::vector<int>{8, 5, 2, 9, 1, 7, 3}));
}

TEST_F(SwitchTop10Test, PortsOfADeviceWithEqualValuesKeepTheStoredOrder) {
  for (const char* ifIndex : {"5", "2", "9", "1"}) AddPort({{"IfIndex", ifIndex}});
  Query();
  std::vector<int> ifIndexes;
  for (int n = 1; n <= 4; ++n) ifIndexes.push_back(Record().rows[n].ifIndex);
  EXPECT_EQ(ifIndexes, (std::vector<int>{5, 2, 9, 1}));
}

TEST_F(SwitchTop10Test, OnlyRowsOfTodayCount) {
  AddPort({{"RecNo", "1"}, {"InOctetsDate", "'2024-05-02 00:00:00'"}});
  AddPort({{"RecNo", "2"}, {"InOctetsDate", "'2024-05-02 23:59:59'"}});
  AddPort({{"RecNo", "3"}, {"InOctetsDate", "'2024-05-01 23:59:59'"}});
  AddPort({{"RecNo", "4"}, {"InOctetsDate", "'2024-05-03 00:00:00'"}});
  AddPort({{"RecNo", "5"}, {"InOctetsDate", "'2023-05-02 03:10:00'"}});
  AddPort({{"RecNo", "6"}, {"InOctetsDate", "NULL"}});
  AddPort({{"RecNo", "7"}, {"LastUpdate", "'2024-04-01 03:10:00'"}});
  Query();
  EXPECT_EQ(RecNos(), (std::vector<int>{1, 2, 7}));
  EXPECT_EQ(Record().TableCriteria, "3 (3)");
  ExpectNoEvent();
}

TEST_F(SwitchTop10Test, OverriddenReportDateIsTheDay) {
  AddPort({{"RecNo", "1"}});
  AddPort({{"RecNo", "2"}, {"InOctetsDate", "'2014-11-07 03:10:00'"}});
  house.settings.RepDateOverride = true;
  house.settings.txtRepDate = "2014-11-07";
  Query();
  EXPECT_EQ(RecNos(), std::vector<int>{2});
}

TEST_F(SwitchTop10Test, AccessAndTrunkPortsAreListedApart) {
  AddPort({{"RecNo", "1"}});
  AddPort({{"RecNo", "2"}, {"IsTrunk", "TRUE"}});
  AddPort({{"RecNo", "3"}, {"IsTrunk", "TRUE"}});
  AddPort({{"RecNo", "4"}, {"IsTrunk", "NULL"}});
  Query("InHCOctetsMb24H", false);
  EXPECT_EQ(RecNos(), std::vector<int>{1});
  EXPECT_EQ(Record().TableCriteria, "1 (1)");
  Query("InHCOctetsMb24H", true);
  EXPECT_EQ(RecNos(), (std::vector<int>{2, 3}));
  EXPECT_EQ(Record().TableCriteria, "2 (2)");
}

TEST_F(SwitchTop10Test, PlainFieldsStandAsTheyAreStored) {
  AddPort({{"IfIndex", "10101"}});
  const SwitchTableRow& row = Query().rows[1];
  EXPECT_EQ(row.recNo, 7);
  EXPECT_EQ(row.device, "Core");
  EXPECT_EQ(row.ipAddr, "10.0.0.7");
  EXPECT_EQ(row.vlanID, "12");
  EXPECT_EQ(row.ifIndex, 10101);
  EXPECT_EQ(row.ifDescr, "Gi0/1");
  EXPECT_EQ(row.ifSpeed, "1000000000");
  EXPECT_EQ(row.ifAlias, "Uplink");
  EXPECT_EQ(row.ifAdmin, "up");
  EXPECT_EQ(row.ifOper, "down");
}

TEST_F(SwitchTop10Test, VlanOfMinusOneIsADash) {
  struct Case {
    std::string stored;
    std::string text;
  };
  const Case cases[] = {{"-1", "-"},      {"0", "0"},   {"1", "1"},
                        {"4094", "4094"}, {"-2", "-2"}, {"'guests'", "guests"}};
  for (const Case& row : cases) {
    Sql("DELETE FROM VLAN");
    AddPort({{"VlanID", row.stored}});
    EXPECT_EQ(Query().rows[1].vlanID, row.text) << row.stored;
  }
}

TEST_F(SwitchTop10Test, AwkwardNamesStandUnchanged) {
  AddPort({{"DevName", "'O''Neil''s \"core\"'"},
           {"IfDescr", "' <b>&amp;%_[x] '"},
           {"IfAlias", "''"},
           {"IfSpeed", "100000000"}});
  const SwitchTableRow& row = Query().rows[1];
  EXPECT_EQ(row.device, "O'Neil's \"core\"");
  EXPECT_EQ(row.ifDescr, " <b>&amp;%_[x] ");
  EXPECT_EQ(row.ifAlias, "");
  EXPECT_EQ(row.ifSpeed, "100000000");
  ExpectNoEvent();
}

TEST_F(SwitchTop10Test, TextsAreBytesOfThePagesCharset) {
  struct Case {
    std::string charSet;
    std::string device;
    std::string alias;
    std::string mac;
  };
  const Case cases[] = {{"ISO-8859-1", "Z\xFCrich", "?????? 5 ?", "\xC4-1"},
                        {"UTF-8", "Zürich", "Москва 5 €", "Ä-1"},
                        {"windows-1251", "Z?rich", "\xCC\xEE\xF1\xEA\xE2\xE0 5 \x88", "?-1"}};
  AddPort({{"DevName", "'Zürich'"}, {"IfAlias", "'Москва 5 €'"}});
  AddAddress(7, 1, "'Ä-1', '10.0.0.1', '2024-05-01 10:00:00'");
  for (const Case& row : cases) {
    house.settings.CharSet = row.charSet;
    const SwitchTableRow& port = Query().rows[1];
    EXPECT_EQ(port.device, row.device) << row.charSet;
    EXPECT_EQ(port.ifAlias, row.alias) << row.charSet;
    EXPECT_EQ(port.userMacAddr, row.mac) << row.charSet;
  }
}

TEST_F(SwitchTop10Test, EveryTextFieldIsConverted) {
  AddPort({{"DevName", "'ü1'"},
           {"IpAddr", "'ü2'"},
           {"IfDescr", "'ü3'"},
           {"IfSpeed", "'ü4'"},
           {"IfAlias", "'ü5'"},
           {"IfAdmin", "'ü6'"},
           {"IfOper", "'ü7'"}});
  AddAddress(7, 1, "'ü8', 'ü9', '2024-05-01 10:00:00'");
  const SwitchTableRow& row = Query().rows[1];
  EXPECT_EQ((Lines{row.device, row.ipAddr, row.ifDescr, row.ifSpeed, row.ifAlias, row.ifAdmin,
                   row.ifOper, row.userMacAddr, row.userIpAddr}),
            (Lines{"\xFC\x31", "\xFC\x32", "\xFC\x33", "\xFC\x34", "\xFC\x35", "\xFC\x36",
                   "\xFC\x37", "\xFC\x38", "\xFC\x39"}));
}

TEST_F(SwitchTop10Test, TextInANumberColumnIsConvertedToo) {
  AddPort({{"VlanID", "'gäste'"}, {"InBroadCastPpm24H", "'zwölf'"}, {"InHCOctetsMb24H", "'groß'"}});
  const SwitchTableRow& row = Query().rows[1];
  EXPECT_EQ(row.vlanID, "g\xE4ste");
  EXPECT_EQ(row.inBroadCastPpm24H, "zw\xF6lf");
  EXPECT_EQ(row.inBroadCastPpm24HF, "zw\xF6lf W39");
  EXPECT_EQ(row.inHCOctetsMb24H, "gro\xDF");
}

TEST_F(SwitchTop10Test, AccessPortShowsTheFirstAddressOnly) {
  AddPort({{"RecNo", "1"}, {"IfIndex", "4"}});
  AddAddress(1, 5, "'02 00 00 00 00 05', '10.0.0.5', '2024-05-01 10:00:00'");
  AddAddress(2, 4, "'02 00 00 00 00 24', '10.0.0.24', '2024-05-01 10:00:00'");
  AddAddress(1, 4, "'02 00 00 00 00 99', '10.0.0.99', '2024-04-01 10:00:00'");
  AddAddress(1, 4, "'02 00 00 00 00 11', '10.0.0.11', '2024-05-02 10:00:00'");
  const SwitchTableRow& row = Query().rows[1];
  EXPECT_EQ(row.userMacAddr, "02 00 00 00 00 99");
  EXPECT_EQ(row.userIpAddr, "10.0.0.99");
  EXPECT_EQ(row.userLastSeen, "2024-04-01");
}

TEST_F(SwitchTop10Test, EachRowHasTheAddressOfItsOwnPort) {
  AddPort({{"RecNo", "1"}, {"IfIndex", "1"}, {"InHCOctetsMb24H", "10"}});
  AddPort({{"RecNo", "1"}, {"IfIndex", "2"}, {"InHCOctetsMb24H", "30"}});
  AddPort({{"RecNo", "2"}, {"IfIndex", "1"}, {"InHCOctetsMb24H", "20"}});
  AddAddress(2, 1, "'mac 2.1', 'ip 2.1', '2024-05-01 10:00:00'");
  AddAddress(1, 2, "'mac 1.2', 'ip 1.2', '2024-05-01 10:00:00'");
  Query();
  EXPECT_EQ(Record().rows[1].userMacAddr, "mac 1.2");
  EXPECT_EQ(Record().rows[2].userMacAddr, "mac 2.1");
  EXPECT_EQ(Record().rows[3].userMacAddr, "");
}

TEST_F(SwitchTop10Test, AccessPortWithoutAnAddressShowsADashAsLastSeen) {
  AddPort();
  SwitchTableRow& row = Record().rows[1];
  row.userMacAddr = row.userIpAddr = row.userLastSeen = "of an earlier report";
  Query();
  EXPECT_EQ(row.userMacAddr, "");
  EXPECT_EQ(row.userIpAddr, "");
  EXPECT_EQ(row.userLastSeen, "-");
}

TEST_F(SwitchTop10Test, TrunkPortShowsDashesWithoutALookUp) {
  AddPort({{"IsTrunk", "TRUE"}});
  AddAddress(7, 1, "'02 00 00 00 00 99', '10.0.0.99', '2024-04-01 10:00:00'");
  Sql("DROP TABLE MAC");
  const SwitchTableRow& row = Query("InHCOctetsMb24H", true).rows[1];
  EXPECT_EQ(row.userMacAddr, "-");
  EXPECT_EQ(row.userIpAddr, "-");
  EXPECT_EQ(row.userLastSeen, "-");
  ExpectNoEvent();
}

TEST_F(SwitchTop10Test, LastSeenFollowsTheDateFormat) {
  struct Case {
    std::string format;
    std::string text;
  };
  const Case cases[] = {
      {"YYYY-MM-DD", "2024-04-01"}, {"MM/DD/YYYY", "04/01/2024"}, {"DD/MM/YYYY", "01/04/2024"}};
  AddPort();
  AddAddress(7, 1, "'mac', 'ip', '2024-04-01 10:00:00'");
  for (const Case& row : cases) {
    house.settings.DatumFormat = row.format;
    EXPECT_EQ(Query().rows[1].userLastSeen, row.text) << row.format;
  }
}

TEST_F(SwitchTop10Test, RowsThatAreNotFoundKeepTheirTexts) {
  AddPort();
  Record().rows[2].device = "of an earlier report";
  Record().rows[2].userMacAddr = "of an earlier report";
  Query();
  EXPECT_EQ(RecNos(), std::vector<int>{7});
  EXPECT_EQ(Record().rows[2].device, "of an earlier report");
  EXPECT_EQ(Record().rows[2].userMacAddr, "of an earlier report");
}

TEST_F(SwitchTop10Test, OnlyTheSlotAskedForIsWritten) {
  AddPort();
  for (const int slot : {1, 15, 20}) {
    Query("InHCOctetsMb24H", false, static_cast<ConnectionId>(slot));
    EXPECT_EQ(house.records.SwitchTableRep[slot].rows[1].device, "Core") << slot;
  }
  EXPECT_EQ(house.records.SwitchTableRep[2].TableCriteria, "");
  EXPECT_EQ(house.records.SwitchTableRep[2].rows[1].device, "");
}

TEST_F(SwitchTop10Test, RunsNoEventInside) {
  AddPorts(20);
  bool ran = false;
  house.loop.Post([&] { ran = true; });
  Query();
  EXPECT_FALSE(ran);
  EXPECT_EQ(house.clock.slept().count(), 0);
}

}  // namespace
}  // namespace quillon
