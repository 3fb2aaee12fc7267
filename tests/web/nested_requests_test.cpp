// Requests that run inside the wait of another one. Every failure waits half a second in
// which events are served: the missing Reports.mdb is the failure of these tests.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/site.h"
#include "web/expected_pages.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

const std::string kList = "GET /switch-access-port-top10-involume.htm HTTP/1.1\r\n\r\n";
const std::string kOtherList = "GET /switch-access-port-top10-outvolume.htm HTTP/1.1\r\n\r\n";
const std::string kThirdList = "GET /switch-trunk-port-top10-inerrors.htm HTTP/1.1\r\n\r\n";
const std::string kIcon = "GET /favicon.ico HTTP/1.1\r\n\r\n";

class NestedRequests : public testing::Test {
 protected:
  NestedRequests() {
    site.favIconData = "icon";
    site.installation.Sql("Reports.mdb",
                          "INSERT INTO VLAN VALUES (7, 'sw7', '10.0.0.7', 1, 3, 'Port 3', '100',"
                          " '', 'up', 'up', 0, '2024-05-02', '2024-05-02', 1, 2, 3, 4, 5, 6)");
    HideReports();
  }

  std::string Path(const std::string& name) const { return site.installation.path() + "/" + name; }
  void HideReports() const { fs::rename(Path("Reports.mdb"), Path("hidden.mdb")); }
  void ShowReports() const { fs::rename(Path("hidden.mdb"), Path("Reports.mdb")); }

  // Runs the action inside the wait of the first failure that comes.
  void InTheWait(std::function<void()> action) {
    site.Once([this] { return !site.Events().empty(); }, std::move(action));
  }

  // The order of requests and responses in the log: "1<- 2<- 2-> 1->".
  std::string Order() const {
    std::string order;
    for (const std::string& line : SplitLines(site.installation.Read("Debug/WebConnections.txt"))) {
      const std::string id = line.substr(0, line.find(']')).substr(line.empty() ? 0 : 1);
      if (line.find("httpQuery: ") != std::string::npos) order += id + "<- ";
      if (line.find("Total Time: ") != std::string::npos) order += id + "-> ";
    }
    return order;
  }

  std::vector<std::string> TotalTimes() const {
    std::vector<std::string> times;
    for (const std::string& line : SplitLines(site.installation.Read("Debug/WebConnections.txt"))) {
      if (line.find("Total Time: ") != std::string::npos) times.push_back(line);
    }
    return times;
  }

  static bool ShowsTheDevice(const std::string& response) {
    return response.find(">sw7</a>") != std::string::npos;
  }

  Site site;
};

TEST_F(NestedRequests, AnotherConnectionIsServedInsideTheWait) {
  const auto waiting = site.Connect();
  const auto other = site.Connect();
  std::string inside = "never asked";
  InTheWait([&] {
    other->Send(kIcon);
    site.loop.Pump();
    inside = other->ReceivedNow() + waiting->ReceivedNow();
  });
  const std::string page = site.Exchange(*waiting, kList);
  EXPECT_EQ(inside, Response("image/x-icon", "icon"));
  EXPECT_EQ(page.find("HTTP/1.0 200 OK\r\nContent-Type: text/html\r\n"), 0u);
  EXPECT_EQ(other->ReceivedNow(), Response("image/x-icon", "icon"));
}

TEST_F(NestedRequests, TheWaitOfATextWithoutALineEndServesRequestsToo) {
  const auto waiting = site.Connect();
  const auto other = site.Connect();
  InTheWait([&] { other->Send(kIcon); });
  EXPECT_EQ(site.Exchange(*waiting, "no line end"), "");
  EXPECT_EQ(other->ReceivedNow(), Response("image/x-icon", "icon"));
}

TEST_F(NestedRequests, TheSameConnectionIsServedInsideItsOwnWait) {
  const auto client = site.Connect();
  InTheWait([&] { client->Send(kIcon); });
  client->Send(kList);
  site.Settle();
  const std::string received = client->ReceivedNow();
  const std::string icon = Response("image/x-icon", "icon");
  EXPECT_EQ(received.substr(0, icon.size()), icon);
  EXPECT_EQ(received.find("HTTP/1.0 200 OK\r\nContent-Type: text/html\r\n", icon.size()),
            icon.size());
}

