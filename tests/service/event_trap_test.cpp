// Application events as traps: what is in a trap, when it leaves, and when none does.
#include "service/event_trap.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "service/diagnostics.h"
#include "support/house.h"

namespace quillon {
namespace {

using namespace std::string_literals;
using std::chrono::milliseconds;
using Lines = std::vector<std::string>;

class EventTrapTest : public testing::Test {
 protected:
  EventTrapTest() {
    house.settings.SendAppEvents = true;
    house.settings.TrapComm = "public";
    house.settings.StartTime = house.clock.Now();
    house.trapTarget = {true, "127.0.0.1", 162};
    house.snmpAgent.OpenAgent(0, "127.0.0.1");
  }

  void Report(std::string_view text, EventType type = EventType::kFailure) const {
    AppEvent(house.diagnostics, "modHtml", "ReadCssText", text, type);
  }

  // The trap of an event, without the line and the wait in front.
  TrapMessage TrapOf(std::string_view text) {
    SendEventTrap(house.diagnostics, "modHtml", "ReadCssText", text, 1);
    return house.snmpAgent.sent.back().message;
  }

  static std::string TextOf(const TrapMessage& trap) {
    return std::get<std::string>(trap.varbinds.at(4).value);
  }

  // The texts of the traps, oldest first.
  Lines SentTexts() const {
    Lines texts;
    for (const RecordingAgent::Sent& sent : house.snmpAgent.sent) {
      texts.push_back(TextOf(sent.message));
    }
    return texts;
  }

  House house;
};

TEST_F(EventTrapTest, GoesToTheTargetAsOneText) {
  house.trapTarget.ServerIpAddr = "10.1.2.3";
  house.trapTarget.ServerTrapPort = 1162;
  Report("text");
  ASSERT_EQ(house.snmpAgent.sent.size(), 1u);
  EXPECT_EQ(house.snmpAgent.sent[0].recipient, "10.1.2.3:1162");
}

TEST_F(EventTrapTest, TargetStandsInTheRecipientAsItIs) {
  struct Case {
    std::string address;
    std::int16_t port;
    std::string recipient;
  };
  const Case cases[] = {{"10.1.2.3", 32767, "10.1.2.3:32767"},
                        {"10.1.2.3", -1, "10.1.2.3:-1"},
                        {"", 0, ":0"},
                        {"::1", 162, "::1:162"}};
  for (const Case& row : cases) {
    house.trapTarget.ServerIpAddr = row.address;
    house.trapTarget.ServerTrapPort = row.port;
    TrapOf("text");
    EXPECT_EQ(house.snmpAgent.sent.back().recipient, row.recipient);
  }
}

TEST_F(EventTrapTest, TargetIsTheOneOfTheOpeningAndNotThePresentSetting) {
  house.settings.ServerIpAddr = "10.9.9.9";
  house.settings.ServerTrapPort = 999;
  Report("text");
  EXPECT_EQ(house.snmpAgent.sent.at(0).recipient, "127.0.0.1:162");
}

TEST_F(EventTrapTest, IsAnEnterpriseSpecificTrapOfTheAgent) {
  house.snmpAgent.localAddress = "10.4.5.6";
  house.settings.TrapComm = "two words";
  Report("text");
  const TrapMessage& trap = house.snmpAgent.sent.at(0).message;
  EXPECT_EQ(trap.community, "two words");
  EXPECT_EQ(trap.enterprise, "1.3.6.1.4.1.7381.2.1.2");
  EXPECT_EQ(trap.agentAddress, "10.4.5.6");
  EXPECT_EQ(trap.genericTrap, 6);
  EXPECT_EQ(trap.specificTrap, 1);
}

TEST_F(EventTrapTest, HasSixVariablesInOrder) {
  house.tcpServer.SetLocalHost("10.1.2.3");
  AppEvent(house.diagnostics, "frmQuillonWeb", "dartSvc_State", "Service Stopped",
           EventType::kNotice);
  const std::vector<Varbind>& varbinds = house.snmpAgent.sent.at(0).message.varbinds;
  ASSERT_EQ(varbinds.size(), 6u);
  const std::string texts[] = {"10.1.2.3", "Quillon Web", "frmQuillonWeb", "dartSvc_State",
                               "Service Stopped"};
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(varbinds[i].identifier, "1.3.6.1.4.1.7381.2.1.1." + std::to_string(i + 1));
  }
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(std::get<std::string>(varbinds[i].value), texts[i]);
  }
  EXPECT_EQ(std::get<std::int32_t>(varbinds[5].value), 3);
}

