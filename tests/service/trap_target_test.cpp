// Where traps go: to what the settings said when the agent was opened.
#include "service/trap_target.h"

#include "service/morvane_ini.h"
#include "service/service_fixture.h"
#include "service/sockets.h"

namespace quillon {
namespace {

using std::chrono::seconds;

class TrapTargetTest : public ServiceTest {
 protected:
  void WriteIni(const std::string& address, int port) const {
    house.installation.Write("Morvane.ini", "ServerIpAddr=" + address + "\r\nServerTrapPort=" +
                                                std::to_string(port) + "\r\n");
  }
  void Report(const std::string& text) const {
    AppEvent(house.diagnostics, "modHtml", "ReadCssText", text, EventType::kFailure);
  }
  // The traps that left, as "<community> to <recipient>: <text of the event>".
  Lines Traps() const {
    Lines traps;
    for (const RecordingAgent::Sent& sent : house.snmpAgent.sent) {
      constexpr std::size_t kText = 4;  // place of the event's text among the varbinds
      traps.push_back(sent.message.community + " to " + sent.recipient + ": " +
                      std::get<std::string>(sent.message.varbinds.at(kText).value));
    }
    return traps;
  }
};

TEST_F(TrapTargetTest, EventsOfAStartedServiceGoToTheServerOfTheIniFile) {
  WriteIni("127.0.0.2", 1162);
  house.SetSnmpAgent("TrapComm", "secret");
  Start();
  Report("too early");
  EXPECT_EQ(Traps(), Lines{});
  TickAt(seconds(30));
  Report("no such file");
  EXPECT_EQ(Traps(), (Lines{"secret to 127.0.0.2:1162: Service Started. Version: 9.05",
                            "secret to 127.0.0.2:1162: no such file"}));
  EXPECT_EQ(house.Events().size(), 3u);
}

TEST_F(TrapTargetTest, LaterAddressChangesNothing) {
  Start();
  TickAt(seconds(30));
  house.snmpAgent.sent.clear();
  house.settings.ServerIpAddr = "10.1.2.3";
  house.settings.ServerTrapPort = 9;
  Report("first");
  WriteIni("10.4.5.6", 3162);
  ReadMorvaneIni(house.service);
  Report("second");
  EXPECT_EQ(Traps(), (Lines{"public to 127.0.0.1:162: first", "public to 127.0.0.1:162: second"}));
}

TEST_F(TrapTargetTest, AddressBetweenStartAndOpeningCounts) {
  Start();
  house.settings.ServerIpAddr = "127.0.0.3";
  house.settings.ServerTrapPort = 5162;
  TickAt(seconds(30));
  EXPECT_EQ(Traps(), Lines{"public to 127.0.0.3:5162: Service Started. Version: 9.05"});
}

TEST_F(TrapTargetTest, HourlyPassTurnsTrapsOnAndOffAndKeepsTargetAndCommunity) {
  house.SetSnmpAgent("SendAppEvents", "0");
  Start();
  TickAt(seconds(30));
  house.SetSnmpAgent("SendAppEvents", "1");
  house.SetSnmpAgent("TrapComm", "other");
  WriteIni("10.1.2.3", 9);
  Report("before the pass");
  TickAt(seconds(60));
  Report("after the pass");
  EXPECT_EQ(Traps(), Lines{"public to 127.0.0.1:162: after the pass"});

  house.SetSnmpAgent("SendAppEvents", "0");
  TickAt(std::chrono::hours(1));
  Report("off again");
  EXPECT_EQ(Traps().size(), 1u);
}

TEST_F(TrapTargetTest, SwitchWithoutAnAgentSendsNothing) {
  house.SetSnmpAgent("Enabled", "0");
  Start();
  TickAt(seconds(30));
  TickAt(seconds(60));
  EXPECT_TRUE(house.settings.SendAppEvents);
  Report("text");
  EXPECT_EQ(Traps(), Lines{});
  EXPECT_EQ(house.Events().size(), 2u);
}

TEST_F(TrapTargetTest, StopIsToldWhileTheAgentIsStillThere) {
  Start();
  TickAt(seconds(30));
  house.loop.Post([&] { dartSvc_State(house.service, ServiceState::kStop); });
  house.loop.Run();
  EXPECT_EQ(Traps().back(), "public to 127.0.0.1:162: Service Stopped");
}

TEST_F(TrapTargetTest, TrapNamesTheListenerThatTheStartOpened) {
  Start();
  TickAt(seconds(30));
  house.snmpAgent.sent.clear();
  Report("text");
  ASSERT_EQ(house.snmpAgent.sent.size(), 1u);
  const TrapMessage& message = house.snmpAgent.sent[0].message;
  EXPECT_EQ(std::get<std::string>(message.varbinds.at(0).value), "127.0.0.1");
  EXPECT_EQ(message.agentAddress, "127.0.0.1");
}

}  // namespace
}  // namespace quillon
