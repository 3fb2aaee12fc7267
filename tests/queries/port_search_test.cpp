// The search of ports by names: where and how the patterns are looked for, which ports come, with
// which names. Metric texts and users are in port_search_metrics_test, failures in
// search_failure_test, the dump in search_dump_test.
#include <algorithm>

#include "queries/search_fixture.h"

namespace quillon {
namespace {

using PortSearchTest = SearchTest;

TEST_F(PortSearchTest, HeadAndReportAreTheWordsOfTheSearch) {
  for (const std::string column : {"IfDescr", "IfAlias"}) {
    FillRecord();
    SearchPorts("*", "*", column);
    EXPECT_EQ(Record().TableHead, "W47") << column;
    EXPECT_EQ(Record().TableReport, "W4") << column;
  }
  ExpectNoEvent();
}

TEST_F(PortSearchTest, EmptyPatternsBecomeStarsInTheCallersTexts) {
  struct Case {
    Lines submitted;
    Lines shown;
  };
  const Case cases[] = {
      {{"", ""}, {"*", "*"}},
      {{"", "Gi*"}, {"*", "Gi*"}},
      {{"Co*", ""}, {"Co*", "*"}},
      {{"*", "*"}, {"*", "*"}},
      {{"C%", "_i%"}, {"C%", "_i%"}},
      {{" ", " "}, {" ", " "}},
      {{"Z\xFCrich*", "\xE9*"}, {"Z\xFCrich*", "\xE9*"}},
  };
  for (const Case& row : cases) {
    EXPECT_EQ(SearchPorts(row.submitted[0], row.submitted[1]), row.shown);
  }
  ExpectNoEvent();
}

TEST_F(PortSearchTest, TwoEmptyPatternsFindTheFirstTenOfAllPorts) {
  AddPorts(12);
  EXPECT_EQ(PortsOf("", ""), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  EXPECT_EQ(Record().TableCriteria, "10 (12)");
  ExpectNoEvent();
}

TEST_F(PortSearchTest, PatternOfDigitsStarsAndADotIsLookedForInTheAddresses) {
  struct Case {
    std::string pattern;
    std::string match;  // a text that the pattern stands for
    bool isAddress;
  };
  const Case cases[] = {
      {"10.0.0.7", "10.0.0.7", true},
      {"10.*", "10.0.0.7", true},
      {"*.7", "10.0.0.7", true},
      {"10.0.*", "10.0.0.7", true},
      {"10.0.*.7", "10.0.99.7", true},
      {"1*.0.0.7", "192.0.0.7", true},
      {"*.*", "10.0.0.7", true},
      {".*", ".7", true},
      {".", ".", true},
      {"...", "...", true},
      {"10.", "10.", true},
      {"1.1.1.1.1", "1.1.1.1.1", true},
      {"10", "10", false},
      {"1*0", "1x0", false},
      {"10*", "10.0.0.7", false},
      {"core", "core", false},
      {"10.0.0.a", "10.0.0.a", false},
      {"a10.0.*", "a10.0.0.7", false},
      {"10.0.*a", "10.0.0.7a", false},
      {"10.x.*", "10.x.0.7", false},
      {"core.example", "core.example", false},
      {"10.0.0.7 ", "10.0.0.7 ", false},
      {" 10.0.0.7", " 10.0.0.7", false},
      {"10.0.0.7/24", "10.0.0.7/24", false},
      {"10.0.0.7:80", "10.0.0.7:80", false},
      {"-1.5", "-1.5", false},
      {"10,0", "10,0", false},
      {"1.5e3", "1.5e3", false},
      {"10.0.0.%", "10.0.0.7", false},
      {"10.0.0._", "10.0.0.7", false},
      {"10.0.0.[1-7]", "10.0.0.5", false},
      {"10.0.0.?", "10.0.0.?", false},
  };
  for (const Case& row : cases) {
    const std::string match = "'" + row.match + "'";
    Sql("DELETE FROM VLAN");
    AddPort({{"RecNo", "1"}, {"DevName", match}, {"IpAddr", "'none'"}});
    AddPort({{"RecNo", "2"}, {"DevName", "'none'"}, {"IpAddr", match}});
    EXPECT_EQ(PortsOf(row.pattern), std::vector<int>{row.isAddress ? 2 : 1}) << row.pattern;
    EXPECT_EQ(Record().TableCriteria, "1 (1)") << row.pattern;
  }
  ExpectNoEvent();
}

TEST_F(PortSearchTest, LetterBeyondAsciiMakesAPatternAName) {
  AddPort({{"RecNo", "1"}, {"DevName", "'10.0.é'"}});
  AddPort({{"RecNo", "2"}, {"IpAddr", "'10.0.é'"}});
  EXPECT_EQ(PortsOf("10.0.\xE9"), std::vector<int>{1});
}

TEST_F(PortSearchTest, StarsAloneAreLookedForInTheNames) {
  AddPort({{"RecNo", "1"}});
  AddPort({{"RecNo", "2"}, {"DevName", "NULL"}});
  for (const std::string pattern : {"*", "**", "***", ""}) {
    EXPECT_EQ(PortsOf(pattern), std::vector<int>{1}) << pattern;
    EXPECT_EQ(Record().TableCriteria, "1 (1)") << pattern;
  }
  ExpectNoEvent();
}

// The same patterns in each of the places where a text of the user is looked for.
TEST_F(PortSearchTest, PatternsMatchByTheRulesOfTheSelects) {
  struct Case {
    std::string pattern;
    std::vector<int> found;
  };
  const Case cases[] = {
      {"core", {1}},
      {"CORE", {1}},
      {"core*", {1, 2}},
      {"*core*", {1, 2}},
      {"*o*", {1, 2, 3}},
      {"c%", {1, 2}},
      {"%-%", {2}},
      {"c_re", {1}},
      {"[cz]*", {1, 2, 5}},
      {"[a-c]*", {1, 2, 7}},
      {"[!cz]*", {3, 4, 6, 7, 8, 10}},
      {"50%", {6}},
      {"50[%]", {6}},
      {"50[*]", {6}},  // the star is a percent sign there too
      {"a_b", {7}},
      {"a[_]b", {7}},
      {"sw[[]1]", {8}},
      {"sw[1]", {}},
      {"[]", {9}},
      {"______", {2, 5, 10}},
      {" *", {4}},
      {"* ", {4}},
      {"*\"*", {3}},
      {"O''Neil''s*", {3}},  // two quotes are one in a select
      {"*<b>&*", {4}},
      {"z\xDCRICH", {5}},
      {"Z_rich", {5}},
      {"Z__rich", {}},
      {"c?re", {}},
      {"c#re", {}},
      {"Core ", {}},
      {" Core", {}},
      {"core\\", {}},
      {"cor", {}},
      {"ore", {}},
  };
  const std::string names[] = {
      "Core", "core-2", "O''Neil''s \"rack\"", " <b>&amp; ", "Zürich", "50%", "a_b", "sw[1]",
      "",     "Москва"};
  struct Place {
    std::string column;      // what holds the names
    std::string portColumn;  // of the search
  };
  const Place places[] = {{"DevName", "IfDescr"}, {"IfDescr", "IfDescr"}, {"IfAlias", "IfAlias"}};
  for (const Place& place : places) {
    Sql("DELETE FROM VLAN");
    int recNo = 0;
    for (const std::string& name : names) {
      AddPort({{"RecNo", std::to_string(++recNo)}, {place.column, "'" + name + "'"}});
    }
    for (const Case& row : cases) {
      const bool ofDevice = place.column == "DevName";
      EXPECT_EQ(
          PortsOf(ofDevice ? row.pattern : "*", ofDevice ? "*" : row.pattern, place.portColumn),
          row.found)
          << place.column << " " << row.pattern;
    }
  }
  ExpectNoEvent();
}

TEST_F(PortSearchTest, BothPatternsHaveToMatch) {
  AddPort({{"RecNo", "1"}, {"DevName", "'Core'"}, {"IfDescr", "'Gi0/1'"}});
  AddPort({{"RecNo", "2"}, {"DevName", "'Core'"}, {"IfDescr", "'Gi0/2'"}});
  AddPort({{"RecNo", "3"}, {"DevName", "'Edge'"}, {"IfDescr", "'Gi0/2'"}});
  EXPECT_EQ(PortsOf("Core", "Gi0/2"), std::vector<int>{2});
  EXPECT_EQ(PortsOf("Core", "*"), (std::vector<int>{1, 2}));
  EXPECT_EQ(PortsOf("*", "*2"), (std::vector<int>{2, 3}));
  EXPECT_EQ(PortsOf("Edge", "Gi0/1"), std::vector<int>{});
  EXPECT_EQ(Record().TableCriteria, "0 (0)");
}

TEST_F(PortSearchTest, PortPatternIsLookedForInTheColumnAskedFor) {
  AddPort({{"RecNo", "1"}, {"IfDescr", "'Lobby'"}, {"IfAlias", "'Printer'"}});
  AddPort({{"RecNo", "2"}, {"IfDescr", "'Printer'"}, {"IfAlias", "'Lobby'"}});
  EXPECT_EQ(PortsOf("*", "lobby", "IfDescr"), std::vector<int>{1});
  EXPECT_EQ(PortsOf("*", "lobby", "IfAlias"), std::vector<int>{2});
  EXPECT_EQ(PortsOf("10.*", "lobby", "IfAlias"), std::vector<int>{2});
}

TEST_F(PortSearchTest, PortWithoutAnAliasIsNeverFoundByAlias) {
  AddPort({{"RecNo", "1"}, {"IfAlias", "NULL"}});
  AddPort({{"RecNo", "2"}, {"IfAlias", "''"}});
  AddPort({{"RecNo", "3"}});
  EXPECT_EQ(PortsOf("*", "*", "IfAlias"), (std::vector<int>{2, 3}));
  EXPECT_EQ(Record().TableCriteria, "2 (2)");
  EXPECT_EQ(PortsOf("*", "", "IfAlias"), (std::vector<int>{2, 3}));
  EXPECT_EQ(PortsOf("*", "%", "IfAlias"), (std::vector<int>{2, 3}));
  ExpectNoEvent();
}

TEST_F(PortSearchTest, ByteOutsideTheCharsetIsLookedForAsAQuestionMark) {
  house.settings.CharSet = "windows-1251";  // in which the byte 98 is no letter
  AddPort({{"RecNo", "1"}, {"DevName", "'sw?'"}});
  AddPort({{"RecNo", "2"}, {"DevName", "'swЮ'"}});
  EXPECT_EQ(SearchPorts("sw\x98"), (Lines{"sw\x98", "*"}));
  EXPECT_EQ(RecNos(), std::vector<int>{1});
  EXPECT_EQ(PortsOf("SW\xFE"), std::vector<int>{2});
  ExpectNoEvent();
}

TEST_F(PortSearchTest, PatternsOfUtf8AreTakenAsTheyAre) {
  house.settings.CharSet = "UTF-8";
  AddPort({{"RecNo", "1"}, {"DevName", "'Москва €'"}, {"IfDescr", "'日本'"}});
  EXPECT_EQ(SearchPorts("МОСКВА*", "__"), (Lines{"МОСКВА*", "__"}));
  EXPECT_EQ(RecNos(), std::vector<int>{1});
  EXPECT_EQ(Record().rows[1].device, "Москва €");
}

TEST_F(PortSearchTest, NameOutsideTheCharsetIsFoundByWildcardsAlone) {
  AddPort({{"DevName", "'Москва'"}});
  EXPECT_EQ(PortsOf("______"), std::vector<int>{7});
  EXPECT_EQ(Record().rows[1].device, "??????");
  EXPECT_EQ(PortsOf("??????"), std::vector<int>{});
  ExpectNoEvent();
}

TEST_F(PortSearchTest, VeryLongNamesAreFoundByVeryLongPatterns) {
  constexpr std::size_t kLongest = 60'000;  // what a request may hold
  const std::string name(1'500, 'a');
  AddPort({{"DevName", "'" + name + "'"}});
  EXPECT_EQ(PortsOf(name), std::vector<int>{7});
  EXPECT_EQ(PortsOf(name.substr(1) + "*"), std::vector<int>{7});
  EXPECT_EQ(PortsOf(name + "a*"), std::vector<int>{});
  EXPECT_EQ(PortsOf(std::string(kLongest, '*')), std::vector<int>{7});
  EXPECT_EQ(PortsOf(std::string(kLongest, 'a')), std::vector<int>{});
  ExpectNoEvent();
}

TEST_F(PortSearchTest, PortsComeInStoredOrder) {
  for (const char* recNo : {"5", "2", "9", "1", "7"}) AddPort({{"RecNo", recNo}});
  Sql("UPDATE VLAN SET InHCOctetsMb24H = RecNo * 100, DevName = 'sw' || RecNo");
  EXPECT_EQ(PortsOf("sw*"), (std::vector<int>{5, 2, 9, 1, 7}));
}

TEST_F(PortSearchTest, PortsOfADeviceComeInStoredOrder) {
  for (const char* ifIndex : {"5", "2", "9", "1"}) AddPort({{"IfIndex", ifIndex}});
  SearchPorts("Core");
  std::vector<int> ifIndexes;
  for (int n = 1; n <= 4; ++n) ifIndexes.push_back(Record().rows[n].ifIndex);
  EXPECT_EQ(ifIndexes, (std::vector<int>{5, 2, 9, 1}));
}

TEST_F(PortSearchTest, CriteriaTellsRowsAndAllPorts) {
  struct Case {
    int ports;
    std::string criteria;
  };
  const Case cases[] = {{0, "0 (0)"},    {1, "1 (1)"},    {3, "3 (3)"},     {9, "9 (9)"},
                        {10, "10 (10)"}, {11, "10 (11)"}, {214, "10 (214)"}};
  for (const Case& row : cases) {
    Sql("DELETE FROM VLAN");
    AddPorts(row.ports);
    AddPort({{"DevName", "'not asked for'"}});
    SearchPorts("Core");
    EXPECT_EQ(Record().TableCriteria, row.criteria) << row.ports << " ports";
    EXPECT_EQ(RecNos().size(), static_cast<std::size_t>(std::min(row.ports, 10))) << row.ports;
  }
  ExpectNoEvent();
}

// A text that groups the ports makes a count of each device's own: the list has more rows than the
// first count says.
TEST_F(PortSearchTest, CriteriaNeverShowsMoreRowsThanItCounted) {
  AddPort({{"RecNo", "1"}});
  for (const char* ifIndex : {"1", "2"}) AddPort({{"RecNo", "2"}, {"IfIndex", ifIndex}});
  AddPort({{"RecNo", "3"}});
  SearchPorts("Core", "*' GROUP BY RecNo --");
  EXPECT_EQ(Record().TableCriteria, "1 (1)");
  EXPECT_EQ(RecNos(), (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(Record().rows[3].userLastSeen, "-");
  ExpectNoEvent();
}

TEST_F(PortSearchTest, PlainFieldsStandAsTheyAreStored) {
  AddPort({{"IfIndex", "10101"}});
  SearchPorts();
  const SwitchTableRow& row = Record().rows[1];
  EXPECT_EQ(row.recNo, 7);
  EXPECT_EQ(row.ifIndex, 10101);
  EXPECT_EQ((Lines{row.device, row.ipAddr, row.vlanID, row.ifDescr, row.ifSpeed, row.ifAlias,
                   row.ifAdmin, row.ifOper}),
            (Lines{"Core", "10.0.0.7", "12", "Gi0/1", "1000000000", "Uplink", "up", "down"}));
}

TEST_F(PortSearchTest, VlanOfMinusOneIsADash) {
  struct Case {
    std::string stored;
    std::string text;
  };
  const Case cases[] = {{"-1", "-"}, {"0", "0"}, {"1", "1"}, {"-2", "-2"}, {"'guests'", "guests"}};
  for (const Case& row : cases) {
    Sql("DELETE FROM VLAN");
    AddPort({{"VlanID", row.stored}});
    SearchPorts();
    EXPECT_EQ(Record().rows[1].vlanID, row.text) << row.stored;
  }
}

TEST_F(PortSearchTest, AccessAndTrunkPortsAreNotToldApart) {
  AddPort({{"RecNo", "1"}});
  AddPort({{"RecNo", "2"}, {"IsTrunk", "TRUE"}});
  AddPort({{"RecNo", "3"}, {"IsTrunk", "NULL"}});
  EXPECT_EQ(PortsOf("*"), (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(Record().TableCriteria, "3 (3)");
  ExpectNoEvent();
}

TEST_F(PortSearchTest, EveryTextFieldIsConverted) {
  AddPort({{"DevName", "'ü1'"},
           {"IpAddr", "'ü2'"},
           {"VlanID", "'ü3'"},
           {"IfDescr", "'ü4'"},
           {"IfSpeed", "'ü5'"},
           {"IfAlias", "'ü6'"},
           {"IfAdmin", "'ü7'"},
           {"IfOper", "'ü8'"}});
  AddAddress(7, 1, "'ü9', 'ü0', '2024-05-01 10:00:00'");
  SearchPorts();
  const SwitchTableRow& row = Record().rows[1];
  EXPECT_EQ((Lines{row.device, row.ipAddr, row.vlanID, row.ifDescr, row.ifSpeed, row.ifAlias,
                   row.ifAdmin, row.ifOper, row.userMacAddr, row.userIpAddr}),
            (Lines{"\xFC\x31", "\xFC\x32", "\xFC\x33", "\xFC\x34", "\xFC\x35", "\xFC\x36",
                   "\xFC\x37", "\xFC\x38", "\xFC\x39", "\xFC\x30"}));
}

TEST_F(PortSearchTest, RowsThatAreNotFoundKeepTheirTexts) {
  FillRecord();
  AddPort();
  EXPECT_EQ(PortsOf("*"), std::vector<int>{7});
  EXPECT_EQ(Record().rows[2].device, kBefore);
  EXPECT_EQ(User(Record().rows[2]), (Lines{kBefore, kBefore, kBefore}));
}

TEST_F(PortSearchTest, OnlyTheSlotAskedForIsWritten) {
  AddPort();
  for (const int slot : {1, 15, 20}) {
    SearchPorts("*", "*", "IfDescr", static_cast<ConnectionId>(slot));
    EXPECT_EQ(house.records.SwitchTableRep[slot].rows[1].device, "Core") << slot;
  }
  EXPECT_EQ(house.records.SwitchTableRep[2].TableCriteria, "");
  EXPECT_EQ(house.records.SwitchTableRep[2].rows[1].device, "");
}

TEST_F(PortSearchTest, RunsNoEventInside) {
  AddPorts(20);
  bool ran = false;
  house.loop.Post([&] { ran = true; });
  SearchPorts();
  EXPECT_FALSE(ran);
  EXPECT_EQ(house.clock.slept().count(), 0);
}

}  // namespace
}  // namespace quillon
