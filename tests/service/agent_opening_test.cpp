// Opening the agent by its settings row.
#include <gtest/gtest.h>

#include <filesystem>

#include "service/sockets.h"
#include "support/service_house.h"

namespace quillon {
namespace {

using Code = SocketFailure::Code;
using Lines = std::vector<std::string>;
using std::chrono::milliseconds;

constexpr const char* kAgentHead = "############ SNMP Agent Started ###########\r\n";

class AgentOpeningTest : public testing::Test {
 protected:
  AgentOpeningTest() {
    house.settings.ServerIpAddr = "127.0.0.2";
    house.settings.ServerTrapPort = 1162;
    house.SetSnmpAgent("TrapComm", "secret");
    house.SetSnmpAgent("Status", "of the last run");
  }

  void Open() { ServiceOpen(house.service, "snmpAgent"); }
  void Sql(const std::string& statements) const {
    house.installation.Sql("Quillon.mdb", statements);
  }
  std::string ServicesFile() const { return house.installation.Read("Debug/WebServices.txt"); }
  bool HasServicesFile() const { return house.installation.Exists("Debug/WebServices.txt"); }

  // Everything that the opening may set is as it was before.
  void ExpectNothingIsSet() const {
    EXPECT_FALSE(house.settings.SendAppEvents);
    EXPECT_EQ(house.settings.TrapComm, "");
    EXPECT_FALSE(house.trapTarget.SnmpAgentOpen);
    EXPECT_EQ(house.trapTarget.ServerIpAddr, "");
    EXPECT_EQ(house.trapTarget.ServerTrapPort, 0);
  }

  // The one event of the house is that failure of the opening.
  void ExpectFailure(const std::string& text) const {
    EXPECT_EQ(house.Events(), Lines{"1\tmodQuillonWeb_ServiceOpen\t" + text});
  }

