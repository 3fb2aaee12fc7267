// The connection logs of DebugMode, to the letter.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "support/site.h"
#include "web/expected_pages.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

const std::string kNoon = "2024-05-02 12:00:00.000";

class ConnectionLog : public testing::Test {
 protected:
  ConnectionLog() { site.settings.DebugMode = true; }

  std::string Log(const std::string& name) const { return site.installation.Read("Debug/" + name); }

  std::string Peer(const RawClient& client) const {
    return "127.0.0.1:" + std::to_string(client.localPort());
  }

  // The block of a client that connects, at noon.
  std::string ConnectBlock(int id, const RawClient& client) const {
    const std::string start = "[" + std::to_string(id) + "] " + kNoon;
    return "\r\n\r\n\r\n\r\n########## TCP Server Connection ##########\r\n" + start +
           " --- Connected with 127.0.0.1 on port " + std::to_string(client.localPort()) +
           "\r\n\r\n";
  }

  // The tick count of the first request in the file of all connections.
  std::string FirstTicks() const {
    const std::string log = Log("WebConnections.txt");
    const std::size_t start = log.find("(tick=") + 6;
    return log.substr(start, log.find(')') - start);
  }

  void RemoveReports() const { fs::remove(site.installation.path() + "/Reports.mdb"); }

  Site site;
};

TEST_F(ConnectionLog, AConnectionThatOpensIsABlock) {
  const auto client = site.Connect();
  EXPECT_EQ(Log("WebConnection-1.txt"), ConnectBlock(1, *client));
  EXPECT_FALSE(site.installation.Exists("Debug/WebConnections.txt"));
}

TEST_F(ConnectionLog, ARequestAndItsResponseStandWholeInTheFileOfTheConnection) {
  const auto client = site.Connect();
  const std::string request = "GET /x HTTP/1.1\r\nHost: a\tb\xE4\r\n\r\n";
  const std::string response = site.Exchange(*client, request);
  EXPECT_EQ(response, DefaultResponse(site.render));
  const std::string start = "[1] " + kNoon;
  EXPECT_EQ(Log("WebConnection-1.txt"), ConnectBlock(1, *client) + start + " <-- " + Peer(*client) +
                                            "\r\n" + request + "\r\n\r\n" + start + " --> \r\n" +
                                            response + "\r\n\r\n");
}

TEST_F(ConnectionLog, ARequestIsTwoBlocksInTheFileOfAllConnections) {
  const auto client = site.Connect();
  site.Exchange(*client, "GET /x HTTP/1.1\r\nHost: test\r\n\r\n");
  EXPECT_EQ(Log("WebConnections.txt"),
            "[1] " + kNoon + " (tick=1 000.000) <-- " + Peer(*client) + "\r\n" +
                "[1] httpQuery: GET /x HTTP/1.1\r\n"
                "[1] Table From Cache: False\r\n"
                "[1] Chart From Cache: False\r\n"
                "[1] Total Time: 0 ms\r\n"
                "[1] " +
                kNoon + " (tick=1 000.000) --> " + Peer(*client) + "\r\n\r\n");
}

TEST_F(ConnectionLog, TheTotalTimeIsThatFromTheRequestToItsResponse) {
  RemoveReports();  // the failure of the query takes half a second
  const auto client = site.Connect();
  site.Exchange(*client, "GET /switch-access-port-top10-involume.htm HTTP/1.1\r\n\r\n");
  EXPECT_EQ(Log("WebConnections.txt"),
            "[1] " + kNoon + " (tick=1 000.000) <-- " + Peer(*client) + "\r\n" +
                "[1] httpQuery: GET /switch-access-port-top10-involume.htm HTTP/1.1\r\n"
                "[1] Table From Cache: False\r\n"
                "[1] Chart From Cache: False\r\n"
                "[1] Total Time: 500 ms\r\n"
                "[1] 2024-05-02 12:00:00.500 (tick=1 000.500) --> " +
                Peer(*client) + "\r\n\r\n");
}

TEST_F(ConnectionLog, AStoredPageIsATableFromTheCache) {
  site.installation.Write("WebReports/Cache/disk-mem-summary.htm", "page");
  site.Get("disk-mem-summary.htm");
  const std::vector<std::string> lines = SplitLines(Log("WebConnections.txt"));
  ASSERT_EQ(lines.size(), 7u);
  EXPECT_EQ(lines[2], "[1] Table From Cache: True");
  EXPECT_EQ(lines[3], "[1] Chart From Cache: False");
}

