// Requests inside the waits of a chart: ten milliseconds a day, in which events are served.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "web/chart_site.h"

namespace quillon {
namespace {

const std::string kPort = "hist45-7-4.htm";
const std::string kOtherPort = "hist45-8-5.htm";
const std::string kSummary = "hist45d-switch-access-port-summary.htm";
const std::string kSummaryFile = "switch-access-port-summary.htm";

class NestedCharts : public ChartSite {
 protected:
  std::string Icon() const { return Response("image/x-icon", "icon"); }
  static std::string IconRequest() { return Site::Request("favicon.ico"); }

  // The whole answer to a URL when nothing else is asked.
  std::string Alone(const std::string& url) {
    const std::string response = site.Get(url);
    EXPECT_TRUE(Holds(response, "HTTP/1.0 200 OK\r\n"));
    return response;
  }
  void EmptyTheCache() const {
    for (const std::string& name : CacheFiles()) {
      site.installation.Remove("WebReports/Cache/" + name);
    }
  }

  // Has one client ask for a chart and a second one, inside the wait, for another; expects that
  // each gets what it gets alone.
  void ExpectNotMixedUp(const std::string& outerUrl, const std::string& innerUrl,
                        int milliseconds) {
    const auto outer = site.Connect();
    const auto inner = site.Connect();
    InTheWait([&] { inner->Send(Site::Request(innerUrl)); }, milliseconds);
    const std::string outerAnswer = site.Exchange(*outer, Site::Request(outerUrl));
    const std::string innerAnswer = inner->ReceivedNow();
    EmptyTheCache();
    EXPECT_EQ(outerAnswer, Alone(outerUrl));
    EXPECT_EQ(innerAnswer, Alone(innerUrl));
    EXPECT_NE(outerAnswer, innerAnswer);
    EmptyTheCache();
  }
};

TEST_F(NestedCharts, APageIsAnsweredWhileAChartWaits) {
  for (const std::string& url : {kPort, kSummary}) {
    const auto waiting = site.Connect();
    const auto other = site.Connect();
    std::string inside = "never asked";
    InTheWait([&] {
      other->Send(IconRequest());
      site.loop.Pump();
      inside = other->ReceivedNow() + waiting->ReceivedNow();
    });
    const std::string answer = site.Exchange(*waiting, Site::Request(url));
    EXPECT_EQ(inside, Icon()) << url;
    EXPECT_EQ(answer, Alone(url));
  }
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(NestedCharts, AChartInsideTheWaitOfAnotherIsNotMixedUpWithIt) {
  for (const int milliseconds : {10, 200, 440}) {
    SCOPED_TRACE(milliseconds);
    ExpectNotMixedUp(kPort, kOtherPort, milliseconds);
    ExpectNotMixedUp(kOtherPort, kPort, milliseconds);
    ExpectNotMixedUp(kPort, kSummary, milliseconds);
    ExpectNotMixedUp(kSummary, kPort, milliseconds);
    ExpectNotMixedUp(kSummary, "hist45d-switch-trunk-port-summary.htm", milliseconds);
  }
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(NestedCharts, EveryoneOfACrowdGetsItsOwnChart) {
  const Names urls = {kPort, kOtherPort, kSummary, "hist45-7-5.htm", "hist45-8-4.htm"};
  std::vector<std::unique_ptr<RawClient>> clients;
  for (std::size_t i = 0; i < urls.size(); ++i) clients.push_back(site.Connect());
  for (std::size_t i = 1; i < urls.size(); ++i) {
    InTheWait([&, i] { clients[i]->Send(Site::Request(urls[i])); }, static_cast<int>(i) * 20);
  }
  site.Exchange(*clients[0], Site::Request(urls[0]));
  site.installation.Remove("WebReports/Cache/" + kSummaryFile);
  for (std::size_t i = 0; i < urls.size(); ++i) {
    EXPECT_EQ(clients[i]->ReceivedNow(), Alone(urls[i])) << urls[i];
  }
}

TEST_F(NestedCharts, TheFilesOfNestedChartsAreThoseOfTheirPorts) {
  Store("switch-a.htm", "table");
  const auto outer = site.Connect();
  const auto inner = site.Connect();
  InTheWait([&] { inner->Send(Site::Request("hist45-8-5-switch-a.htm")); });
  site.Exchange(*outer, Site::Request("hist45-7-4-switch-a.htm"));
  EXPECT_EQ(Stored("hist45-7-4.htm"), ExpectedPortCharts(site.render, 1));
  EXPECT_EQ(Stored("hist45-8-5.htm"), ExpectedPortCharts(site.render, 2));
  EXPECT_TRUE(Holds(Stored("hist45-7-4.htm"), kSeven));
  EXPECT_TRUE(Holds(Stored("hist45-8-5.htm"), kEight));
}

TEST_F(NestedCharts, ASecondChartOnTheSameConnectionIsAnsweredFirstAndRight) {
  const auto client = site.Connect();
  InTheWait([&] { client->Send(Site::Request(kOtherPort)); });
  client->Send(Site::Request(kPort));
  site.Settle();
  const std::string received = client->ReceivedNow();
  const std::string inner = Alone(kOtherPort);
  EXPECT_EQ(received.substr(0, inner.size()), inner);
  EXPECT_EQ(received.find("HTTP/1.0 200 OK\r\n", inner.size()), inner.size());
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(NestedCharts, AFailureInsideTheWaitLeavesTheChartToItsEnd) {
  const auto client = site.Connect();
  const auto other = site.Connect();
  InTheWait([&] { other->Send(Site::Request("hist45-x-1.htm")); });
  const std::string answer = site.Exchange(*client, Site::Request(kPort));
  EXPECT_EQ(other->ReceivedNow(), "");
  EXPECT_EQ(answer, Alone(kPort));
  EXPECT_EQ(Failures(), Names{"frmQuillonWeb_tcpServer_DataIn"});
}

TEST_F(NestedCharts, AClientThatLeavesIsSentAndLoggedNothingAndItsChartIsStored) {
  site.settings.DebugMode = true;
  Store("switch-a.htm", "table");
  const auto client = site.Connect();
  std::string logWhenItLeft;
  InTheWait([&] {
    client->Close();
    site.loop.Pump();
    logWhenItLeft = site.installation.Read("Debug/WebConnection-1.txt");
  });
  client->Send(Site::Request("hist45-7-4-switch-a.htm"));
  site.Settle();
  EXPECT_TRUE(Holds(logWhenItLeft, "TCP Server Disconnection"));
  EXPECT_EQ(site.installation.Read("Debug/WebConnection-1.txt"), logWhenItLeft);
  EXPECT_EQ(FromCache(), Names{});
  EXPECT_EQ(Stored(kPort), ExpectedPortCharts(site.render, 1));
  EXPECT_TRUE(Holds(Stored(kPort), kSeven));
  EXPECT_EQ(Failures(), Names{});
  EXPECT_EQ(site.Get("favicon.ico"), Icon());
}

TEST_F(NestedCharts, TheChartOfAClientThatLeftReachesNobodyElse) {
  for (const std::string& url : {kPort, kSummary}) {
    const auto client = site.Connect();
    std::unique_ptr<RawClient> next;
    InTheWait([&] {
      client->Close();
      site.loop.Pump();
      next = std::make_unique<RawClient>(site.tcpServer.LocalPort());
    });
    client->Send(Site::Request(url));
    site.Settle();
    ASSERT_NE(next, nullptr) << url;
    EXPECT_EQ(next->ReceivedNow(), "") << url;
    EXPECT_EQ(site.Exchange(*next, IconRequest()), Icon()) << url;
  }
}

// Whoever clicks on a second device before the first one's charts are there.
TEST_F(NestedCharts, TheStoredChartOfAClientThatLeftIsNotMixedUpWithThatOfTheNextClient) {
  site.Get("hist45-7-4-switch-a.htm");
  const std::string seven = Stored(kPort);
  site.Get("hist45-8-5-switch-a.htm");
  const std::string eight = Stored(kOtherPort);
  ASSERT_NE(seven, eight);
  for (const int milliseconds : {10, 200, 440}) {
    EmptyTheCache();
    const auto client = site.Connect();
    std::unique_ptr<RawClient> next;
    InTheWait(
        [&] {
          client->Close();
          site.loop.Pump();
          next = std::make_unique<RawClient>(site.tcpServer.LocalPort());
          next->Send(Site::Request("hist45-8-5-switch-a.htm"));
        },
        milliseconds);
    client->Send(Site::Request("hist45-7-4-switch-a.htm"));
    site.Settle();
    EXPECT_EQ(Stored(kPort), seven) << milliseconds;
    EXPECT_EQ(Stored(kOtherPort), eight) << milliseconds;
  }
}

TEST_F(NestedCharts, AStoredChartHasNoWaits) {
  Store("switch-a.htm", "table");
  Store(kPort, "charts");
  Store(kSummaryFile, "summary");
  const auto before = site.clock.slept();
  for (const char* url : {"hist45-7-4-switch-a.htm", "hist45d-switch-access-port-summary.htm",
                          "histdisk45-900-C_-disk-a.htm"}) {
    site.Get(url);
  }
  EXPECT_EQ(site.clock.slept(), before);
}

}  // namespace
}  // namespace quillon
