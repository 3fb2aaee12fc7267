// Opening and closing the listener by its settings row.
#include "service/sockets.h"

#include <gtest/gtest.h>

#include "support/service_house.h"

namespace quillon {
namespace {

class SocketsTest : public ::testing::Test {
 protected:
  std::string BoundPort() const { return std::to_string(house.tcpServer.LocalPort()); }

  ServiceHouse house;
};

TEST_F(SocketsTest, EveryAddressStandsForTheOneOfTheIniFile) {
  house.SetWebServer("IpAddr", "0.0.0.0");
  house.settings.ServerIpAddr = "127.0.0.2";
  ServiceOpen(house.service, "tcpServer");
  EXPECT_TRUE(house.tcpServer.Listening());
  EXPECT_EQ(house.tcpServer.LocalHost(), "127.0.0.2");
  EXPECT_EQ(house.WebServer("IpAddr"), "127.0.0.2");
  EXPECT_EQ(house.clock.slept(), std::chrono::milliseconds(1000));
}

TEST_F(SocketsTest, RowTellsTimeAndBoundAddress) {
  house.SetWebServer("IpAddr", "127.0.0.1");
  house.settings.DatumFormat = "DD/MM/YYYY";
  ServiceOpen(house.service, "tcpServer");
  EXPECT_EQ(house.WebServer("Status"),
            "02/05/2024 12:00:00\r\nWeb Server Started\r\nIP=127.0.0.1\r\nPort=" + BoundPort());
}

TEST_F(SocketsTest, CharSetIsTakenAlsoWhereTheListenerIsNotEnabled) {
  house.SetWebServer("CharSet", "ISO-8859-5");
  house.SetWebServer("Enabled", "0");
  ServiceOpen(house.service, "tcpServer");
  EXPECT_EQ(house.settings.CharSet, "ISO-8859-5");
  EXPECT_FALSE(house.tcpServer.Listening());
  EXPECT_EQ(house.WebServer("Status"), "Not Started");
}

TEST_F(SocketsTest, DebugModeAppendsTheStatus) {
  house.settings.DebugMode = true;
  house.installation.Write("Debug/WebServices.txt", "before\r\n");
  ServiceOpen(house.service, "tcpServer");
  EXPECT_EQ(house.installation.Read("Debug/WebServices.txt"),
            "before\r\n########### Web Server Started ############\r\n"
            "2024-05-02 12:00:00\r\nWeb Server Started\r\nIP=127.0.0.1\r\nPort=" +
                BoundPort() + "\r\n\r\n");
}

TEST_F(SocketsTest, PortInUseIsReportedAndResetsTheAddress) {
  Listener other(house.loop);
  other.SetLocalHost("127.0.0.1");
  other.SetListening(true);
  house.SetWebServer("IpAddr", "127.0.0.1");
  house.SetWebServer("TcpPort", std::to_string(other.LocalPort()));
  ServiceOpen(house.service, "tcpServer");
  ASSERT_EQ(house.Events().size(), 1u);
  EXPECT_EQ(house.Events()[0].rfind("1\tmodQuillonWeb_ServiceOpen\tcannot listen on 127.0.0.1", 0),
            0u);
  EXPECT_EQ(house.WebServer("IpAddr"), "0.0.0.0");
  const std::string status = house.WebServer("Status");
  EXPECT_EQ(status.substr(status.find("\r\n")), "\r\nFailed to Start\r\n");
  EXPECT_FALSE(house.tcpServer.Listening());
}

TEST_F(SocketsTest, AddressThatIsNotOfThisMachineHasATextOfItsOwn) {
  for (const std::string address : {"192.0.2.1", "no address", ""}) {
    house.SetWebServer("IpAddr", address);
    ServiceOpen(house.service, "tcpServer");
    EXPECT_EQ(house.Events().back(),
              "1\tmodQuillonWeb_ServiceOpen\tTCP Server IP Address is not valid");
    EXPECT_EQ(house.WebServer("IpAddr"), "0.0.0.0");
  }
}

TEST_F(SocketsTest, PortBeyondTheRangeIsReported) {
  house.SetWebServer("TcpPort", "70000");
  ServiceOpen(house.service, "tcpServer");
  EXPECT_EQ(house.Events(),
            std::vector<std::string>{"1\tmodQuillonWeb_ServiceOpen\tnot a TCP port: 70000"});
}

TEST_F(SocketsTest, TableWithoutARowIsReportedOnce) {
  house.installation.Sql("Quillon.mdb", "DELETE FROM Settings_WebServer");
  ServiceOpen(house.service, "tcpServer");
  EXPECT_EQ(house.Events().size(), 1u);
}

TEST_F(SocketsTest, OpeningAgainMovesTheListener) {
  ServiceOpen(house.service, "tcpServer");
  const std::string first = BoundPort();
  house.SetWebServer("IpAddr", "127.0.0.3");
  ServiceOpen(house.service, "tcpServer");
  EXPECT_EQ(house.tcpServer.LocalHost(), "127.0.0.3");
  EXPECT_EQ(house.Events().size(), 0u);
}

TEST_F(SocketsTest, OtherNamesOpenTheDatabaseAlone) {
  ServiceOpen(house.service, "nothing");
  ServiceClose(house.service, "nothing");
  EXPECT_TRUE(house.Events().empty());
  EXPECT_FALSE(house.tcpServer.Listening());
  house.settings.ConnMain = "Provider=SQLite;Data Source=" + house.installation.path() + "/none";
  ServiceOpen(house.service, "nothing");
  EXPECT_EQ(
      house.Events(),
      std::vector<std::string>{"1\tmodQuillonWeb_ServiceOpen\tnone: the database file is missing"});
}

TEST_F(SocketsTest, ClosingStopsListeningAndSaysSo) {
  ServiceOpen(house.service, "tcpServer");
  ServiceClose(house.service, "tcpServer");
  EXPECT_FALSE(house.tcpServer.Listening());
  EXPECT_EQ(house.WebServer("Status"), "Not Started");
}

TEST_F(SocketsTest, FailureToCloseIsReported) {
  house.installation.Sql("Quillon.mdb", "DROP TABLE Settings_WebServer");
  ServiceClose(house.service, "tcpServer");
  ASSERT_EQ(house.Events().size(), 1u);
  EXPECT_EQ(house.Events()[0].rfind("1\tmodQuillonWeb_ServiceClose\t", 0), 0u);
}

}  // namespace
}  // namespace quillon
