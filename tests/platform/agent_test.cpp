// The agent on real sockets: what it is bound to, what it sends and to whom.
#include "platform/agent.h"

#include <gtest/gtest.h>

#include <optional>

#include "platform/failure.h"
#include "platform/no_descriptors_left.h"
#include "support/datagram_sockets.h"

namespace quillon {
namespace {

using namespace std::string_literals;
using Code = SocketFailure::Code;

TrapMessage Trap(const std::string& text = "text") {
  TrapMessage message;
  message.community = "public";
  message.enterprise = "1.3.6.1.4.1.7381.2.1.2";
  message.agentAddress = "127.0.0.1";
  message.genericTrap = 6;
  message.specificTrap = 1;
  message.timeStamp = 5900;
  message.varbinds = {{"1.3.6.1.4.1.7381.2.1.1.5", text}};
  return message;
}

std::string RecipientOf(const UdpSocket& receiver, const std::string& address = "127.0.0.1") {
  return address + ":" + std::to_string(receiver.port());
}

// The code of the SocketFailure that opening raises; nothing where it raises none.
std::optional<Code> CodeOfOpening(Agent& agent, std::int32_t port, const std::string& address) {
  try {
    agent.OpenAgent(port, address);
  } catch (const SocketFailure& failure) {
    EXPECT_STRNE(failure.what(), "");
    return failure.code();
  }
  return std::nullopt;
}

class AgentTest : public testing::Test {
 protected:
  void ExpectNotOpen() {
    EXPECT_EQ(agent.LocalAddress(), "");
    EXPECT_EQ(agent.LocalPort(), 0);
    EXPECT_THROW(agent.SendTrapMessage(Trap(), RecipientOf(receiver)), SocketFailure);
  }

