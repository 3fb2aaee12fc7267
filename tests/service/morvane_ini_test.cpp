// Reading the management product's ini file.
#include "service/morvane_ini.h"

#include <gtest/gtest.h>

#include "support/service_house.h"

namespace quillon {
namespace {

class MorvaneIniTest : public ::testing::Test {
 protected:
  MorvaneIniTest() { house.settings.MorvaneDir = house.installation.path(); }

  // What the file's text sets, as "<address> <port>".
  std::string Read(const std::string& text) {
    house.installation.Write("Morvane.ini", text);
    ReadMorvaneIni(house.service);
    return house.settings.ServerIpAddr + " " + std::to_string(house.settings.ServerTrapPort);
  }

  ServiceHouse house;
};

TEST_F(MorvaneIniTest, LinesCountByTheirKeys) {
  struct Case {
    std::string text;
    std::string read;
  };
  const Case cases[] = {
      {"", "127.0.0.1 162"},
      {"[Server]\r\nOther=1\r\n", "127.0.0.1 162"},
      {"ServerIpAddr=10.1.2.3\r\nServerTrapPort=1162\r\n", "10.1.2.3 1162"},
      {"  ServerIpAddr  =  10.1.2.3  \r\n ServerTrapPort = 1162 ", "10.1.2.3 1162"},
      {";ServerIpAddr=10.1.2.3\r\n", "127.0.0.1 162"},
      {"[ServerIpAddr=10.1.2.3\r\n", "127.0.0.1 162"},
      {" ;ServerIpAddr=10.1.2.3\r\n", "127.0.0.1 162"},
      {"serveripaddr=10.1.2.3\r\n", "127.0.0.1 162"},
      {"[a]\r\nServerIpAddr=1.1.1.1\r\n[b]\r\nServerIpAddr=2.2.2.2\r\n", "2.2.2.2 162"},
      {"ServerIpAddr=a=b\r\n", "a=b 162"},
      {"ServerIpAddr=\r\n", " 162"},
      {"ServerIpAddr=10.1.2.3\nServerTrapPort=5\n", "10.1.2.3 5"},
      {"ServerIpAddr=10.1.2.3\rServerTrapPort=5", "10.1.2.3 5"},
      {"ServerTrapPort=-1\r\n", "127.0.0.1 -1"},
      {"ServerTrapPort=32767\r\n", "127.0.0.1 32767"},
  };
  for (const Case& row : cases) EXPECT_EQ(Read(row.text), row.read) << row.text;
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(MorvaneIniTest, PortThatIsNoNumberEndsTheReadingAtItsLine) {
  for (const std::string port : {"abc", "", "32768", "1e9", "70000"}) {
    EXPECT_EQ(Read("ServerTrapPort=" + port + "\r\nServerIpAddr=10.1.2.3\r\n"), "127.0.0.1 162");
    EXPECT_EQ(house.Events().back().rfind("1\tmodQuillonWeb_ReadMorvaneIni\t", 0), 0u) << port;
  }
  EXPECT_EQ(house.Events().size(), 5u);
}

TEST_F(MorvaneIniTest, MissingFileLeavesTheDefaults) {
  house.settings.ServerIpAddr = "10.9.9.9";
  house.settings.MorvaneDir = house.installation.path() + "/nowhere";
  ReadMorvaneIni(house.service);
  EXPECT_EQ(house.settings.ServerIpAddr, "127.0.0.1");
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(MorvaneIniTest, FolderMayBeWrittenWithBackslashes) {
  house.settings.AppPath = "/srv/quillon";
  const std::pair<std::string, std::string> cases[] = {
      {"/srv/morvane", "/srv/morvane/Morvane.ini"},
      {"\\srv\\morvane", "/srv/morvane/Morvane.ini"},
      {"c:", "/srv/quillon/c:/Morvane.ini"},
  };
  for (const auto& [folder, path] : cases) {
    house.settings.MorvaneDir = folder;
    EXPECT_EQ(MorvaneIniPath(house.settings), path);
  }
}

}  // namespace
}  // namespace quillon
