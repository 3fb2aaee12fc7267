// Links that name a device by its number alone: which search they become, and numbers that are
// none.
#include "web/device_shortcut.h"

#include <gtest/gtest.h>

#include <string>

#include "web/search_site.h"

namespace quillon {
namespace {

class DeviceShortcut : public SearchSite {
 protected:
  DeviceShortcut() {
    Reports(InsertStorage({{"RecNo", "900"}, {"DevName", "'Files'"}}) +
            InsertPort({{"RecNo", "50"}, {"IfIndex", "1"}, {"DevName", "'both as switch'"}}) +
            InsertStorage({{"RecNo", "50"}, {"DevName", "'both as server'"}}) +
            InsertPort({{"RecNo", "1000"}, {"IfIndex", "1"}, {"DevName", "'thousand'"}}));
  }

  static std::string Link(const std::string& number) {
    return "GET /DeviceId=" + number + " HTTP/1.1\r\nHost: test\r\n\r\n";
  }
  // The post that a switch, or a server, of this name becomes.
  static std::string SwitchPost(const std::string& name) {
    return "POST /search-device-port-name\r\nDeviceName=" + name + "\r\nPortName=*";
  }
  static std::string ServerPost(const std::string& name) {
    return "POST /search-device-disk\r\nDeviceName=" + name +
           "\r\nDiskName=*\r\nOrderBy=usedpercent-desc";
  }