  ServiceHouse house;
};

TEST_F(AgentOpeningTest, EnabledAgentOpensOnTheAddressOfTheIniFile) {
  Open();
  EXPECT_EQ(house.snmpAgent.openings, 1);
  EXPECT_EQ(house.snmpAgent.localAddress, "127.0.0.2");
  EXPECT_EQ(house.snmpAgent.localPort, 40'161);  // what the agent makes of port 0
  EXPECT_EQ(house.clock.slept(), milliseconds(1000));
  EXPECT_EQ(house.Events(), Lines{});
}

TEST_F(AgentOpeningTest, SwitchTargetAndCommunityAreFixed) {
  Open();
  EXPECT_TRUE(house.settings.SendAppEvents);
  EXPECT_EQ(house.settings.TrapComm, "secret");
  EXPECT_TRUE(house.trapTarget.SnmpAgentOpen);
  EXPECT_EQ(house.trapTarget.ServerIpAddr, "127.0.0.2");
  EXPECT_EQ(house.trapTarget.ServerTrapPort, 1162);
}

TEST_F(AgentOpeningTest, SwitchThatIsOffIsTakenToo) {
  house.settings.SendAppEvents = true;
  house.SetSnmpAgent("SendAppEvents", "0");
  Open();
  EXPECT_FALSE(house.settings.SendAppEvents);
  EXPECT_TRUE(house.trapTarget.SnmpAgentOpen);
}

TEST_F(AgentOpeningTest, SuccessIsNotStoredInTheRow) {
  Open();
  EXPECT_EQ(house.installation.Select("Quillon.mdb", "SELECT * FROM Settings_SnmpAgent"),
            Lines{"1|1|secret|of the last run"});
}

TEST_F(AgentOpeningTest, AgentThatIsNotEnabledOpensNothing) {
  house.SetSnmpAgent("Enabled", "0");
  Open();
  EXPECT_EQ(house.snmpAgent.openings, 0);
  EXPECT_EQ(house.clock.slept(), milliseconds(0));
  ExpectNothingIsSet();
  EXPECT_EQ(house.SnmpAgent("Status"), "of the last run");
  EXPECT_EQ(house.Events(), Lines{});
  EXPECT_FALSE(HasServicesFile());
}

TEST_F(AgentOpeningTest, AgentThatIsNotEnabledKeepsTheSwitchOfBefore) {
  house.settings.SendAppEvents = true;
  house.settings.TrapComm = "of before";
  house.SetSnmpAgent("SendAppEvents", "0");
  house.SetSnmpAgent("Enabled", "0");
  Open();
  EXPECT_TRUE(house.settings.SendAppEvents);
  EXPECT_EQ(house.settings.TrapComm, "of before");
}

TEST_F(AgentOpeningTest, WithoutDebugModeThereIsNoDebugFile) {
  Open();
  EXPECT_FALSE(HasServicesFile());
}

TEST_F(AgentOpeningTest, DebugModeWritesTheStatusAnew) {
  house.settings.DebugMode = true;
  house.settings.DatumFormat = "DD/MM/YYYY";
  house.installation.Write("Debug/WebServices.txt", "before\r\n");
  Open();
  EXPECT_EQ(ServicesFile(), std::string(kAgentHead) +
                                "02/05/2024 12:00:01\r\nSNMP Agent Started\r\nIP=127.0.0.2\r\n"
                                "Port=40161\r\n\r\n");
}

TEST_F(AgentOpeningTest, DebugModeTellsWhatIsNotEnabled) {
  house.settings.DebugMode = true;
  house.SetSnmpAgent("Enabled", "0");
  house.installation.Write("Debug/WebServices.txt", "before\r\n");
  Open();
  EXPECT_EQ(ServicesFile(), std::string(kAgentHead) + "Not Started\r\n\r\n");
  EXPECT_EQ(house.SnmpAgent("Status"), "of the last run");
}

TEST_F(AgentOpeningTest, ListenerAppendsItsStatusBehindThatOfTheAgent) {
  house.settings.DebugMode = true;
  house.SetWebServer("Enabled", "0");
  Open();
  const std::string ofTheAgent = ServicesFile();
  ServiceOpen(house.service, "tcpServer");
  EXPECT_EQ(ServicesFile(),
            ofTheAgent + "########### Web Server Started ############\r\nNot Started\r\n\r\n");
}

// What the agent tells of itself, and the target, are those of the moment behind the wait.
TEST_F(AgentOpeningTest, AddressesAreReadBehindTheWait) {
  house.settings.DebugMode = true;
  house.loop.Post([&] {
    house.snmpAgent.localAddress = "127.0.0.9";
    house.snmpAgent.localPort = 9;
    house.settings.ServerIpAddr = "10.1.2.3";
    house.settings.ServerTrapPort = 3162;
  });
  Open();
  EXPECT_NE(ServicesFile().find("IP=127.0.0.9\r\nPort=9\r\n"), std::string::npos);
  EXPECT_EQ(house.trapTarget.ServerIpAddr, "10.1.2.3");
  EXPECT_EQ(house.trapTarget.ServerTrapPort, 3162);
}

TEST_F(AgentOpeningTest, NothingIsSetBeforeTheWaitIsOver) {
  bool looked = false;
  house.loop.Post([&] {
    looked = true;
    EXPECT_EQ(house.snmpAgent.openings, 1);
    ExpectNothingIsSet();
  });
  Open();
  EXPECT_TRUE(looked);
}

TEST_F(AgentOpeningTest, EventInsideTheWaitIsNoTrapYet) {
  house.settings.SendAppEvents = true;
  house.loop.Post([&] { AppEvent(house.diagnostics, "m", "p", "nested", EventType::kNotice); });
  Open();
  EXPECT_EQ(house.Events(), Lines{"3\tm_p\tnested"});
  EXPECT_TRUE(house.snmpAgent.sent.empty());
}

TEST_F(AgentOpeningTest, EndOfTheLoopInsideTheWaitLeavesTheAgentUnused) {
  house.loop.Post([&] { house.loop.Quit(); });
  EXPECT_THROW(Open(), LoopEnded);
  ExpectNothingIsSet();
  EXPECT_EQ(house.Events(), Lines{});
}

TEST_F(AgentOpeningTest, FailureOfTheAgentHasItsTextAndItsStatus) {
  struct Case {
    Code code;
    std::string event;
    std::string status;
  };
  const Case cases[] = {
      {Code::kAddressInUse, "SNMP Agent Port was in use", "Port was in use"},
      {Code::kAddressNotAvailable, "SNMP Agent IP Address is not valid", "IP Address is not valid"},
      {Code::kOther, "the socket broke", ""},
  };
  for (const Case& row : cases) {
    ServiceHouse fresh;
    fresh.settings.DatumFormat = "MM/DD/YYYY";
    fresh.snmpAgent.openingFails = row.code;
    fresh.snmpAgent.openingFailure = "the socket broke";
    ServiceOpen(fresh.service, "snmpAgent");
    EXPECT_EQ(fresh.Events(), Lines{"1\tmodQuillonWeb_ServiceOpen\t" + row.event});
    EXPECT_EQ(fresh.SnmpAgent("Status"), "05/02/2024 12:00:00\r\nFailed to Start\r\n" + row.status);
  }
}

TEST_F(AgentOpeningTest, AgentThatFailedSetsNothingAndSendsNothing) {
  house.settings.DebugMode = true;
  house.installation.Write("Debug/WebServices.txt", "before\r\n");
  house.snmpAgent.openingFails = Code::kAddressInUse;
  Open();
  ExpectNothingIsSet();
  EXPECT_EQ(house.clock.slept(), milliseconds(500));  // the event's alone
  EXPECT_EQ(ServicesFile(), "before\r\n");
  house.settings.SendAppEvents = true;
  AppEvent(house.diagnostics, "m", "p", "text", EventType::kNotice);
  EXPECT_TRUE(house.snmpAgent.sent.empty());
}

TEST_F(AgentOpeningTest, FailureStoresNothingButTheStatus) {
  house.snmpAgent.openingFails = Code::kOther;
  Open();
  EXPECT_EQ(house.installation.Select(
                "Quillon.mdb", "SELECT Enabled, SendAppEvents, TrapComm FROM Settings_SnmpAgent"),
            Lines{"1|1|secret"});
}

TEST_F(AgentOpeningTest, StatusOfAFailureTellsItsMomentAndNotTheEventsEnd) {
  house.clock.Set(MakeDateTime({2024, 5, 2, 12, 0, 0, 700}));
  house.snmpAgent.openingFails = Code::kAddressInUse;
  Open();
  EXPECT_EQ(house.SnmpAgent("Status"), "2024-05-02 12:00:00\r\nFailed to Start\r\nPort was in use");
}

TEST_F(AgentOpeningTest, FailedAgentIsNotTriedAgainAndLeavesTheListenerAlone) {
  house.snmpAgent.openingFails = Code::kAddressNotAvailable;
  Open();
  ServiceOpen(house.service, "tcpServer");
  EXPECT_TRUE(house.tcpServer.Listening());
  EXPECT_EQ(house.snmpAgent.openings, 1);
}

TEST_F(AgentOpeningTest, NullInEnabledOpensNothing) {
  Sql("UPDATE Settings_SnmpAgent SET Enabled = NULL");
  Open();
  EXPECT_EQ(house.snmpAgent.openings, 0);
  ExpectFailure("field Enabled holds null and not a truth value");
  EXPECT_EQ(house.SnmpAgent("Status"), "2024-05-02 12:00:00\r\nFailed to Start\r\n");
}

TEST_F(AgentOpeningTest, NullInTheSwitchFailsBeforeTheTargetIsCopied) {
  Sql("UPDATE Settings_SnmpAgent SET SendAppEvents = NULL");
  Open();
  EXPECT_EQ(house.snmpAgent.openings, 1);
  ExpectFailure("field SendAppEvents holds null and not a truth value");
  ExpectNothingIsSet();
  EXPECT_EQ(house.SnmpAgent("Status"), "2024-05-02 12:00:01\r\nFailed to Start\r\n");
}

TEST_F(AgentOpeningTest, NullInTheCommunityFailsBehindTheTarget) {
  house.settings.TrapComm = "of before";
  Sql("UPDATE Settings_SnmpAgent SET TrapComm = NULL");
  Open();
  ExpectFailure("field TrapComm holds null and not a text");
  EXPECT_TRUE(house.settings.SendAppEvents);
  EXPECT_EQ(house.trapTarget.ServerIpAddr, "127.0.0.2");
  EXPECT_EQ(house.trapTarget.ServerTrapPort, 1162);
  EXPECT_EQ(house.settings.TrapComm, "of before");
  EXPECT_FALSE(house.trapTarget.SnmpAgentOpen);
  EXPECT_TRUE(house.snmpAgent.sent.empty());
}

// The agent is open by then, so the failure goes out as a trap.
TEST_F(AgentOpeningTest, DebugFileThatCannotBeWrittenIsAFailureOfAnOpenAgent) {
  house.settings.DebugMode = true;
  std::filesystem::create_directory(house.installation.path() + "/Debug/WebServices.txt");
  Open();
  EXPECT_TRUE(house.trapTarget.SnmpAgentOpen);
  ASSERT_EQ(house.Events().size(), 1u);
  EXPECT_TRUE(house.Events()[0].starts_with("1\tmodQuillonWeb_ServiceOpen\t"));
  EXPECT_EQ(house.snmpAgent.sent.size(), 1u);
  EXPECT_EQ(house.SnmpAgent("Status"), "2024-05-02 12:00:01\r\nFailed to Start\r\n");
}

TEST_F(AgentOpeningTest, TableWithoutARowIsReportedOnce) {
  Sql("DELETE FROM Settings_SnmpAgent");
  Open();
  EXPECT_EQ(house.snmpAgent.openings, 0);
  ExpectFailure("Quillon.mdb: no current row");
  ExpectNothingIsSet();
}

TEST_F(AgentOpeningTest, MissingTableIsReportedOnce) {
  Sql("DROP TABLE Settings_SnmpAgent");
  Open();
  EXPECT_EQ(house.snmpAgent.openings, 0);
  ExpectFailure("Quillon.mdb: no such table: Settings_SnmpAgent");
  ExpectNothingIsSet();
}

TEST_F(AgentOpeningTest, MissingDatabaseIsReportedOnce) {
  house.settings.ConnMain = "Provider=SQLite;Data Source=" + house.installation.path() + "/none";
  Open();
  EXPECT_EQ(house.snmpAgent.openings, 0);
  ExpectFailure("none: the database file is missing");
}

TEST_F(AgentOpeningTest, SettingsMayBeWrittenByOthersInsideTheWait) {
  bool written = false;
  house.loop.Post([&] {
    Sql("UPDATE Settings_SnmpAgent SET Status = 'of another'");
    written = true;
  });
  Open();
  EXPECT_TRUE(written);
  EXPECT_EQ(house.SnmpAgent("Status"), "of another");
}

TEST_F(AgentOpeningTest, SettingsMayBeWrittenByOthersInsideTheEventOfAFailure) {
  house.snmpAgent.openingFails = Code::kOther;
  bool written = false;
  house.loop.Post([&] {
    house.SetWebServer("Status", "of another");
    written = true;
  });
  Open();
  EXPECT_TRUE(written);
}

TEST_F(AgentOpeningTest, ClosingTheAgentDoesNothing) {
  Open();
  ServiceClose(house.service, "snmpAgent");
  EXPECT_TRUE(house.trapTarget.SnmpAgentOpen);
  EXPECT_EQ(house.SnmpAgent("Status"), "of the last run");
  EXPECT_EQ(house.Events(), Lines{});
}

}  // namespace
}  // namespace quillon
