// What counts as a request, the name that it gives its page, the head of a response,
// and the life of a connection.
#include "web/connections.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "support/site.h"
#include "web/expected_pages.h"

namespace quillon {
namespace {

using Names = std::vector<std::string>;

class Connections : public testing::Test {
 protected:
  Connections() { site.installation.Write("WebReports/qws.css", "stylesheet"); }

  std::string Default() const { return DefaultResponse(site.render); }

  // A request that is always answered with the default page.
  void ExpectUsable(RawClient& client) {
    EXPECT_EQ(site.Exchange(client, "GET / HTTP/1.1\r\n\r\n"), Default());
  }

  // All events are failures of the handler of requests; their number.
  std::size_t Failures() const {
    for (const std::string& event : site.Events()) {
      EXPECT_EQ(event.find("1\tfrmQuillonWeb_tcpServer_DataIn\t"), 0u) << event;
    }
    return site.Events().size();
  }

  // The one file of the cache; "" where there is none.
  std::string CacheFile() const {
    const Names names = site.installation.List("WebReports/Cache");
    EXPECT_LE(names.size(), 1u);
    return names.empty() ? "" : names[0];
  }

  void EmptyTheCache() const {
    for (const std::string& name : site.installation.List("WebReports/Cache")) {
      std::filesystem::remove(site.installation.path() + "/WebReports/Cache/" + name);
    }
  }