  SystemClock clock;
  EventLoop loop{clock};
  UdpAgent agent{loop};
  UdpSocket receiver;
};

TEST_F(AgentTest, OpensWhenThereIsADescriptorAgain) {
  if (kSanitized) GTEST_SKIP() << "sanitizers need descriptors";
  {
    const NoDescriptorsLeft none;
    EXPECT_EQ(CodeOfOpening(agent, 0, "127.0.0.1"), Code::kOther);
  }
  ExpectNotOpen();
  EXPECT_EQ(CodeOfOpening(agent, 0, "127.0.0.1"), std::nullopt);
}

TEST_F(AgentTest, IsBoundToNothingBeforeItIsOpened) {
  ExpectNotOpen();
  EXPECT_EQ(receiver.Arrived(), std::vector<std::string>{});
}

TEST_F(AgentTest, SendsTheTrapFromWhatItIsBoundTo) {
  for (const std::string& address : {"127.0.0.1"s, "127.0.0.2"s, "127.7.8.9"s}) {
    UdpAgent other(loop);
    other.OpenAgent(0, address);
    EXPECT_EQ(other.LocalAddress(), address);
    EXPECT_GT(other.LocalPort(), 0);
    other.SendTrapMessage(Trap(), RecipientOf(receiver));
    EXPECT_EQ(receiver.Next(), EncodeTrap(Trap()));
    EXPECT_EQ(receiver.senderAddress(), address);
    EXPECT_EQ(receiver.senderPort(), other.LocalPort());
  }
}

TEST_F(AgentTest, OpensOnThePortThatIsAskedFor) {
  UdpSocket holder("127.0.0.3");
  const std::int32_t port = holder.port();
  holder.Close();
  agent.OpenAgent(port, "127.0.0.3");
  EXPECT_EQ(agent.LocalPort(), port);
}

TEST_F(AgentTest, SendsEachTrapAsOneDatagramInOrder) {
  agent.OpenAgent(0, "127.0.0.1");
  for (int i = 0; i < 20; ++i) {
    agent.SendTrapMessage(Trap(std::to_string(i)), RecipientOf(receiver));
  }
  for (int i = 0; i < 20; ++i) EXPECT_EQ(receiver.Next(), EncodeTrap(Trap(std::to_string(i))));
  EXPECT_EQ(receiver.Arrived(), std::vector<std::string>{});
}

TEST_F(AgentTest, EachTrapMayHaveARecipientOfItsOwn) {
  UdpSocket second("127.0.0.4");
  agent.OpenAgent(0, "127.0.0.1");
  agent.SendTrapMessage(Trap("second"), RecipientOf(second, "127.0.0.4"));
  agent.SendTrapMessage(Trap("first"), RecipientOf(receiver));
  EXPECT_EQ(receiver.Next(), EncodeTrap(Trap("first")));
  EXPECT_EQ(second.Next(), EncodeTrap(Trap("second")));
  EXPECT_EQ(receiver.Arrived(), std::vector<std::string>{});
}

TEST_F(AgentTest, PortInUseHasItsCode) {
  const UdpSocket holder;
  EXPECT_EQ(CodeOfOpening(agent, holder.port(), "127.0.0.1"), Code::kAddressInUse);
  ExpectNotOpen();
}

TEST_F(AgentTest, PortOfAnotherAgentIsInUse) {
  UdpAgent first(loop);
  first.OpenAgent(0, "127.0.0.1");
  EXPECT_EQ(CodeOfOpening(agent, first.LocalPort(), "127.0.0.1"), Code::kAddressInUse);
}

TEST_F(AgentTest, AddressThatIsNotOfTheMachineHasItsCode) {
  for (const std::string& address :
       {"192.0.2.1"s, ""s, " "s, "localhost"s, "nonsense"s, "127.0.0"s, "300.1.1.1"s, "127.0.0.1 "s,
        "127.0.0.1:162"s, "127.0.0.1\0x"s, "127.0.0.1\0"s}) {
    EXPECT_EQ(CodeOfOpening(agent, 0, address), Code::kAddressNotAvailable)
        << testing::PrintToString(address);
    ExpectNotOpen();
  }
}

TEST_F(AgentTest, PortOutsideTheRangeFails) {
  for (const std::int32_t port : {-1, -32'768, 65'536, 1'000'000}) {
    EXPECT_TRUE(CodeOfOpening(agent, port, "127.0.0.1")) << port;
    ExpectNotOpen();
  }
}

TEST_F(AgentTest, OpensAfterAFailureToOpen) {
  EXPECT_TRUE(CodeOfOpening(agent, 0, "192.0.2.1"));
  agent.OpenAgent(0, "127.0.0.1");
  agent.SendTrapMessage(Trap(), RecipientOf(receiver));
  EXPECT_EQ(receiver.Next(), EncodeTrap(Trap()));
}

TEST_F(AgentTest, GivesItsPortBackAtItsEnd) {
  auto first = std::make_unique<UdpAgent>(loop);
  first->OpenAgent(0, "127.0.0.1");
  const std::int32_t port = first->LocalPort();
  first.reset();
  EXPECT_EQ(CodeOfOpening(agent, port, "127.0.0.1"), std::nullopt);
}

// The system tells a refusal at a later call, where it would be taken for that one's own.
TEST_F(AgentTest, PortWhereNobodyListensFailsNoTrap) {
  agent.OpenAgent(0, "127.0.0.1");
  UdpSocket gone("127.0.0.5");
  const std::string recipient = RecipientOf(gone, "127.0.0.5");
  gone.Close();
  for (int i = 0; i < 10; ++i) {
    EXPECT_NO_THROW(agent.SendTrapMessage(Trap(), recipient));
    loop.DelayMs(10);
  }
  EXPECT_NO_THROW(agent.SendTrapMessage(Trap(), RecipientOf(receiver)));
  EXPECT_EQ(receiver.Next(), EncodeTrap(Trap()));
}

TEST_F(AgentTest, ReceiverThatDoesNotReadHoldsNothingUp) {
  agent.OpenAgent(0, "127.0.0.1");
  const TrapMessage message = Trap(std::string(10'000, 'x'));
  for (int i = 0; i < 2000; ++i) {
    EXPECT_NO_THROW(agent.SendTrapMessage(message, RecipientOf(receiver)));
  }
  EXPECT_EQ(receiver.Next(), EncodeTrap(message));
}

TEST_F(AgentTest, AnswersNothingThatIsSentToIt) {
  agent.OpenAgent(0, "127.0.0.1");
  for (const std::string& bytes : {""s, "x"s, EncodeTrap(Trap())}) {
    receiver.SendTo("127.0.0.1", agent.LocalPort(), bytes);
    loop.DelayMs(20);
  }
  EXPECT_EQ(receiver.Arrived(), std::vector<std::string>{});
  agent.SendTrapMessage(Trap(), RecipientOf(receiver));
  EXPECT_EQ(receiver.Next(), EncodeTrap(Trap()));
}

TEST_F(AgentTest, RecipientThatIsNoneFails) {
  agent.OpenAgent(0, "127.0.0.1");
  const std::string port = std::to_string(receiver.port());
  for (const std::string& recipient :
       {""s, ":"s, ":" + port, "127.0.0.1"s, "127.0.0.1:"s, "127.0.0.1:-1"s, "127.0.0.1:65536"s,
        "127.0.0.1:70000"s, "127.0.0.1:99999999999999999999"s, "127.0.0.1:x"s,
        "127.0.0.1:" + port + "x", "127.0.0.1: " + port, "127.0.0.1:" + port + "\0"s,
        "127.0.0.1\0x:"s + port, "localhost:" + port, "name:162"s, "300.1.1.1:" + port,
        "127.0.0:" + port}) {
    EXPECT_THROW(agent.SendTrapMessage(Trap(), recipient), SocketFailure)
        << testing::PrintToString(recipient);
  }
  EXPECT_EQ(receiver.Arrived(), std::vector<std::string>{});
}

TEST_F(AgentTest, WhatTheSystemRefusesFails) {
  agent.OpenAgent(0, "127.0.0.1");
  EXPECT_THROW(agent.SendTrapMessage(Trap(), "127.0.0.1:0"), SocketFailure);
  EXPECT_THROW(agent.SendTrapMessage(Trap(), "255.255.255.255:162"), SocketFailure);
  EXPECT_THROW(agent.SendTrapMessage(Trap(std::string(70'000, 'x')), RecipientOf(receiver)),
               SocketFailure);
  agent.SendTrapMessage(Trap(), RecipientOf(receiver));
  EXPECT_EQ(receiver.Next(), EncodeTrap(Trap()));
}

TEST_F(AgentTest, AddressOfVersion6SendsZerosAsTheAddressOfTheAgent) {
  std::optional<UdpSocket> receiver6;
  try {
    receiver6.emplace("::1");
  } catch (const std::runtime_error&) {
    GTEST_SKIP() << "the machine has no address of version 6";
  }
  agent.OpenAgent(0, "::1");
  EXPECT_EQ(agent.LocalAddress(), "::1");
  TrapMessage message = Trap();
  message.agentAddress = agent.LocalAddress();
  agent.SendTrapMessage(message, RecipientOf(*receiver6, "::1"));
  message.agentAddress = "0.0.0.0";
  EXPECT_EQ(receiver6->Next(), EncodeTrap(message));
  EXPECT_EQ(receiver6->senderAddress(), "::1");
  EXPECT_EQ(receiver6->senderPort(), agent.LocalPort());
}

}  // namespace
}  // namespace quillon
