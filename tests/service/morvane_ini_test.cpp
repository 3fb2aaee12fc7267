// Reading the management product's ini file.
#include "service/morvane_ini.h"

#include <gtest/gtest.h>

#include <filesystem>

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
      {"ServerTrapPort=0\r\n", "127.0.0.1 0"},
      {"ServerTrapPort=32767\r\n", "127.0.0.1 32767"},
      {"ServerTrapPort=-32768\r\n", "127.0.0.1 -32768"},
      {"ServerTrapPort=+5\r\n", "127.0.0.1 5"},
      {"ServerTrapPort=1e2\r\n", "127.0.0.1 100"},
      {"ServerTrapPort=162.5\r\nServerIpAddr=a\r\n", "a 162"},
      {"ServerTrapPort=163.5\r\n", "127.0.0.1 164"},
      {"ServerTrapPort=1\r\nServerTrapPort=2\r\n", "127.0.0.1 2"},
      {"servertrapport=5\r\nServerTrapport=5\r\nSERVERIPADDR=a\r\n", "127.0.0.1 162"},
      {"MyServerIpAddr=a\r\nServerIpAddr2=b\r\nServer IpAddr=c\r\n", "127.0.0.1 162"},
      {"ServerIpAddr 10.1.2.3\r\nServerTrapPort:5\r\n", "127.0.0.1 162"},
      {"=10.1.2.3\r\n=\r\n==\r\n", "127.0.0.1 162"},
      {"ServerIpAddr==10.1.2.3\r\n", "=10.1.2.3 162"},
      {"ServerIpAddr=10.1.2.3;a comment\r\n", "10.1.2.3;a comment 162"},
      {"ServerIpAddr=10.1.2.3\r\nServerIpAddr=\r\n", " 162"},
      {"\tServerIpAddr=10.1.2.3\r\n", "127.0.0.1 162"},  // blanks alone are trimmed
      {"\r\n\r\n\n\rServerIpAddr=10.1.2.3", "10.1.2.3 162"},
  };
  for (const Case& row : cases) EXPECT_EQ(Read(row.text), row.read) << row.text;
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(MorvaneIniTest, PortThatIsNoNumberEndsTheReadingAtItsLine) {
  std::size_t failures = 0;
  for (const std::string port :
       {"abc", "", "12x", "0x10", "&H10", "1,000", "1 2", "32768", "32767.5", "-32769", "1e9",
        "70000", "99999999999999999999", "1e999"}) {
    EXPECT_EQ(Read("ServerTrapPort=" + port + "\r\nServerIpAddr=10.1.2.3\r\n"), "127.0.0.1 162")
        << port;
    ASSERT_EQ(house.Events().size(), ++failures) << port;
    EXPECT_TRUE(house.Events().back().starts_with(
        "1\tmodQuillonWeb_ReadMorvaneIni\tServerTrapPort in Morvane.ini is "))
        << house.Events().back();
  }
}

TEST_F(MorvaneIniTest, LinesBeforeTheFailingOneCount) {
  EXPECT_EQ(Read("ServerIpAddr=10.1.2.3\r\nServerTrapPort=5\r\nServerTrapPort=x\r\n"
                 "ServerIpAddr=10.9.9.9\r\nServerTrapPort=6\r\n"),
            "10.1.2.3 5");
  EXPECT_EQ(house.Events().size(), 1u);
}

TEST_F(MorvaneIniTest, NulsAreBytesLikeOthers) {
  const std::string nul(1, '\0');
  EXPECT_EQ(Read(nul + "\r\n" + nul + "=a\r\nServerIpAddr" + nul + "=b\r\n" +
                 "ServerIpAddr=10.1.2.3\r\nx" + nul + "=1\r\nServerTrapPort=7\r\n"),
            "10.1.2.3 7");
  EXPECT_TRUE(house.Events().empty());
  EXPECT_EQ(Read("ServerTrapPort=5" + nul + "\r\n"), "127.0.0.1 162");
  EXPECT_EQ(house.Events().size(), 1u);
}

TEST_F(MorvaneIniTest, FileOfAMegabyteIsReadToItsEnd) {
  std::string lines;
  while (lines.size() < 500'000) lines += "Other=value\r\n;ServerIpAddr=10.9.9.9\r\n";
  EXPECT_EQ(Read("ServerIpAddr=10.9.9.9\r\n" + lines + "Long=" + std::string(500'000, 'x') +
                 "\r\nServerIpAddr=10.1.2.3\r\nServerTrapPort=7"),
            "10.1.2.3 7");
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(MorvaneIniTest, EveryReadingBeginsWithTheDefaults) {
  Read("ServerIpAddr=10.1.2.3\r\nServerTrapPort=7\r\n");
  EXPECT_EQ(Read("Other=1\r\n"), "127.0.0.1 162");
}

TEST_F(MorvaneIniTest, FolderOfThatNameIsNoFile) {
  house.settings.ServerTrapPort = 7;
  std::filesystem::create_directories(house.installation.path() + "/folder/Morvane.ini");
  house.settings.MorvaneDir = house.installation.path() + "/folder";
  ReadMorvaneIni(house.service);
  EXPECT_EQ(house.settings.ServerIpAddr, "127.0.0.1");
  EXPECT_EQ(house.settings.ServerTrapPort, 162);
  EXPECT_TRUE(house.Events().empty());
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
