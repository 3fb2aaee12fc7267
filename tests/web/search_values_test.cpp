// What is submitted in the fields of a search: what it finds, and what the fields of the result
// show of it.
#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>

#include "web/search_site.h"

namespace quillon {
namespace {

class SearchValues : public SearchSite {
 protected:
  // Expects that the post finds these ports or storages, and shows these texts in its fields.
  void Expect(const Search& search, const std::string& body, const Names& shown,
              const std::vector<Hit>& found) {
    const std::string response = Post(*client_, search.name, body);
    EXPECT_EQ(response, Closed(Page(search, 1, shown))) << search.name << ": " << body;
    EXPECT_EQ(Links(response), Links(search, 1, found)) << search.name << ": " << body;
  }
  void ExpectPorts(const Search& search, const std::string& device, const std::string& port,
                   const Names& shown, const std::vector<Hit>& found) {
    Expect(search, "DeviceName=" + device + "\r\nPortName=" + port, shown, found);
  }
  void ExpectAddresses(const std::string& address, const std::string& shown,
                       const std::vector<Hit>& found) {
    Expect(kMacSearch, "MacIpName=" + address, {shown}, found);
  }
  void ExpectStorages(const Names& submitted, const Names& shown, const std::vector<Hit>& found) {
    Expect(kDiskSearch,
           "DeviceName=" + submitted.at(0) + "\r\nDiskName=" + submitted.at(1) +
               "\r\nOrderBy=" + submitted.at(2),
           shown, found);
  }
  // Of the three storages, those in the order in which the most used one is number 0.
  static std::vector<Hit> Storages(std::initializer_list<std::size_t> places) {
    std::vector<Hit> hits;
    for (const std::size_t place : places) hits.push_back(kStoragesUsedMostFirst[place]);
    return hits;
  }

  void RenameDevice(int recNo, const std::string& literal) const {
    const std::string set = " SET DevName = " + literal + " WHERE RecNo = " + std::to_string(recNo);
    Reports("UPDATE VLAN" + set);
    History("UPDATE Disk_Day01" + set);
  }

  static inline const std::vector<Hit> kNone;
  static inline const std::vector<Hit> kSeven = {kPorts[0]};
  static inline const std::vector<Hit> kEight = {kPorts[1]};
  static inline const std::string kOrder = "usedpercent-desc";