TEST_F(ConnectionLog, TicksAreSecondsInGroupsOfThreeWithMilliseconds) {
  const struct {
    std::int64_t tick;
    const char* text;
  } kCases[] = {
      {0, "0.000"},
      {7, "0.007"},
      {45, "0.045"},
      {1000, "1.000"},
      {999999, "999.999"},
      {1000000, "1 000.000"},
      {12345678, "12 345.678"},
      {123456789, "123 456.789"},
      {1234567890, "1 234 567.890"},
      {2147483647, "2 147 483.647"},
      {123456789012, "123 456 789.012"},
      {1234567890123, "1 234 567 890.123"},
  };
  for (const auto& row : kCases) {
    fs::remove(site.installation.path() + "/Debug/WebConnections.txt");
    site.clock.SetTick(row.tick);
    site.Get("");
    EXPECT_EQ(FirstTicks(), row.text);
  }
}

TEST_F(ConnectionLog, TheBlocksOfOneConnectionFollowEachOther) {
  const auto client = site.Connect();
  const std::string first = site.Exchange(*client, "GET / HTTP/1.1\r\n\r\n");
  site.clock.Advance(std::chrono::milliseconds(2250));
  const std::string second = site.Exchange(*client, "GET /qws.css HTTP/1.1\r\n\r\n");
  const std::string later = "2024-05-02 12:00:02.250";
  EXPECT_EQ(Log("WebConnection-1.txt"), ConnectBlock(1, *client) + "[1] " + kNoon + " <-- " +
                                            Peer(*client) + "\r\nGET / HTTP/1.1\r\n\r\n\r\n\r\n" +
                                            "[1] " + kNoon + " --> \r\n" + first + "\r\n\r\n" +
                                            "[1] " + later + " <-- " + Peer(*client) +
                                            "\r\nGET /qws.css HTTP/1.1\r\n\r\n\r\n\r\n" + "[1] " +
                                            later + " --> \r\n" + second + "\r\n\r\n");
  EXPECT_EQ(SplitLines(Log("WebConnections.txt")).size(), 14u);
}

TEST_F(ConnectionLog, EveryConnectionHasItsOwnFileAndOneIsCommon) {
  const auto first = site.Connect();
  const auto second = site.Connect();
  site.Exchange(*second, "GET / HTTP/1.1\r\n\r\n");
  EXPECT_EQ(Log("WebConnection-1.txt"), ConnectBlock(1, *first));
  EXPECT_EQ(Log("WebConnection-2.txt").find(ConnectBlock(2, *second)), 0u);
  for (const std::string& line : SplitLines(Log("WebConnections.txt"))) {
    EXPECT_TRUE(line.empty() || line.find("[2] ") == 0) << line;
  }
}

TEST_F(ConnectionLog, ARequestThatGivesUpHasAnEmptyResponse) {
  const auto client = site.Connect();
  const std::string request = "GET /disk-mem-summary.htm HTTP/1.1\r\n\r\n";
  EXPECT_EQ(site.Exchange(*client, request), "");
  EXPECT_EQ(Log("WebConnection-1.txt"), ConnectBlock(1, *client) + "[1] " + kNoon + " <-- " +
                                            Peer(*client) + "\r\n" + request + "\r\n\r\n[1] " +
                                            kNoon + " --> \r\n\r\n\r\n");
  EXPECT_EQ(SplitLines(Log("WebConnections.txt")).size(), 7u);
}

TEST_F(ConnectionLog, ATextWithoutALineEndIsNotLogged) {
  const auto client = site.Connect();
  EXPECT_EQ(site.Exchange(*client, "no line end"), "");
  EXPECT_EQ(Log("WebConnection-1.txt"), ConnectBlock(1, *client));
  EXPECT_FALSE(site.installation.Exists("Debug/WebConnections.txt"));
}

TEST_F(ConnectionLog, AScannerHasItsRequestBlocksAndNoResponse) {
  const auto client = site.Connect();
  const std::string peer = Peer(*client);
  const std::string block = ConnectBlock(1, *client);
  EXPECT_EQ(site.Exchange(*client, "GET /login.cgi HTTP/1.1\r\n\r\n"), "");
  EXPECT_EQ(Log("WebConnections.txt"), "[1] " + kNoon + " (tick=1 000.000) <-- " + peer +
                                           "\r\n[1] httpQuery: GET /login.cgi HTTP/1.1\r\n");
  const std::string expected =
      block + "[1] " + kNoon + " <-- " + peer + "\r\nGET /login.cgi HTTP/1.1\r\n\r\n\r\n\r\n" +
      "########## TCP Server Disconnection ##########\r\n" + "[1] 2024-05-02 12:00:00.500     ";
  site.Settle();
  EXPECT_EQ(Log("WebConnection-1.txt").substr(0, expected.size()), expected);
}

TEST_F(ConnectionLog, AConnectionThatEndsIsABlockWithItsDescriptionBehindFiveBlanks) {
  tcpServer_Disconnected(site.web, 3, 104, "Connection reset by peer");
  tcpServer_Disconnected(site.web, 3, 0, "");
  EXPECT_EQ(Log("WebConnection-3.txt"),
            "########## TCP Server Disconnection ##########\r\n"
            "[3] " +
                kNoon +
                "     Connection reset by peer\r\n\r\n"
                "########## TCP Server Disconnection ##########\r\n"
                "[3] " +
                kNoon + "     \r\n\r\n");
}