TEST_F(NestedRequests, ThreeLevelsEndInReverseOrder) {
  site.settings.DebugMode = true;
  const auto first = site.Connect();
  const auto second = site.Connect();
  const auto third = site.Connect();
  InTheWait([&] {
    second->Send(kOtherList);
    third->Send(kThirdList);
  });
  const std::string answer = site.Exchange(*first, kList);
  EXPECT_EQ(Order(), "1<- 2<- 3<- 3-> 2-> 1-> ");
  EXPECT_EQ(TotalTimes(),
            (std::vector<std::string>{"[3] Total Time: 500 ms", "[2] Total Time: 1000 ms",
                                      "[1] Total Time: 1500 ms"}));
  for (RawClient* client : {second.get(), third.get()}) {
    EXPECT_EQ(client->ReceivedNow().find("HTTP/1.0 200 OK\r\n"), 0u);
  }
  EXPECT_EQ(site.Events().size(), 3u);
  EXPECT_EQ(site.installation.List("WebReports/Cache").size(), 3u);
}

TEST_F(NestedRequests, EveryLevelAnswersWithThePageOfItsOwnUrl) {
  const auto first = site.Connect();
  const auto second = site.Connect();
  InTheWait([&] { second->Send(kThirdList); });
  const std::string outer = site.Exchange(*first, kList);
  const auto stored = [&](const std::string& name) {
    return ClosedResponse(site.render, site.installation.Read("WebReports/Cache/" + name));
  };
  EXPECT_EQ(outer, stored("switch-access-port-top10-involume.htm"));
  EXPECT_EQ(second->ReceivedNow(), stored("switch-trunk-port-top10-inerrors.htm"));
  EXPECT_NE(outer, second->ReceivedNow());
}

TEST_F(NestedRequests, RowsOfANestedRequestStayOutOfTheOuterPage) {
  const auto first = site.Connect();
  const auto second = site.Connect();
  InTheWait([&] {
    ShowReports();
    second->Send(kOtherList);
  });
  const std::string outer = site.Exchange(*first, kList);
  EXPECT_EQ(outer.find("HTTP/1.0 200 OK\r\n"), 0u);
  EXPECT_FALSE(ShowsTheDevice(outer));
  EXPECT_TRUE(ShowsTheDevice(second->ReceivedNow()));
  EXPECT_EQ(site.Events().size(), 1u);
}

TEST_F(NestedRequests, ANestedFailureLeavesTheOuterRequestToItsEnd) {
  const auto first = site.Connect();
  const auto second = site.Connect();
  InTheWait([&] { second->Send("no line end"); });
  EXPECT_EQ(site.Exchange(*first, kList).find("HTTP/1.0 200 OK\r\n"), 0u);
  EXPECT_EQ(second->ReceivedNow(), "");
  ASSERT_EQ(site.Events().size(), 2u);
  EXPECT_EQ(site.Events()[0].find("1\tmodSelectSql_SqlTop10SwitchStats\t"), 0u);
  EXPECT_EQ(site.Events()[1].find("1\tfrmQuillonWeb_tcpServer_DataIn\t"), 0u);
}

TEST_F(NestedRequests, AClientThatLeavesMeanwhileIsSentAndLoggedNothingFurther) {
  site.settings.DebugMode = true;
  const auto client = site.Connect();
  std::string logWhenItLeft;
  InTheWait([&] {
    client->Close();
    site.loop.Pump();
    logWhenItLeft = site.installation.Read("Debug/WebConnection-1.txt");
  });
  client->Send(kList);
  site.Settle();
  EXPECT_NE(logWhenItLeft.find("TCP Server Disconnection"), std::string::npos);
  EXPECT_EQ(site.installation.Read("Debug/WebConnection-1.txt"), logWhenItLeft);
  EXPECT_EQ(Order(), "1<- ");
  EXPECT_EQ(site.Events().size(), 1u);
  EXPECT_EQ(site.Get("favicon.ico"), Response("image/x-icon", "icon"));
}

TEST_F(NestedRequests, ThePageOfAClientThatLeftReachesNobodyElse) {
  const auto client = site.Connect();
  std::unique_ptr<RawClient> next;
  InTheWait([&] {
    client->Close();
    site.loop.Pump();
    next = std::make_unique<RawClient>(site.tcpServer.LocalPort());
  });
  client->Send(kList);
  site.Settle();
  EXPECT_EQ(next->ReceivedNow(), "");
  EXPECT_EQ(site.Exchange(*next, kIcon), Response("image/x-icon", "icon"));
}

TEST_F(NestedRequests, AScannerThatLeavesDuringItsWaitDisturbsNobody) {
  site.settings.DebugMode = true;
  const auto scanner = site.Connect();
  const auto other = site.Connect();
  InTheWait([&] { scanner->Close(); });
  scanner->Send("GET /login.cgi HTTP/1.1\r\n\r\n");
  site.Settle();
  EXPECT_EQ(site.Events().size(), 1u);
  EXPECT_FALSE(site.tcpServer.Connected(1));
  EXPECT_EQ(site.Exchange(*other, kIcon), Response("image/x-icon", "icon"));
}

}  // namespace
}  // namespace quillon