TEST_F(EventTrapTest, TypeIsAnInteger) {
  for (const EventType type : {EventType::kFailure, EventType::kFailedMail, EventType::kNotice}) {
    Report("text", type);
    EXPECT_EQ(std::get<std::int32_t>(house.snmpAgent.sent.back().message.varbinds.at(5).value),
              static_cast<std::int32_t>(type));
  }
}

TEST_F(EventTrapTest, FirstVariableIsWhatTheListenerIsBoundTo) {
  house.tcpServer.SetLocalHost("127.0.0.2");
  house.tcpServer.SetLocalPort(0);
  house.tcpServer.SetListening(true);
  house.tcpServer.SetLocalHost("192.0.2.1");  // for its next opening
  EXPECT_EQ(std::get<std::string>(TrapOf("text").varbinds.at(0).value), "127.0.0.2");
  house.tcpServer.SetListening(false);
  EXPECT_EQ(std::get<std::string>(TrapOf("text").varbinds.at(0).value), "192.0.2.1");
}

TEST_F(EventTrapTest, TextIsCutAt240Characters) {
  for (const std::size_t length : {0, 1, 239, 240, 241, 300, 100'000}) {
    const std::string text = std::string(length, 'x') + "y";
    EXPECT_EQ(TextOf(TrapOf(text)), text.substr(0, 240)) << length;
  }
  EXPECT_EQ(TextOf(TrapOf("")), "");
}

TEST_F(EventTrapTest, TextOf300CharactersStandsWholeInTheFile) {
  const std::string text = std::string(239, 'x') + "yz" + std::string(59, 'x');
  Report(text);
  EXPECT_EQ(house.Events(), Lines{"1\tmodHtml_ReadCssText\t" + text});
  EXPECT_EQ(SentTexts(), Lines{std::string(239, 'x') + "y"});
}

TEST_F(EventTrapTest, CharactersOfUtf8AreCountedAndNotItsBytes) {
  const std::string letter = "\xC3\xBC";
  std::string letters;
  for (int i = 0; i < 240; ++i) letters += letter;
  house.settings.CharSet = "UTF-8";
  EXPECT_EQ(TextOf(TrapOf(letters + letter)), letters);
  EXPECT_EQ(TextOf(TrapOf("x" + letters)), "x" + letters.substr(0, 478));
  house.settings.CharSet = "ISO-8859-1";
  EXPECT_EQ(TextOf(TrapOf(std::string(300, '\xFC'))), std::string(240, '\xFC'));
}

TEST_F(EventTrapTest, TextWithLineEndsIsTheOneOfTheFile) {
  Report("first\r\nsecond\nthird\rfourth");
  ASSERT_EQ(house.Events().size(), 1u);
  ASSERT_EQ(house.snmpAgent.sent.size(), 1u);
  EXPECT_EQ("1\tmodHtml_ReadCssText\t" + SentTexts()[0], house.Events()[0]);
}

TEST_F(EventTrapTest, CommunityIsInTheCharsetOfThePages) {
  struct Case {
    std::string charSet;
    std::string community;
  };
  const Case cases[] = {{"ISO-8859-1", "Z\xFCrich 5 ?"},
                        {"ISO-8859-15", "Z\xFCrich 5 \xA4"},
                        {"UTF-8", "Z\u00FCrich 5 \u20AC"}};
  house.settings.TrapComm = "Z\u00FCrich 5 \u20AC";
  for (const Case& row : cases) {
    house.settings.CharSet = row.charSet;
    EXPECT_EQ(TrapOf("text").community, row.community) << row.charSet;
  }
}

TEST_F(EventTrapTest, TextAndNamesAreNotConverted) {
  house.settings.CharSet = "ISO-8859-1";
  SendEventTrap(house.diagnostics, "mod\xFC", "Proc\xFC", "text \xFC", 1);
  const std::vector<Varbind>& varbinds = house.snmpAgent.sent.at(0).message.varbinds;
  EXPECT_EQ(std::get<std::string>(varbinds.at(2).value), "mod\xFC");
  EXPECT_EQ(std::get<std::string>(varbinds.at(3).value), "Proc\xFC");
  EXPECT_EQ(std::get<std::string>(varbinds.at(4).value), "text \xFC");
}

TEST_F(EventTrapTest, TimeStampIsWholeSecondsSinceTheStartInHundredths) {
  using std::chrono::seconds;
  struct Case {
    milliseconds sinceStart;
    std::uint32_t timeStamp;
  };
  constexpr seconds kDay{86'400};
  const Case cases[] = {
      {milliseconds(0), 0},
      {milliseconds(999), 0},
      {milliseconds(1000), 100},
      {milliseconds(30'999), 3000},
      {60 * kDay, 518'400'000},
      {249 * kDay, 2'151'360'000},
      {497 * kDay, 4'294'080'000},
      // The count of a 32-bit number begins anew.
      {seconds(42'949'672), 4'294'967'200},
      {seconds(42'949'673), 4},
      {498 * kDay, 7'752'704},
      // The clock was put back.
      {milliseconds(-1), 0},
      {milliseconds(-1000), 0},
      {-kDay, 0},
  };
  for (const milliseconds fraction : {milliseconds(0), milliseconds(999)}) {
    house.settings.StartTime = MakeDateTime({2024, 5, 2, 12, 0, 0}) + fraction;
    for (const Case& row : cases) {
      house.clock.Set(house.settings.StartTime + row.sinceStart);
      EXPECT_EQ(TrapOf("text").timeStamp, row.timeStamp)
          << row.sinceStart.count() << " ms after a start at " << fraction.count() << " ms";
    }
  }
}

TEST_F(EventTrapTest, TimeStampIsThatOfTheSendingAfterTheWait) {
  struct Case {
    milliseconds sinceStart;
    std::uint32_t timeStamp;
  };
  const Case cases[] = {{milliseconds(59'499), 5900}, {milliseconds(59'500), 6000}};
  for (const Case& row : cases) {
    house.clock.Set(house.settings.StartTime + row.sinceStart);
    Report("text");
    EXPECT_EQ(house.snmpAgent.sent.back().message.timeStamp, row.timeStamp);
  }
}

TEST_F(EventTrapTest, LeavesAfterTheLineAndTheWait) {
  Lines linesInTheWait;
  std::size_t sentInTheWait = 99;
  house.loop.Post([&] {
    linesInTheWait = house.Events();
    sentInTheWait = house.snmpAgent.sent.size();
  });
  Report("text");
  EXPECT_EQ(linesInTheWait, Lines{"1\tmodHtml_ReadCssText\ttext"});
  EXPECT_EQ(sentInTheWait, 0u);
  EXPECT_EQ(house.clock.slept(), milliseconds(500));
  EXPECT_EQ(SentTexts(), Lines{"text"});
}

TEST_F(EventTrapTest, LeavesWithTheSwitchOnAndTheAgentOpenOnly) {
  for (const bool sendAppEvents : {false, true}) {
    for (const bool agentOpen : {false, true}) {
      House fresh;
      fresh.settings.SendAppEvents = sendAppEvents;
      fresh.trapTarget.SnmpAgentOpen = agentOpen;
      AppEvent(fresh.diagnostics, "modHtml", "ReadCssText", "text", EventType::kFailure);
      EXPECT_EQ(fresh.Events(), Lines{"1\tmodHtml_ReadCssText\ttext"});
      EXPECT_EQ(fresh.clock.slept(), milliseconds(500));
      EXPECT_EQ(fresh.snmpAgent.sent.size(), sendAppEvents && agentOpen ? 1u : 0u)
          << sendAppEvents << agentOpen;
    }
  }
}

TEST_F(EventTrapTest, SwitchesCountAsTheyAreAfterTheWait) {
  for (bool* const item : {&house.settings.SendAppEvents, &house.trapTarget.SnmpAgentOpen}) {
    for (const bool after : {false, true}) {
      house.snmpAgent.sent.clear();
      *item = !after;
      house.loop.Post([&] { *item = after; });
      Report("text");
      EXPECT_EQ(house.snmpAgent.sent.size(), after ? 1u : 0u);
    }
  }
}

TEST_F(EventTrapTest, NestedEventsTrapLeavesFirst) {
  house.loop.Post([&] {
    house.loop.Post([&] { Report("innermost"); });
    Report("inner");
  });
  Report("outer");
  EXPECT_EQ(SentTexts(), (Lines{"innermost", "inner", "outer"}));
}

TEST_F(EventTrapTest, FailureToSendEndsTheEventSilently) {
  house.snmpAgent.sendingFails = true;
  EXPECT_NO_THROW(Report("first"));
  house.snmpAgent.sendingFails = false;
  Report("second");
  EXPECT_EQ(house.Events(),
            (Lines{"1\tmodHtml_ReadCssText\tfirst", "1\tmodHtml_ReadCssText\tsecond"}));
  EXPECT_EQ(house.clock.slept(), milliseconds(1000));
  EXPECT_EQ(SentTexts(), Lines{"second"});
}

TEST_F(EventTrapTest, FailureToSendIsTheCallersWithoutAnEvent) {
  house.snmpAgent.sendingFails = true;
  EXPECT_THROW(SendEventTrap(house.diagnostics, "modHtml", "ReadCssText", "text", 1),
               SocketFailure);
}

TEST_F(EventTrapTest, EndOfTheLoopInTheWaitSendsNone) {
  house.loop.Post([&] { house.loop.Quit(); });
  EXPECT_THROW(Report("text"), LoopEnded);
  EXPECT_EQ(house.Events(), Lines{"1\tmodHtml_ReadCssText\ttext"});
  EXPECT_TRUE(house.snmpAgent.sent.empty());
}

TEST_F(EventTrapTest, WithoutTheFolderThereIsNeitherLineNorWaitNorTrap) {
  std::filesystem::remove(house.installation.path() + "/Debug");
  Report("text");
  EXPECT_FALSE(house.installation.Exists("Debug"));
  EXPECT_EQ(house.clock.slept(), milliseconds(0));
  EXPECT_TRUE(house.snmpAgent.sent.empty());
}

TEST_F(EventTrapTest, FileThatCannotBeWrittenSendsNoTrap) {
  std::filesystem::create_directory(house.installation.path() + "/Debug/AppEventWeb.txt");
  Report("text");
  EXPECT_TRUE(house.snmpAgent.sent.empty());
}

TEST_F(EventTrapTest, ManyEventsLoseNoLineAndNoTrap) {
  constexpr int kEvents = 10'000;
  Lines lines;
  Lines texts;
  for (int i = 0; i < kEvents; ++i) {
    texts.push_back("event " + std::to_string(i));
    lines.push_back("1\tmodHtml_ReadCssText\t" + texts.back());
    Report(texts.back());
  }
  EXPECT_TRUE(house.Events() == lines);
  EXPECT_TRUE(SentTexts() == texts);
  EXPECT_EQ(house.snmpAgent.sent.back().message.timeStamp, kEvents * 50u);
  EXPECT_EQ(house.clock.slept(), kEvents * milliseconds(500));
}

}  // namespace
}  // namespace quillon