  Site site;
};

TEST_F(Connections, AResponseHasFiveHeadLinesAndItsLengthInBytes) {
  for (const std::string body : {"", "a", "line\r\n", "\xE4\xF6\xFC", "\xC3\xA4\xE2\x82\xAC"}) {
    site.installation.Write("WebReports/qws.css", body);
    const std::string head =
        "HTTP/1.0 200 OK\r\n"
        "Content-Type: text/css\r\n"
        "Server: Hollin-QWS/1.0\r\n"
        "Connection: keep-alive\r\n"
        "Content-Length: " +
        std::to_string(body.size()) + "\r\n\r\n";
    EXPECT_EQ(site.Get("qws.css"), head + body);
  }
}

TEST_F(Connections, ThePageLengthCountsBytesInAnyCharset) {
  for (const std::string word : {"plain", "\xE4\xF6\xFC", "\xC3\xA4\xE2\x82\xAC"}) {
    site.words.LangWord[1] = word;
    site.words.HelpText = word;
    EXPECT_EQ(site.Get(""), Default()) << word;
  }
}

TEST_F(Connections, ATextWithoutALineEndGetsNoAnswerAndOneEvent) {
  const auto client = site.Connect();
  std::size_t failures = 0;
  for (const std::string text : {"GET / HTTP/1.1", "x", "\r", "\n", "\n\n", "\n\r", "\r\r",
                                 "GET / HTTP/1.1\n\n", "GET /qws.css HTTP/1.1\r\r"}) {
    EXPECT_EQ(site.Exchange(*client, text), "") << text;
    EXPECT_EQ(Failures(), ++failures) << text;
    ExpectUsable(*client);
  }
  EXPECT_FALSE(client->closedByServer());
}

TEST_F(Connections, AFirstLineIsAllThatARequestNeeds) {
  const auto client = site.Connect();
  for (const std::string text :
       {"GET / HTTP/1.1\r\n\r\n", "GET / HTTP/1.1\r\n", "GET /\r\n", "\r\n", "\r\n\r\n", "x\r\n",
        "\r\nbody", "HTTP\r\n", "HEAD / HTTP/1.1\r\n\r\n", "DELETE / HTTP/9.9\r\n\r\n",
        "GET / HTTP/1.1\r\nContent-Length: 100\r\n\r\n",
        "GET / HTTP/1.1\r\nConnection: close\r\n\r\n", "a\rb\nc\r\n", "\xFF\xFE\r\n",
        "POST /unknown HTTP/1.1\r\n\r\nfield=value"}) {
    EXPECT_EQ(site.Exchange(*client, text), Default()) << text;
  }
  EXPECT_EQ(Failures(), 0u);
}

TEST_F(Connections, OneConnectionCarriesManyRequests) {
  const auto client = site.Connect();
  for (int round = 0; round < 5; ++round) {
    ExpectUsable(*client);
    EXPECT_EQ(site.Exchange(*client, "GET /qws.css HTTP/1.1\r\n\r\n"),
              Response("text/css", "stylesheet"));
  }
  EXPECT_FALSE(client->closedByServer());
  EXPECT_TRUE(site.tcpServer.Connected(1));
}

TEST_F(Connections, TwoRequestsInOneSegmentAreOneEvent) {
  const auto client = site.Connect();
  const std::string page = "GET /unknown HTTP/1.1\r\n\r\n";
  const std::string stylesheet = "GET /qws.css HTTP/1.1\r\n\r\n";
  EXPECT_EQ(site.Exchange(*client, page + page), Default());
  site.Settle();
  EXPECT_EQ(client->ReceivedNow(), Default());
  EXPECT_EQ(site.Exchange(*client, page + stylesheet), Response("text/css", "stylesheet"));
  EXPECT_EQ(site.Exchange(*client, stylesheet + page), Response("text/css", "stylesheet"));
}

TEST_F(Connections, ABodyInASecondSegmentIsASecondEvent) {
  const auto client = site.Connect();
  const std::string head = "POST /search-mac-ip HTTP/1.1\r\nContent-Length: 20\r\n\r\n";
  EXPECT_EQ(site.Exchange(*client, head), "");
  const std::size_t before = site.Events().size();
  EXPECT_EQ(site.Exchange(*client, "MacIpName=02&Submit="), "");
  ASSERT_EQ(site.Events().size(), before + 1);
  EXPECT_EQ(site.Events().back().find("1\tfrmQuillonWeb_tcpServer_DataIn\t"), 0u);
  EXPECT_EQ(site.Exchange(*client, "MacIpName=02\r\nmore"), Default());
}

TEST_F(Connections, ARequestInTwoSegmentsIsTwoEvents) {
  const auto client = site.Connect();
  EXPECT_EQ(site.Exchange(*client, "GET /qws.css HT"), "");
  EXPECT_EQ(Failures(), 1u);
  EXPECT_EQ(site.Exchange(*client, "TP/1.1\r\n\r\n"), Default());
}

// The name shows as that of the file under which a list is stored.
TEST_F(Connections, TheCacheNameIsTheTailOfTheUrlFromItsWordOn) {
  const struct {
    const char* firstLine;
    const char* name;
  } kCases[] = {
      {"GET /switch-access-port-top10-a.htm HTTP/1.1", "switch-access-port-top10-a.htm"},
      {"GET /select?report=switch-access-port-top10-a.htm HTTP/1.1",
       "switch-access-port-top10-a.htm"},
      {"POST /folder/switch-trunk-port-top10 HTTP/1.1", "switch-trunk-port-top10"},
      {"GET /switch-access-port-top10-a b.htm HTTP/1.1", "switch-access-port-top10-a b.htm"},
      {"GET /switch-access-port-top10-a.htm    HTTP/1.1", "switch-access-port-top10-a.htm"},
      {"GET /switch-access-port-top10-a.htm\t HTTP/1.1", "switch-access-port-top10-a.htm\t"},
      {"GET /switch-access-port-top10-a.htmHTTP/1.1", "switch-access-port-top10-a.ht"},
      {"GET /switch-access-port-top10-HTTP.htm HTTP/1.1", "switch-access-port-top10"},
      {"GET /switch-switch-access-port-top10 HTTP/1.1", "switch-switch-access-port-top10"},
      {"switch-access-port-top10 HTTP", "switch-access-port-top10"},
      {"GET /switch-access-port-top10-%2e%2E%2f HTTP/1.1", "switch-access-port-top10-%2e%2E%2f"},
      {"GET /switch-access-port-top10-*?a=b HTTP/1.1", "switch-access-port-top10-*?a=b"},
      {"GET /switch-access-port-top10-a.htm", ""},
      {"GET /switch-access-port-top10-a.htm http/1.1", ""},
  };
  const auto client = site.Connect();
  for (const auto& row : kCases) {
    const std::string response = site.Exchange(*client, std::string(row.firstLine) + "\r\n\r\n");
    EXPECT_EQ(response.find("HTTP/1.0 200 OK\r\n"), 0u) << row.firstLine;
    EXPECT_EQ(CacheFile(), row.name) << row.firstLine;
    EmptyTheCache();
  }
  EXPECT_EQ(Failures(), 0u);
}

TEST_F(Connections, WithBothWordsTheCacheNameStartsAtTheDisk) {
  site.Get("switch-access-port-top10-a-disk-b.htm");
  EXPECT_EQ(CacheFile(), "disk-b.htm");
  site.installation.Write("WebReports/Cache/disk-mem-summary-switch.htm", "of the disk");
  site.installation.Write("WebReports/Cache/switch.htm", "of the switch");
  EXPECT_EQ(site.Get("disk-mem-summary-switch.htm"), ClosedResponse(site.render, "of the disk"));
  site.installation.Write("WebReports/Cache/switch-disk-mem-summary.htm", "of the switch");
  site.installation.Write("WebReports/Cache/disk-mem-summary.htm", "of the disk");
  EXPECT_EQ(site.Get("switch-disk-mem-summary.htm"), ClosedResponse(site.render, "of the disk"));
}

TEST_F(Connections, AVersionBeforeTheWordIsAFailure) {
  const auto client = site.Connect();
  std::size_t failures = 0;
  for (const std::string firstLine :
       {"HTTP/1.1 GET /switch-access-port-top10-a.htm",
        "GET /HTTP/switch-trunk-port-top10 HTTP/1.1", "GET /HTTPswitch HTTP/1.1",
        "GET /HTTP-disk-mem-summary.htm HTTP/1.1", "HTTPdisk-",
        "GET /switch-HTTP-disk-x HTTP/1.1"}) {
    EXPECT_EQ(site.Exchange(*client, firstLine + "\r\n\r\n"), "") << firstLine;
    EXPECT_EQ(Failures(), ++failures) << firstLine;
    ExpectUsable(*client);
  }
  EXPECT_EQ(CacheFile(), "");
}

TEST_F(Connections, AScannerGetsTheDefaultPageWithoutDebugMode) {
  const auto client = site.Connect();
  EXPECT_EQ(site.Exchange(*client, "GET /login.cgi HTTP/1.1\r\n\r\n"), Default());
  EXPECT_FALSE(client->closedByServer());
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(Connections, AScannerIsReportedAndDroppedInDebugMode) {
  site.settings.DebugMode = true;
  for (const char* url : {"/login.cgi", "/cgi-bin/login.cgi?user=admin", "/qws.css?login.cgi"}) {
    const auto client = site.Connect();
    EXPECT_EQ(site.Exchange(*client, std::string("GET ") + url + " HTTP/1.1\r\n\r\n"), "") << url;
    EXPECT_TRUE(client->closedByServer()) << url;
    EXPECT_EQ(site.Events().back(), "1\tfrmQuillonWeb_tcpServer_DataIn\tSpam: 127.0.0.1");
  }
  EXPECT_EQ(site.Events().size(), 3u);
  EXPECT_EQ(site.Get(""), Default());
}

TEST_F(Connections, AScannerIsKnownByTheFirstLineOnly) {
  site.settings.DebugMode = true;
  const auto client = site.Connect();
  EXPECT_EQ(site.Exchange(*client, "GET / HTTP/1.1\r\nReferer: /login.cgi\r\n\r\n"), Default());
  EXPECT_EQ(site.Exchange(*client, "GET /Login.cgi HTTP/1.1\r\n\r\n"), Default());
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(Connections, NineteenConnectionsAreServedAndTheTwentiethDropsAll) {
  std::vector<std::unique_ptr<RawClient>> clients;
  for (int id = 1; id <= 19; ++id) clients.push_back(site.Connect());
  for (const auto& client : clients) ExpectUsable(*client);
  clients.push_back(site.Connect());
  for (const auto& client : clients) {
    client->Receive();
    EXPECT_TRUE(client->closedByServer());
  }
  for (ConnectionId id = 1; id <= 20; ++id) EXPECT_FALSE(site.tcpServer.Connected(id)) << id;
  EXPECT_TRUE(site.Events().empty());
  const auto next = site.Connect();
  EXPECT_TRUE(site.tcpServer.Connected(1));
  ExpectUsable(*next);
}

TEST_F(Connections, AnIdOfTwentyOrMoreDropsWhatIsConnectedAndALowerOneNothing) {
  for (const ConnectionId id : {ConnectionId{19}, ConnectionId{20}, ConnectionId{300}}) {
    const auto client = site.Connect();
    tcpServer_Connected(site.web, id, 0, "");
    EXPECT_EQ(site.tcpServer.Connected(1), id < 20) << id;
    client->Close();
    site.Settle();
  }
}

TEST_F(Connections, ARequestOfAnIdOutsideTheSlotsIsAFailure) {
  std::size_t failures = 0;
  for (const int id : {0, -1, 21, 32767}) {
    tcpServer_DataIn(site.web, static_cast<ConnectionId>(id), "GET / HTTP/1.1\r\n\r\n");
    EXPECT_EQ(Failures(), ++failures) << id;
  }
  tcpServer_DataIn(site.web, 20, "GET / HTTP/1.1\r\n\r\n");  // a slot, though nobody is there
  EXPECT_EQ(Failures(), failures);
}

TEST_F(Connections, ASendThatFailsIsAnEventAndTheConnectionStays) {
  site.favIconData.assign(Listener::kPendingLimit + 16u * 1024 * 1024, 'x');
  const auto client = site.Connect();
  const std::string request = "GET /favicon.ico HTTP/1.1\r\n\r\n";
  const std::string response = Response("image/x-icon", site.favIconData);
  tcpServer_DataIn(site.web, 1, request);
  EXPECT_EQ(Failures(), 0u);
  tcpServer_DataIn(site.web, 1, request);  // the client has read nothing of the first yet
  EXPECT_EQ(Failures(), 1u);
  EXPECT_TRUE(site.tcpServer.Connected(1));
  for (int round = 0; round < 100000 && client->received().size() < response.size(); ++round) {
    site.loop.Pump();
    client->Receive();
  }
  EXPECT_TRUE(client->received() == response);
  ExpectUsable(*client);
}

TEST_F(Connections, ABurstOfClientsNeverGivesANumberBeyondTwenty) {
  for (const int count : {21, 22, 30, 45}) {
    std::vector<std::unique_ptr<RawClient>> burst;
    for (int i = 0; i < count; ++i) {
      burst.push_back(std::make_unique<RawClient>(site.tcpServer.LocalPort()));
    }
    for (int round = 0; round < 10; ++round) site.Settle();
    for (ConnectionId id = 20; id <= 60; ++id) EXPECT_FALSE(site.tcpServer.Connected(id)) << id;
    ExpectUsable(*burst.back());
    burst.clear();
    site.Settle();
  }
  EXPECT_EQ(Failures(), 0u);
}

}  // namespace
}  // namespace quillon