 private:
  std::unique_ptr<RawClient> client_ = site.Connect();
};

TEST_F(SearchValues, AnEmptyValueSearchesForAllAndShowsAStar) {
  for (const Search& search : {kNameSearch, kAliasSearch}) {
    ExpectPorts(search, "", "", {"*", "*"}, kPorts);
    ExpectPorts(search, "sw7", "", {"sw7", "*"}, kSeven);
    ExpectPorts(search, "  ", " ", {"*", "*"}, kPorts);
  }
  ExpectAddresses("", "*", kPortsSeenLastFirst);
  ExpectStorages({"", "", kOrder}, {"*", "*", kOrder}, kStoragesUsedMostFirst);
  ExpectStorages({"", "C:", kOrder}, {"*", "C:", kOrder}, Storages({1}));
}

TEST_F(SearchValues, AStarIsShownAsAStar) {
  for (const Search& search : {kNameSearch, kAliasSearch}) {
    ExpectPorts(search, "*", "*", {"*", "*"}, kPorts);
    ExpectPorts(search, "*7", "*", {"*7", "*"}, kSeven);
    ExpectPorts(search, "*.*.*.8", "*", {"*.*.*.8", "*"}, kEight);
  }
  ExpectAddresses("*7", "*7", kSeven);
  ExpectAddresses("10.1.*", "10.1.*", kPortsSeenLastFirst);
  ExpectStorages({"*i*", "*:", kOrder}, {"*i*", "*:", kOrder}, Storages({1}));
}

TEST_F(SearchValues, EachOfThePortSearchesLooksIntoItsOwnColumn) {
  ExpectPorts(kNameSearch, "*", "Gi0/1", {"*", "Gi0/1"}, kPorts);
  ExpectPorts(kNameSearch, "*", "Printer", {"*", "Printer"}, kNone);
  ExpectPorts(kAliasSearch, "*", "Printer", {"*", "Printer"}, kEight);
  ExpectPorts(kAliasSearch, "*", "Gi0/1", {"*", "Gi0/1"}, kNone);
}

TEST_F(SearchValues, APortWithoutAnAliasIsNotFoundByItsAliasNotEvenByAStar) {
  Reports("UPDATE VLAN SET IfAlias = NULL WHERE RecNo = 7");
  ExpectPorts(kAliasSearch, "*", "*", {"*", "*"}, kEight);
}

TEST_F(SearchValues, CaseDoesNotCount) {
  ExpectPorts(kNameSearch, "SW7", "gI0/1", {"SW7", "gI0/1"}, kSeven);
  ExpectPorts(kAliasSearch, "*", "pRINTER", {"*", "pRINTER"}, kEight);
  ExpectStorages({"mAIL", "/VAR/*", kOrder}, {"mAIL", "/VAR/*", kOrder}, Storages({0}));
}

TEST_F(SearchValues, AnAddressIsShownInTheFormThatWasSearched) {
  const struct {
    const char* submitted;
    const char* shown;
    std::vector<Hit> found;
  } kCases[] = {{"02:00:00:00:00:07", "02 00 00 00 00 07", kSeven},
                {"02-00-00-00-00-07", "02 00 00 00 00 07", kSeven},
                {"0200.0000.0007", "02 00 00 00 00 07", kSeven},
                {"02 00 00 00 00 07", "02 00 00 00 00 07", kSeven},
                {"02+00+00+00+00+07", "02 00 00 00 00 07", kSeven},
                {"*0:07", "*0 07", kSeven},
                {"*:07", "*:07", kNone},
                {"10.1.0.7", "10.1.0.7", kSeven}};
  for (const auto& row : kCases) ExpectAddresses(row.submitted, row.shown, row.found);
}

TEST_F(SearchValues, APlusIsABlankOfTheName) {
  RenameDevice(7, "'my switch'");
  RenameDevice(900, "'my server'");
  ExpectPorts(kNameSearch, "my+switch", "*", {"my switch", "*"}, {{kPorts[0].link, "my switch"}});
  ExpectStorages({"my+server", "*", kOrder}, {"my server", "*", kOrder},
                 {{"histdisksearch45-900-C_-", "my server"}});
}

TEST_F(SearchValues, BlanksAtTheEndsOfANameAreReachedByAPlusOnly) {
  RenameDevice(7, "' x '");
  ExpectPorts(kNameSearch, " x ", "*", {"x", "*"}, kNone);
  ExpectPorts(kNameSearch, "+x+", "*", {" x ", "*"}, {{kPorts[0].link, " x "}});
}

TEST_F(SearchValues, AQuoteIsShownAsItCameAndMakesASelectFail) {
  const struct {
    Search search;
    std::string body;
    Names shown;
    std::string procedure;
  } kCases[] = {
      {kNameSearch, "DeviceName=O'Neil\r\nPortName=", {"O'Neil", "*"}, "SqlSearchDevicePort"},
      {kNameSearch, "DeviceName=\r\nPortName='><b>&", {"*", "'><b>&"}, "SqlSearchDevicePort"},
      {kAliasSearch, "DeviceName=*\r\nPortName='\"", {"*", "'\""}, "SqlSearchDevicePort"},
      {kMacSearch, "MacIpName='02:", {"'02 "}, "SqlSearchMacIp"},
      {kMacSearch, "MacIpName=10.'", {"10.'"}, "SqlSearchMacIp"}};
  for (const auto& row : kCases) {
    Expect(row.search, row.search.body, row.search.shown, row.search.found);
    site.ForgetEvents();
    Expect(row.search, row.body, row.shown, kNone);
    EXPECT_EQ(Failures(), Names{"modSelectSql_" + row.procedure}) << row.body;
  }
}

TEST_F(SearchValues, AQuoteFindsDisksSinceNoSelectHoldsIt) {
  RenameDevice(900, "'O''Neil''s \"box\" <b>&'");
  const std::string name = "O'Neil's \"box\" <b>&";
  ExpectStorages({name, "*", kOrder}, {name, "*", kOrder}, {{"histdisksearch45-900-C_-", name}});
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SearchValues, LongAndEmptyNamesAreFoundLikeOthers) {
  const std::string name(1500, 'x');
  RenameDevice(7, "'" + name + "'");
  RenameDevice(8, "''");
  ExpectPorts(kNameSearch, name, "*", {name, "*"}, {{kPorts[0].link, name}});
  ExpectPorts(kNameSearch, "*", "*", {"*", "*"}, {{kPorts[0].link, name}, {kPorts[1].link, ""}});
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SearchValues, LettersAreThoseOfThePagesCharset) {
  const struct {
    std::string charSet;
    std::string pattern;
    std::string device;  // "" where nothing is found
  } kCases[] = {{"ISO-8859-1", "B\xFC*", "B\xFC ?"},
                {"ISO-8859-1", "b\xDC*", "B\xFC ?"},
                {"ISO-8859-1", "B\xC3\xBC*", ""},
                {"ISO-8859-1", "B\xFC ?", ""},
                {"UTF-8", "B\xC3\xBC*", "B\xC3\xBC \xD0\x96"},
                {"UTF-8", "b\xC3\x9C \xD0\xB6", "B\xC3\xBC \xD0\x96"},
                {"UTF-8", "B\xFC*", ""},
                {"UTF-8", "\xC3*", ""},
                {"windows-1251", "B? \xC6", ""},
                {"windows-1251", "B* \xE6", "B? \xC6"}};
  RenameDevice(7, "'B\xC3\xBC \xD0\x96'");
  for (const auto& row : kCases) {
    site.settings.CharSet = row.charSet;
    const std::vector<Hit> hits = {{kPorts[0].link, row.device}};
    ExpectPorts(kNameSearch, row.pattern, "*", {row.pattern, "*"},
                row.device.empty() ? kNone : hits);
  }
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SearchValues, LettersOfDisksAreThoseOfThePagesCharsetToo) {
  RenameDevice(900, "'B\xC3\xBC \xD0\x96'");
  const std::vector<Hit> hits = {{"histdisksearch45-900-C_-", "B\xFC ?"}};
  ExpectStorages({"b\xDC*", "*", kOrder}, {"b\xDC*", "*", kOrder}, hits);
  ExpectStorages({"B\xC3\xBC*", "*", kOrder}, {"B\xC3\xBC*", "*", kOrder}, kNone);
  ExpectStorages({"B\xFC ?", "*", kOrder}, {"B\xFC ?", "*", kOrder}, hits);  // any one character
}

TEST_F(SearchValues, TheOrderOfAResultIsMarkedInItsForm) {
  ExpectStorages({"*", "*", "usedpercent-asc"}, {"*", "*", "usedpercent-asc"}, Storages({2, 1, 0}));
  EXPECT_TRUE(
      Holds(Stored("disk-search-1.htm"), "<option selected='selected' value='usedpercent-asc'>"));
  ExpectStorages({"*", "*", "totalbytes-desc"}, {"*", "*", "totalbytes-desc"},
                 Storages({1, 0, 2}));  // all have the same size
  EXPECT_TRUE(
      Holds(Stored("disk-search-1.htm"), "<option selected='selected' value='totalbytes-desc'>"));
}

TEST_F(SearchValues, AnOrderWithoutADirectionAscendsAndIsNotMarked) {
  ExpectStorages({"*", "*", "usedpercent-"}, {"*", "*", "usedpercent-"}, Storages({2, 1, 0}));
  EXPECT_FALSE(Holds(Stored("disk-search-1.htm"), "<option selected='selected' value='used"));
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SearchValues, AnOrderThatIsNoneLeavesTheTableEmpty) {
  for (const char* order : {"x-asc", "-desc", "usedpercent-x", "usedpercent-desc-x",
                            "usedpercent-desc, DevName", "UsedProc-asc"}) {
    site.ForgetEvents();
    ExpectStorages({"", "", order}, {"*", "*", order}, kNone);
    EXPECT_EQ(Failures(), Names{"modSelectSql_SqlSearchDeviceDisk"}) << order;
  }
}

TEST_F(SearchValues, AnOrderWithoutADashFailsBeforeAnythingIsChanged) {
  for (const char* order : {"", "usedpercent", "usedpercent desc", "usedpercent_desc"}) {
    site.ForgetEvents();
    ExpectStorages({"", "", order}, {"", "", order}, kNone);
    EXPECT_EQ(Failures(), Names{"modSelectSql_SqlSearchDeviceDisk"}) << order;
  }
}

TEST_F(SearchValues, ADayWithoutStoragesIsNotSorted) {
  History("DELETE FROM Disk_Day01");
  ExpectStorages({"", "", "x-asc"}, {"*", "*", "x-asc"}, kNone);
  EXPECT_TRUE(Holds(Stored("disk-search-1.htm"), "<td width='200px'>0 (0)</td>"));
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SearchValues, OnADayThatHasNoTableThePatternsStayAsTheyWereSubmitted) {
  const struct {
    const char* now;
    bool isDayThere;
  } kCases[] = {{"2024-05-01 22:59:59", false}, {"2024-05-01 23:00:00", true},
                {"2024-05-02 22:59:59", true},  {"2024-05-02 23:00:00", false},
                {"2024-05-02 00:00:00", true},  {"2024-05-03 00:00:00", false}};
  for (const auto& row : kCases) {
    site.clock.Set(row.now);
    if (row.isDayThere) {
      ExpectStorages({"", "", kOrder}, {"*", "*", kOrder}, kStoragesUsedMostFirst);
    } else {
      ExpectStorages({"", "", kOrder}, {"", "", kOrder}, kNone);
    }
  }
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SearchValues, APortWhoseFiguresAreOfAnotherDayShowsNone) {
  Reports("UPDATE VLAN SET InOctetsDate = '2024-05-01 03:10:00' WHERE RecNo = 8");
  ExpectPorts(kNameSearch, "sw*", "*", {"sw*", "*"}, kPorts);
  const std::string page = Stored("switch-device-port-name-1.htm");
  EXPECT_TRUE(Holds(page, "<td width='85px'>5 M</td>\r\n    <td width='85px'>4 M</td>"));
  EXPECT_TRUE(Holds(page,
                    "<td width='85px'>0</td>\r\n    <td width='85px'>0</td>\r\n"
                    "    <td width='85px'>  0</td>\r\n    <td width='85px'>  0</td>\r\n"
                    "    <td width='85px'>  0</td>\r\n"
                    "    <td width='85px' style='border-right:0px'>  0</td>\r\n"));
}

}  // namespace
}  // namespace quillon
