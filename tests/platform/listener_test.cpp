// The listener on real sockets: ids, reads, sends, and the listening socket itself.
// Events inside the waits of other events are in listener_nesting_test.
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "platform/listener_fixture.h"
#include "platform/no_descriptors_left.h"

namespace quillon {
namespace {

constexpr std::size_t kMiB = 1024 * 1024;

// A client that breaks off before anybody has looked at it.
void ConnectAndReset(std::int32_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const int client = socket(AF_INET, SOCK_STREAM, 0);
  ASSERT_EQ(connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  const linger atOnce{1, 0};
  ASSERT_EQ(setsockopt(client, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce), 0);
  close(client);
}

// The code of the SocketFailure that opening raises; -1 where it raises none.
int CodeOfOpening(Listener& listener) {
  try {
    listener.SetListening(true);
  } catch (const SocketFailure& failure) {
    EXPECT_STRNE(failure.what(), "");
    return static_cast<int>(failure.code());
  }
  return -1;
}

TEST_F(ListenerTest, ConnectionsGetTheLowestFreeIdFromOneOn) {
  const Client first = Connect();
  const Client second = Connect();
  const Client third = Connect();
  CloseAndSettle(*second);
  CloseAndSettle(*first);
  const Client fourth = Connect();
  const Client fifth = Connect();
  const Client sixth = Connect();
  EXPECT_EQ(events.connected, (std::vector<ConnectionId>{1, 2, 3, 1, 2, 4}));
}

TEST_F(ListenerTest, IdsGoOnBeyondTwenty) {
  std::vector<Client> clients;
  for (int i = 0; i < 25; ++i) clients.push_back(Connect());
  EXPECT_EQ(events.connected.back(), 25);
  EXPECT_TRUE(listener.Connected(25));
}

TEST_F(ListenerTest, ConnectionRunsFromConnectedToDisconnected) {
  const Client client = ConnectUnnoticed();
  client->Send("text");
  client->Close();
  Settle();
  EXPECT_EQ(events.log, (Log{"connected 1", "data 1", "disconnected 1"}));
  EXPECT_EQ(events.reads[1], Log{"text"});
}

TEST_F(ListenerTest, OneReadIsOneEvent) {
  const Client client = Connect();
  SendAndSettle(*client, "GET /a HTTP/1.1\r\n\r\nGET /b HTTP/1.1\r\n\r\n");
  SendAndSettle(*client, "x");
  EXPECT_EQ(events.reads[1], (Log{"GET /a HTTP/1.1\r\n\r\nGET /b HTTP/1.1\r\n\r\n", "x"}));
}

TEST_F(ListenerTest, LongTextArrivesInPiecesOf64KiBAtMost) {
  const Client client = Connect();
  const std::string text = CountedText(70'000);
  SendAndSettle(*client, text);
  EXPECT_GE(events.reads[1].size(), 2u);
  for (const std::string& piece : events.reads[1]) EXPECT_LE(piece.size(), Listener::kReadSize);
  EXPECT_TRUE(Joined(events.reads[1]) == text);
}

TEST_F(ListenerTest, BytesOfAllKindsArriveAsTheyAre) {
  const Client client = Connect();
  const std::string bytes("\0\xFF\x80\r\n", 5);
  SendAndSettle(*client, bytes);
  EXPECT_EQ(events.reads[1], Log{bytes});
  listener.DataToSend(1, bytes);
  ReceiveUpTo(*client, bytes.size());
  EXPECT_EQ(client->received(), bytes);
}

TEST_F(ListenerTest, ConnectedIsTrueForOpenConnectionsOnly) {
  for (const int id : {-1, 0, 1, 20, 21, 32767}) {
    EXPECT_FALSE(listener.Connected(static_cast<ConnectionId>(id))) << id;
  }
  const Client client = Connect();
  EXPECT_TRUE(listener.Connected(1));
  EXPECT_FALSE(listener.Connected(2));
  CloseAndSettle(*client);
  EXPECT_FALSE(listener.Connected(1));
}

TEST_F(ListenerTest, PeerIsKnownWhileTheConnectionIsUp) {
  const Client client = Connect();
  EXPECT_EQ(listener.RemoteHost(1), "127.0.0.1");
  EXPECT_EQ(listener.RemotePort(1), client->localPort());
  EXPECT_EQ(listener.RemoteHost(2), "");
  EXPECT_EQ(listener.RemotePort(2), 0);
  CloseAndSettle(*client);
  EXPECT_EQ(listener.RemoteHost(1), "");
  EXPECT_EQ(listener.RemotePort(1), 0);
}

TEST_F(ListenerTest, EmptyAssignmentSendsNothing) {
  const Client client = Connect();
  listener.DataToSend(1, "");
  listener.DataToSend(1, "text");
  ReceiveUpTo(*client, 4);
  Settle();
  EXPECT_EQ(client->received(), "text");
}

TEST_F(ListenerTest, AssignmentToAConnectionThatIsNotUpFails) {
  EXPECT_THROW(listener.DataToSend(1, "text"), SocketFailure);
  EXPECT_THROW(listener.DataToSend(0, "text"), SocketFailure);
  const Client client = Connect();
  CloseAndSettle(*client);
  EXPECT_THROW(listener.DataToSend(1, "text"), SocketFailure);
}

TEST_F(ListenerTest, SlowReaderGetsAllTextsWholeAndInOrder) {
  const Client client = Connect();
  const std::string text = CountedText(5 * kMiB);
  listener.DataToSend(1, text);
  listener.DataToSend(1, "second");
  Settle();
  listener.DataToSend(1, "third");
  ReceiveUpTo(*client, text.size() + 11);
  EXPECT_EQ(client->received().size(), text.size() + 11);
  EXPECT_TRUE(client->received() == text + "secondthird");
}

TEST_F(ListenerTest, SlowReaderDoesNotHoldOthersUp) {
  const Client slow = Connect();
  const Client quick = Connect();
  listener.DataToSend(1, std::string(10 * kMiB, 'x'));
  listener.DataToSend(2, "text");
  Settle();
  quick->Receive();
  EXPECT_EQ(quick->received(), "text");
}

TEST_F(ListenerTest, AssignmentToAClientThatDoesNotReadFailsBeyond16MiB) {
  const Client client = Connect();
  std::size_t accepted = 0;
  try {
    for (; accepted < 64; ++accepted) {
      listener.DataToSend(1, std::string(kMiB, static_cast<char>('A' + accepted % 26)));
      loop.Pump();
    }
  } catch (const SocketFailure&) {
  }
  EXPECT_GE(accepted, 17u);
  EXPECT_LT(accepted, 64u);
  EXPECT_TRUE(listener.Connected(1));
  ReceiveUpTo(*client, accepted * kMiB);
  EXPECT_EQ(client->received().size(), accepted * kMiB);
  listener.DataToSend(1, "again");
  ReceiveUpTo(*client, accepted * kMiB + 5);
  EXPECT_EQ(client->received().substr(accepted * kMiB), "again");
}

TEST_F(ListenerTest, OneLongTextIsTakenWholeAndTheNextOneFails) {
  const Client client = Connect();
  const std::string text = CountedText(48 * kMiB);
  listener.DataToSend(1, text);
  Settle();
  EXPECT_THROW(listener.DataToSend(1, "x"), SocketFailure);
  ReceiveUpTo(*client, text.size());
  EXPECT_TRUE(client->received() == text);
}

TEST_F(ListenerTest, DropEndsTheConnectionWithALaterEvent) {
  const Client client = Connect();
  const Client other = Connect();
  events.log.clear();
  listener.Drop(1);
  EXPECT_EQ(events.log, Log{});
  EXPECT_FALSE(listener.Connected(1));
  Settle();
  client->Receive();
  EXPECT_EQ(events.log, Log{"disconnected 1"});
  EXPECT_TRUE(client->closedByServer());
  EXPECT_TRUE(listener.Connected(2));
}

TEST_F(ListenerTest, DropInsideAnEventOfTheConnectionWaitsForItsEnd) {
  const Client client = Connect();
  events.onData = [&](ConnectionId id, const std::string&) {
    listener.Drop(id);
    listener.Drop(id);
    events.log.push_back("end of data");
  };
  SendAndSettle(*client, "text");
  EXPECT_EQ(events.log, (Log{"connected 1", "data 1", "end of data", "disconnected 1"}));
}

TEST_F(ListenerTest, DropOfAConnectionThatIsNotUpDoesNothing) {
  for (const int id : {-1, 0, 1, 20, 99}) listener.Drop(static_cast<ConnectionId>(id));
  Settle();
  EXPECT_EQ(events.log, Log{});
}

TEST_F(ListenerTest, PortInUseAndForeignAddressHaveTheirCodes) {
  struct Case {
    std::string address;
    std::int32_t port;
    int code;
  };
  const Case cases[] = {{"127.0.0.1", listener.LocalPort(), 10048}, {"192.0.2.1", 0, 10049}};
  for (const Case& row : cases) {
    Listener second(loop);
    second.SetEvents(events);
    second.SetLocalHost(row.address);
    second.SetLocalPort(row.port);
    EXPECT_EQ(CodeOfOpening(second), row.code) << row.address;
    EXPECT_FALSE(second.Listening()) << row.address;
  }
}

TEST_F(ListenerTest, TextThatIsNoAddressFails) {
  for (const std::string address : {"", "everywhere", "127.0.0", "256.0.0.1", "127.0.0.1:80"}) {
    Listener second(loop);
    second.SetEvents(events);
    second.SetLocalHost(address);
    second.SetLocalPort(0);
    EXPECT_THROW(second.SetListening(true), SocketFailure) << address;
    EXPECT_FALSE(second.Listening()) << address;
  }
}

TEST_F(ListenerTest, PortOutsideTheRangeFails) {
  for (const std::int32_t port : {-1, 65536, 1'000'000}) {
    Listener second(loop);
    second.SetEvents(events);
    second.SetLocalHost("127.0.0.1");
    second.SetLocalPort(port);
    EXPECT_THROW(second.SetListening(true), SocketFailure) << port;
    EXPECT_FALSE(second.Listening()) << port;
  }
}

TEST_F(ListenerTest, AddressAndPortReadAsBoundWhileListening) {
  EXPECT_TRUE(listener.Listening());
  EXPECT_EQ(listener.LocalHost(), "127.0.0.1");
  EXPECT_GT(listener.LocalPort(), 0);
  Listener second(loop);
  second.SetLocalHost("192.0.2.1");
  second.SetLocalPort(8080);
  EXPECT_FALSE(second.Listening());
  EXPECT_EQ(second.LocalHost(), "192.0.2.1");
  EXPECT_EQ(second.LocalPort(), 8080);
}

TEST_F(ListenerTest, ClosedListenerKeepsItsConnections) {
  const Client client = Connect();
  const std::int32_t port = listener.LocalPort();
  listener.SetListening(false);
  Settle();
  EXPECT_FALSE(listener.Listening());
  EXPECT_THROW(RawClient{port}, std::runtime_error);
  SendAndSettle(*client, "still here");
  EXPECT_EQ(events.reads[1], Log{"still here"});
  listener.DataToSend(1, "and answered");
  ReceiveUpTo(*client, 12);
  EXPECT_EQ(client->received(), "and answered");
}

TEST_F(ListenerTest, WhoComesWhenNoDescriptorIsLeftIsServedLater) {
  if (kSanitized) GTEST_SKIP() << "sanitizers need descriptors";
  const Client client = ConnectUnnoticed();
  client->Send("text");
  {
    const NoDescriptorsLeft none;
    Settle();
  }
  ASSERT_EQ(events.log.size(), 1u);  // and not one for each look at the client
  EXPECT_TRUE(events.log[0].starts_with("error ")) << events.log[0];
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  while (events.reads.empty() && std::chrono::steady_clock::now() < end) Settle();
  EXPECT_EQ(events.reads[1], Log{"text"});
}

TEST_F(ListenerTest, ClientThatBreaksOffBeforeItsTurnGetsNoId) {
  for (int n = 0; n < 3; ++n) ConnectAndReset(listener.LocalPort());
  Settle();
  EXPECT_EQ(events.log, Log{});
  const Client client = Connect();
  EXPECT_EQ(events.log, Log{"connected 1"});
}

TEST_F(ListenerTest, OpeningWithoutADescriptorFailsAndWorksLater) {
  if (kSanitized) GTEST_SKIP() << "sanitizers need descriptors";
  listener.SetListening(false);
  {
    const NoDescriptorsLeft none;
    EXPECT_THROW(listener.SetListening(true), SocketFailure);
    EXPECT_FALSE(listener.Listening());
  }
  listener.SetListening(true);
  const Client client = Connect();
  EXPECT_EQ(events.connected.size(), 1u);
}

TEST_F(ListenerTest, OpensAgainOnThePortOfConnectionsThatAreGone) {
  const Client client = Connect();
  const std::int32_t port = listener.LocalPort();
  listener.Drop(1);
  Settle();
  listener.SetListening(false);
  listener.SetListening(false);
  listener.SetLocalPort(port);
  EXPECT_EQ(CodeOfOpening(listener), -1);
  EXPECT_EQ(listener.LocalPort(), port);
  const Client next = Connect();
  EXPECT_EQ(events.connected, (std::vector<ConnectionId>{1, 1}));
}

}  // namespace
}  // namespace quillon