TEST_F(ConnectionLog, AClientThatClosesEndsItsFileWithThatBlock) {
  const auto client = site.Connect();
  const std::string expected = ConnectBlock(1, *client) +
                               "########## TCP Server Disconnection ##########\r\n[1] " + kNoon +
                               "     ";
  client->Close();
  site.Settle();
  const std::string log = Log("WebConnection-1.txt");
  EXPECT_EQ(log.substr(0, expected.size()), expected);
  EXPECT_EQ(log.substr(log.size() - 4), "\r\n\r\n");
}

TEST_F(ConnectionLog, ConnectionTwentyResetsAllAndSaysSo) {
  std::vector<std::unique_ptr<RawClient>> clients;
  for (int id = 1; id <= 20; ++id) clients.push_back(site.Connect());
  const std::string expected = ConnectBlock(20, *clients.back()) +
                               "\r\n\r\n\r\n\r\n########## TCP Server Connection ##########\r\n"
                               "[20] " +
                               kNoon + " --- All Connections Resetted\r\n\r\n";
  EXPECT_EQ(Log("WebConnection-20.txt").substr(0, expected.size()), expected);
  EXPECT_EQ(Log("WebConnection-19.txt").find("Resetted"), std::string::npos);
}

TEST_F(ConnectionLog, AnErrorOfTheListenerIsAppendedToTheServicesFile) {
  site.installation.Write("Debug/WebServices.txt", "before\r\n");
  tcpServer_Error(site.web, 10054, "Connection reset");
  tcpServer_Error(site.web, -1, "");
  EXPECT_EQ(Log("WebServices.txt"),
            "before\r\n"
            "########## TCP Server ERROR ###########\r\n"
            "[ErrorCode=10054] " +
                kNoon +
                " Connection reset\r\n\r\n"
                "########## TCP Server ERROR ###########\r\n"
                "[ErrorCode=-1] " +
                kNoon + " \r\n\r\n");
}

TEST_F(ConnectionLog, AnErrorThatTheListenerRaisesIsLoggedToo) {
  site.server.Error(24, "Too many open files");
  EXPECT_EQ(Log("WebServices.txt"), "########## TCP Server ERROR ###########\r\n[ErrorCode=24] " +
                                        kNoon + " Too many open files\r\n\r\n");
}

TEST_F(ConnectionLog, WithoutDebugModeThereIsNoFile) {
  site.settings.DebugMode = false;
  const auto client = site.Connect();
  site.Exchange(*client, "GET / HTTP/1.1\r\n\r\n");
  site.Exchange(*client, "GET /qws.css HTTP/1.1\r\n\r\n");
  site.Exchange(*client, "GET /login.cgi HTTP/1.1\r\n\r\n");
  client->Close();
  site.Settle();
  tcpServer_Connected(site.web, 20, 0, "");
  tcpServer_Error(site.web, 10054, "Connection reset");
  EXPECT_TRUE(site.installation.List("Debug").empty());
}

TEST_F(ConnectionLog, DebugModeCountsFromTheNextEventOn) {
  site.settings.DebugMode = false;
  const auto client = site.Connect();
  site.settings.DebugMode = true;
  site.Exchange(*client, "GET / HTTP/1.1\r\n\r\n");
  const std::string start = "[1] " + kNoon + " <-- " + Peer(*client) + "\r\n";
  EXPECT_EQ(Log("WebConnection-1.txt").find(start), 0u);
}

// A folder in the place of a log makes its writing fail.
TEST_F(ConnectionLog, ALogThatCannotBeWrittenIsAFailureOfItsEvent) {
  for (const char* name : {"WebConnection-1.txt", "WebServices.txt"}) {
    fs::create_directory(site.installation.path() + "/Debug/" + name);
  }
  const auto client = site.Connect();
  EXPECT_EQ(site.Exchange(*client, "GET / HTTP/1.1\r\n\r\n"), "");
  EXPECT_FALSE(client->closedByServer());
  client->Close();
  site.Settle();
  tcpServer_Error(site.web, 10054, "Connection reset");
  const std::vector<std::string> procedures = {"tcpServer_Connected", "tcpServer_DataIn",
                                               "tcpServer_Disconnected", "tcpServer_Error"};
  const std::vector<std::string> events = site.Events();
  ASSERT_EQ(events.size(), procedures.size());
  for (std::size_t i = 0; i < events.size(); ++i) {
    EXPECT_EQ(events[i].find("1\tfrmQuillonWeb_" + procedures[i] + "\t"), 0u) << events[i];
  }
}

}  // namespace
}  // namespace quillon