  // Expects that the request is answered, and its page kept, as the other one is.
  void ExpectSame(const std::string& request, const std::string& other) {
    const auto client = site.Connect();
    const std::string expected = site.Exchange(*client, other);
    EXPECT_TRUE(Holds(expected, "class='tableData'")) << other;
    const Names files = CacheFiles();
    ASSERT_EQ(files.size(), 1u);
    Store(files[0], "");
    EXPECT_EQ(site.Exchange(*client, request), expected) << request;
    EXPECT_EQ(CacheFiles(), files) << request;
    EXPECT_EQ(Closed(Stored(files[0])), expected) << request;
    site.installation.Remove("WebReports/Cache/" + files[0]);
    client->Close();
    site.Settle();
  }
  void ExpectDefault(const std::string& request) {
    EXPECT_EQ(Answer(request), DefaultResponse(site.render)) << request;
  }
};

TEST_F(DeviceShortcut, ASwitchLandsOnTheSearchForItsPorts) {
  const std::string response = site.Exchange(*site.Connect(), Link("7"));
  EXPECT_EQ(response, Closed(Page(kNameSearch, 1, {"sw7", "*"})));
  EXPECT_EQ(Links(response), (Names{"hist45-7-4-switch-device-port-name-1.htm>sw7"}));
  EXPECT_EQ(CacheFiles(), Names{"switch-device-port-name-1.htm"});
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(DeviceShortcut, AServerLandsOnTheSearchForItsDisks) {
  const std::string response = site.Exchange(*site.Connect(), Link("900"));
  EXPECT_EQ(response, Closed(Page(kDiskSearch, 1, {"Files", "*", "usedpercent-desc"})));
  EXPECT_EQ(Links(response), (Names{"histdisksearch45-900-C_-disk-search-1.htm>Files"}));
  EXPECT_EQ(CacheFiles(), Names{"disk-search-1.htm"});
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(DeviceShortcut, ThePageIsThatOfThePost) {
  ExpectSame(Link("7"), SwitchPost("sw7"));
  ExpectSame(Link("7"), PostText(kNameSearch.name, "DeviceName=sw7\r\nPortName=*\r\n"));
  ExpectSame(Link("900"), ServerPost("Files"));
  ExpectSame(Link("900"), PostText(kDiskSearch.name,
                                   "DeviceName=Files\r\nDiskName=*\r\n"
                                   "OrderBy=usedpercent-desc\r\n"));
}

TEST_F(DeviceShortcut, ADeviceThatIsBothIsASwitch) {
  ExpectSame(Link("50"), SwitchPost("both as switch"));
}

TEST_F(DeviceShortcut, ANumberThatNoDeviceBearsLeavesTheRequestAsItWas) {
  for (const char* number : {"12345", "0", "-7", "2147483647", "-2147483648", "1e9"}) {
    ExpectDefault(Link(number));
  }
  site.installation.Write("WebReports/qws.css", "stylesheet");
  EXPECT_EQ(Answer("GET /DeviceId=12345 HTTP/1.1\r\nX: GET /qws.css\r\n\r\n"),
            Response("text/css", "stylesheet"));
  EXPECT_EQ(CacheFiles(), Names{});
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(DeviceShortcut, ATextThatIsNoNumberLeavesTheRequestAsItWas) {
  for (const char* text : {"",    " ",  "x",   "7x",    "x7",       "7 7",   "7,0", "1,000", "0x7",
                           "&H7", "$7", "%37", "7.5.1", "7e",       "e7",    ".",   "-",     "+",
                           "'7'", "7;", "7/",  "7\t",   "7 OR 1=1", "7&a=b", "\xB7"}) {
    ExpectDefault(Link(text));
  }
  site.installation.Write("WebReports/qws.css", "stylesheet");
  EXPECT_EQ(Answer("GET /DeviceId=x HTTP/1.1\r\nX: GET /qws.css\r\n\r\n"),
            Response("text/css", "stylesheet"));
  EXPECT_EQ(CacheFiles(), Names{});
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(DeviceShortcut, EveryFormOfANumberCounts) {
  const struct {
    const char* number;
    const char* device;
  } kCases[] = {{"007", "sw7"},
                {"+7", "sw7"},
                {"7.0", "sw7"},
                {"7.", "sw7"},
                {"0.7e1", "sw7"},
                {".7E+1", "sw7"},
                {"70e-1", "sw7"},
                {"1e3", "thousand"},
                {"1000.4", "thousand"},
                {"   7   ", "sw7"},
                {"00000000000000000007", "sw7"}};
  for (const auto& row : kCases) ExpectSame(Link(row.number), SwitchPost(row.device));
}

TEST_F(DeviceShortcut, AHalfGoesToTheEvenNumber) {
  ExpectSame(Link("7.5"), SwitchPost("sw8"));
  ExpectSame(Link("8.5"), SwitchPost("sw8"));
  ExpectSame(Link("7.4999"), SwitchPost("sw7"));
  ExpectDefault(Link("6.5"));
}

TEST_F(DeviceShortcut, ANumberBeyond32BitsFailsAndNothingIsSent) {
  Names expected;
  for (const char* number :
       {"2147483648", "-2147483649", "2147483647.5", "1e10", "99999999999999"}) {
    EXPECT_EQ(Answer(Link(number)), "") << number;
    expected.emplace_back("frmQuillonWeb_tcpServer_DataIn");
    EXPECT_EQ(Failures(), expected) << number;
  }
  EXPECT_EQ(CacheFiles(), Names{});
}

TEST_F(DeviceShortcut, TheNumberEndsAtTheVersion) {
  ExpectSame("GET /DeviceId=7HTTP/1.1\r\n\r\n", SwitchPost("sw7"));
  ExpectSame("GET /DeviceId=7 HTTP\r\n", SwitchPost("sw7"));
  ExpectSame("GET /DeviceId=7 HTTP/1.1 HTTP\r\n", SwitchPost("sw7"));
  ExpectDefault("GET /DeviceId=7\r\n\r\n");
  ExpectDefault("GET /DeviceId=7 http/1.1\r\n\r\n");
  ExpectDefault("GET /DeviceId=7\r\nX: HTTP/1.1\r\n\r\n");
  ExpectDefault("GET /DeviceId=HTTP/1.1\r\n\r\n");
}

TEST_F(DeviceShortcut, AVersionBeforeTheNumberIsAFailure) {
  Names expected;
  for (const char* line : {"HTTP/1.1 GET /DeviceId=7", "HTTPGET /DeviceId=7 HTTP/1.1"}) {
    EXPECT_EQ(Answer(std::string(line) + "\r\n\r\n"), "") << line;
    expected.emplace_back("frmQuillonWeb_tcpServer_DataIn");
    EXPECT_EQ(Failures(), expected) << line;
  }
}

TEST_F(DeviceShortcut, TheLinkIsLookedForInAllOfTheFirstLineAndInNothingElse) {
  ExpectSame("xGET /DeviceId=7 HTTP/1.1\r\n\r\n", SwitchPost("sw7"));
  ExpectSame("GET /hist45-1-2.htm?GET /DeviceId=7 HTTP/1.1\r\n\r\n", SwitchPost("sw7"));
  ExpectSame("GET /switch-access-port-top10?GET /DeviceId=7 HTTP/1.1\r\n\r\n", SwitchPost("sw7"));
  for (const char* request :
       {"GET / HTTP/1.1\r\nX: GET /DeviceId=7 HTTP/1.1\r\n\r\n", "GET /deviceid=7 HTTP/1.1\r\n\r\n",
        "POST /DeviceId=7 HTTP/1.1\r\n\r\n", "GET  /DeviceId=7 HTTP/1.1\r\n\r\n",
        "GET /any/DeviceId=7 HTTP/1.1\r\n\r\n", "GET /DeviceId HTTP/1.1\r\n\r\n",
        "GET /select?DeviceId=7 HTTP/1.1\r\n\r\n"}) {
    ExpectDefault(request);
  }
}

TEST_F(DeviceShortcut, NothingOfTheLinksOwnHeadIsLeft) {
  ExpectSame(
      "GET /DeviceId=7 HTTP/1.1\r\nX: PortName=none, GET /select?report=search-mac-ip\r\n\r\n",
      SwitchPost("sw7"));
}

TEST_F(DeviceShortcut, TheNumberOfTheConnectionIsThatOfTheResult) {
  const auto first = site.Connect();
  const auto second = site.Connect();
  EXPECT_EQ(Links(site.Exchange(*second, Link("7"))),
            Names{"hist45-7-4-switch-device-port-name-2.htm>sw7"});
  EXPECT_EQ(CacheFiles(), Names{"switch-device-port-name-2.htm"});
}

TEST_F(DeviceShortcut, TheLogShowsTheSearchInPlaceOfTheLink) {
  site.settings.DebugMode = true;
  const struct {
    const char* number;
    std::string post;
    std::string firstLine;
  } kCases[] = {{"7", SwitchPost("sw7"), "POST /search-device-port-name"},
                {"900", ServerPost("Files"), "POST /search-device-disk"}};
  for (const auto& row : kCases) {
    for (const char* log : {"Debug/WebConnection-1.txt", "Debug/WebConnections.txt"}) {
      site.installation.Remove(log);
    }
    const auto client = site.Connect();
    const std::string peer = "127.0.0.1:" + std::to_string(client->localPort());
    site.Exchange(*client, Link(row.number));
    client->Close();
    site.Settle();
    const std::string whole = site.installation.Read("Debug/WebConnection-1.txt");
    EXPECT_TRUE(Holds(whole, " <-- " + peer + "\r\n" + row.post + "\r\n\r\n[1] ")) << whole;
    EXPECT_FALSE(Holds(whole, "DeviceId")) << row.number;
    const std::string brief = site.installation.Read("Debug/WebConnections.txt");
    EXPECT_TRUE(Holds(brief, "[1] httpQuery: " + row.firstLine + "\r\n")) << brief;
  }
}

TEST_F(DeviceShortcut, TheLogShowsALinkThatLeadsNowhereAsItCame) {
  site.settings.DebugMode = true;
  site.Exchange(*site.Connect(), Link("12345"));
  EXPECT_TRUE(Holds(site.installation.Read("Debug/WebConnection-1.txt"), Link("12345")));
  EXPECT_TRUE(Holds(site.installation.Read("Debug/WebConnections.txt"),
                    "[1] httpQuery: GET /DeviceId=12345 HTTP/1.1\r\n"));
}

TEST_F(DeviceShortcut, AScannerIsNotSeenBehindALinkThatLeadsSomewhere) {
  site.settings.DebugMode = true;
  const auto client = site.Connect();
  EXPECT_EQ(Links(site.Exchange(*client, "GET /DeviceId=7 HTTP/1.1 login.cgi\r\n\r\n")),
            Names{"hist45-7-4-switch-device-port-name-1.htm>sw7"});
  EXPECT_EQ(site.Exchange(*client, "GET /DeviceId=12345 HTTP/1.1 login.cgi\r\n\r\n"), "");
  EXPECT_TRUE(client->closedByServer());
}

TEST_F(DeviceShortcut, AwkwardNamesStandInTheSearchAsTheyAre) {
  const struct {
    std::string literal;
    std::string name;  // as the search has it
  } kCases[] = {{"'B\xC3\xBCro <1> & \"x\"'", "B\xFCro <1> & \"x\""},
                {"'\xD0\x96 1'", "? 1"},
                {"'O''Neil'", "O'Neil"},
                {"' blanks '", " blanks "},
                {"'a+b'", "a+b"},
                {"'a*'", "a*"},
                {"'[x]'", "[x]"},
                {"''", ""},
                {"'PortName=none'", "PortName=none"}};
  for (const auto& row : kCases) {
    Reports("UPDATE VLAN SET DevName = " + row.literal +
            " WHERE RecNo = 7; UPDATE HostDiskInfo SET DevName = " + row.literal +
            " WHERE RecNo = 900;");
    site.ForgetEvents();
    ExpectSame(Link("7"), SwitchPost(row.name));
    ExpectSame(Link("900"), ServerPost(row.name));
  }
}

TEST_F(DeviceShortcut, AServerWhoseNameTheCharsetLacksIsFoundByItsQuestionMarks) {
  Reports("UPDATE HostDiskInfo SET DevName = '\xD0\x96 1' WHERE RecNo = 900");
  History("UPDATE Disk_Day01 SET DevName = '\xD0\x96 1' WHERE RecNo = 900");
  EXPECT_EQ(Links(site.Exchange(*site.Connect(), Link("900"))),
            Names{"histdisksearch45-900-C_-disk-search-1.htm>? 1"});
}

TEST_F(DeviceShortcut, ANameWithWordsOfAnEarlierRouteTakesThatRoute) {
  Reports("UPDATE VLAN SET DevName = 'GET /select?report=search-mac-ip' WHERE RecNo = 7");
  EXPECT_EQ(Answer(Link("7")), Response("text/html", FormPage(kMacSearch, kMacSearch.empty)));
}

TEST_F(DeviceShortcut, WithoutReportsMdbThereIsTheDefaultPageAndAFailure) {
  site.installation.Remove("Reports.mdb");
  ExpectDefault(Link("7"));
  EXPECT_EQ(Failures(), Names{"modSelectSql_CheckForStats"});
}

TEST_F(DeviceShortcut, ADeviceWithoutANameIsAFailureAndTheDefaultPage) {
  Reports("UPDATE VLAN SET DevName = NULL WHERE RecNo = 7");
  ExpectDefault(Link("7"));
  EXPECT_EQ(Failures(), Names{"modSelectSql_CheckForStats"});
}

}  // namespace
}  // namespace quillon
