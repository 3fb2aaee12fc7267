// Events of the listener inside the waits of other events: who is served when, how deep
// it goes, and which ids stay taken meanwhile.
#include <algorithm>
#include <thread>

#include "platform/listener_fixture.h"

namespace quillon {
namespace {

// Its handlers log their ends too and know how deep they are.
class ListenerNestingTest : public ListenerTest {
 protected:
  ListenerNestingTest() {
    events.onData = [this](ConnectionId id, const std::string& text) { Handle(id, text); };
  }

  void Handle(ConnectionId id, const std::string& text) {
    ++depth;
    deepest = std::max(deepest, depth);
    if (inside) inside(id, text);
    --depth;
    events.log.push_back("end " + std::to_string(id));
  }

  // Clients that are connected, with ids from 1 on; the log starts empty behind them.
  void ConnectClients(int count) {
    for (int i = 0; i < count; ++i) clients.push_back(Connect());
    events.log.clear();
  }

  RawClient& ClientOf(int id) { return *clients.at(static_cast<std::size_t>(id - 1)); }

  std::vector<Client> clients;
  std::function<void(ConnectionId, const std::string&)> inside;  // what a handler does
  int depth = 0;
  int deepest = 0;
};

TEST_F(ListenerNestingTest, SecondConnectionIsAnsweredWhileTheFirstHandlerWaits) {
  ConnectClients(2);
  inside = [&](ConnectionId id, const std::string&) {
    if (id == 1) {
      ClientOf(2).Send("second");
      loop.DelayMs(500);
      ClientOf(2).Receive();
    }
    listener.DataToSend(id, "answer");
  };
  SendAndSettle(ClientOf(1), "first");
  EXPECT_EQ(events.log, (Log{"data 1", "data 2", "end 2", "end 1"}));
  EXPECT_EQ(ClientOf(2).received(), "answer");
  ReceiveUpTo(ClientOf(1), 6);
  EXPECT_EQ(ClientOf(1).received(), "answer");
}

TEST_F(ListenerNestingTest, EventsNestThreeLevelsDeep) {
  ConnectClients(3);
  inside = [&](ConnectionId id, const std::string&) {
    if (id < 3) ClientOf(id + 1).Send("next");
    loop.DelayMs(500);
  };
  SendAndSettle(ClientOf(1), "first");
  EXPECT_EQ(events.log, (Log{"data 1", "data 2", "data 3", "end 3", "end 2", "end 1"}));
}

TEST_F(ListenerNestingTest, SameConnectionMayAskAgainWhileItsHandlerWaits) {
  ConnectClients(1);
  inside = [&](ConnectionId, const std::string& text) {
    if (text == "first") ClientOf(1).Send("second");
    loop.DelayMs(500);
  };
  SendAndSettle(ClientOf(1), "first");
  EXPECT_EQ(events.log, (Log{"data 1", "data 1", "end 1", "end 1"}));
  EXPECT_EQ(events.reads[1], (Log{"first", "second"}));
}

TEST_F(ListenerNestingTest, ConnectionsComeAndGoWhileAHandlerWaits) {
  ConnectClients(1);
  inside = [&](ConnectionId, const std::string&) {
    clients.push_back(ConnectUnnoticed());
    loop.DelayMs(500);
    ClientOf(2).Close();
    loop.DelayMs(500);
  };
  SendAndSettle(ClientOf(1), "first");
  EXPECT_EQ(events.log, (Log{"data 1", "connected 2", "disconnected 2", "end 1"}));
}

TEST_F(ListenerNestingTest, ReadsNest32DeepAtMostAndAllAreServed) {
  constexpr int kClients = 40;
  ConnectClients(kClients);
  std::map<ConnectionId, int> handled;
  inside = [&](ConnectionId id, const std::string&) {
    if (++handled[id] <= 3) ClientOf(id).Send("again");
    loop.DelayMs(20);
  };
  for (int id = 1; id <= kClients; ++id) ClientOf(id).Send("r");
  for (int round = 0; round < 20; ++round) Settle();

  EXPECT_EQ(deepest, Listener::kDepthLimit);
  EXPECT_EQ(depth, 0);
  for (const auto& [id, reads] : events.reads) {
    std::string sent = "r";
    for (int i = 0; i < std::min(handled[id], 3); ++i) sent += "again";
    EXPECT_EQ(Joined(reads), sent) << id;
  }
  EXPECT_EQ(events.reads.size(), static_cast<std::size_t>(kClients));
}

TEST_F(ListenerNestingTest, OneClientCannotNestDeeperEither) {
  ConnectClients(1);
  int requests = 0;
  inside = [&](ConnectionId id, const std::string&) {
    if (++requests < 100) ClientOf(id).Send("r");
    loop.DelayMs(20);
  };
  ClientOf(1).Send("r");
  for (int round = 0; round < 20; ++round) Settle();
  EXPECT_EQ(deepest, Listener::kDepthLimit);
  EXPECT_EQ(depth, 0);
}

TEST_F(ListenerNestingTest, OtherEventsAreServedAtTheGreatestDepth) {
  ConnectClients(40);
  bool served = false;
  inside = [&](ConnectionId, const std::string&) {
    if (depth == Listener::kDepthLimit) loop.Post([&] { served = true; });
    loop.DelayMs(20);
    if (depth == Listener::kDepthLimit) {
      EXPECT_TRUE(served);
    }
  };
  for (int id = 1; id <= 40; ++id) ClientOf(id).Send("r");
  for (int round = 0; round < 5; ++round) Settle();
  EXPECT_TRUE(served);
  EXPECT_EQ(std::count(events.log.begin(), events.log.end(), "end 40"), 1);
}

TEST_F(ListenerNestingTest, ConnectionThatLeavesAtTheGreatestDepthIsReportedInTheEnd) {
  ConnectClients(40);
  inside = [&](ConnectionId, const std::string&) { loop.DelayMs(20); };
  for (int id = 1; id <= 40; ++id) {
    ClientOf(id).Send("r");
    ClientOf(id).Close();
  }
  for (int round = 0; round < 10; ++round) Settle();
  for (int id = 1; id <= 40; ++id) {
    const std::string number = std::to_string(id);
    EXPECT_EQ(std::count(events.log.begin(), events.log.end(), "data " + number), 1) << id;
    EXPECT_EQ(std::count(events.log.begin(), events.log.end(), "disconnected " + number), 1) << id;
    EXPECT_FALSE(listener.Connected(static_cast<ConnectionId>(id))) << id;
  }
}

TEST_F(ListenerNestingTest, IdOfALeaverIsKeptBackUntilItsEventEnds) {
  ConnectClients(1);
  inside = [&](ConnectionId id, const std::string&) {
    ClientOf(1).Close();
    loop.DelayMs(500);
    EXPECT_FALSE(listener.Connected(id));
    clients.push_back(ConnectUnnoticed());
    loop.DelayMs(500);
    EXPECT_FALSE(listener.Connected(id));
  };
  SendAndSettle(ClientOf(1), "first");
  clients.push_back(Connect());
  EXPECT_EQ(events.connected, (std::vector<ConnectionId>{1, 2, 1}));
  EXPECT_EQ(std::count(events.log.begin(), events.log.end(), "disconnected 1"), 1);
}

TEST_F(ListenerNestingTest, IdOfALeaverIsGivenAwayWhereNoOtherIsLeftAndStaysItsOwnInsideItsEvent) {
  ConnectClients(Listener::kKeptApart);
  inside = [&](ConnectionId id, const std::string&) {
    ClientOf(5).Close();
    loop.DelayMs(500);
    clients.push_back(ConnectUnnoticed());
    loop.DelayMs(500);
    EXPECT_FALSE(listener.Connected(id));
    EXPECT_THROW(listener.DataToSend(id, "page of the leaver"), SocketFailure);
  };
  SendAndSettle(ClientOf(5), "first");
  EXPECT_EQ(events.connected.back(), 5);
  EXPECT_TRUE(listener.Connected(5));
  clients.back()->Receive();
  EXPECT_EQ(clients.back()->received(), "");
}

TEST_F(ListenerNestingTest, AnswerToALeaverFailsAndReachesNobodyElse) {
  ConnectClients(1);
  inside = [&](ConnectionId id, const std::string&) {
    ClientOf(1).Close();
    clients.push_back(ConnectUnnoticed());
    loop.DelayMs(500);
    EXPECT_THROW(listener.DataToSend(id, "page of the leaver"), SocketFailure);
  };
  SendAndSettle(ClientOf(1), "first");
  ClientOf(2).Receive();
  EXPECT_EQ(ClientOf(2).received(), "");
}

TEST_F(ListenerNestingTest, QuitEndsTheHandlersThatWait) {
  ConnectClients(2);
  inside = [&](ConnectionId id, const std::string&) {
    if (id == 2) {
      loop.Quit();
      return;
    }
    ClientOf(2).Send("second");
    loop.DelayMs(500);
    ADD_FAILURE() << "the wait went on";
  };
  ClientOf(1).Send("first");
  loop.Run();
  EXPECT_EQ(events.log, (Log{"data 1", "data 2", "end 2"}));
}

TEST_F(ListenerNestingTest, ClientThatComesAtTheGreatestDepthIsAcceptedWhenItFalls) {
  ConnectClients(40);
  const auto accepted = [&] {
    return std::count(events.log.begin(), events.log.end(), "connected 41");
  };
  Client late;
  inside = [&](ConnectionId, const std::string&) {
    const bool isDeepest = depth == Listener::kDepthLimit && !late;
    if (isDeepest) late = ConnectUnnoticed();
    loop.DelayMs(20);
    if (isDeepest) {
      EXPECT_EQ(accepted(), 0);
    }
  };
  for (int id = 1; id <= 40; ++id) ClientOf(id).Send("r");
  for (int round = 0; round < 20; ++round) Settle();
  EXPECT_NE(late, nullptr);
  EXPECT_EQ(accepted(), 1);
}

TEST_F(ListenerNestingTest, TextThatWasHeldBackIsServedRightBehindTheEndOfTheTopmostEvent) {
  ConnectClients(Listener::kDepthLimit + 1);
  inside = [&](ConnectionId, const std::string&) { loop.DelayMs(20); };
  for (int id = 1; id <= Listener::kDepthLimit + 1; ++id) ClientOf(id).Send("r");
  for (int round = 0; round < 5; ++round) Settle();
  const auto isEnd = [](const std::string& line) { return line.starts_with("end "); };
  const auto end = std::find_if(events.log.begin(), events.log.end(), isEnd);
  ASSERT_EQ(end - events.log.begin(), Listener::kDepthLimit);
  EXPECT_TRUE(std::next(end)->starts_with("data ")) << *std::next(end);
}

// Two clients that send without a pause keep the stack at its limit; who comes later takes
// his turn all the same.
TEST_F(ListenerNestingTest, ClientWithAHighNumberIsServedBetweenThoseThatNeverPause) {
  ConnectClients(3);
  int texts = 0;
  bool served = false;
  inside = [&](ConnectionId id, const std::string&) {
    if (id == 3) served = true;
    if (++texts > 400 || id == 3) return;
    ClientOf(id).Send("r");
    if (texts == 40) ClientOf(3).Send("r");
    loop.DelayMs(20);
    if (texts < 400) {
      EXPECT_LE(depth, Listener::kDepthLimit);
    }
  };
  ClientOf(1).Send("r");
  ClientOf(2).Send("r");
  for (int round = 0; round < 40 && !served; ++round) Settle();
  EXPECT_TRUE(served);
  const auto third = std::find(events.log.begin(), events.log.end(), "data 3");
  EXPECT_LT(third - events.log.begin(), 200);
}

// Three clients that send without a pause, each time something that fails and waits its half
// second, and a job among them.
class BusyClientsTest : public ListenerNestingTest {
 protected:
  static constexpr int kTextsAtMost = 2000;  // so that a job that never goes on fails the test

  BusyClientsTest() {
    ConnectClients(3);
    inside = [this](ConnectionId id, const std::string&) {
      if (++texts < kTextsAtMost) ClientOf(id).Send("r");
      loop.DelayMs(500);
    };
  }

  // Runs the job as the event of a timer or signal would, with the clients at it.
  void RunAmongClients(const std::function<void()>& job) {
    loop.Post([this, job] {
      for (int id = 1; id <= 3; ++id) ClientOf(id).Send("r");
      job();
    });
    Settle();
  }

  int texts = 0;
};

TEST_F(BusyClientsTest, JobGoesOnAllTheSame) {
  int textsAtItsEnd = kTextsAtMost;
  RunAmongClients([&] {
    loop.DelayMs(500);
    textsAtItsEnd = texts;
  });
  EXPECT_GT(textsAtItsEnd, 3);
  EXPECT_LT(textsAtItsEnd, kTextsAtMost / 10);
}

TEST_F(BusyClientsTest, JobThatBeginsInsideARequestGoesOnToo) {
  int textsAtItsEnd = kTextsAtMost;
  const auto job = [&] {
    loop.DelayMs(500);
    textsAtItsEnd = std::min(texts, textsAtItsEnd);
  };
  const auto request = inside;
  inside = [&, request](ConnectionId id, const std::string& text) {
    if (texts == 20) loop.Post(job);
    request(id, text);
  };
  RunAmongClients([] {});
  EXPECT_LT(textsAtItsEnd, kTextsAtMost / 10);
}

TEST_F(BusyClientsTest, ClientsAreServedAgainWhenTheJobHasGoneOn) {
  int textsAtItsEnd = 0;
  RunAmongClients([&] {
    loop.DelayMs(500);
    textsAtItsEnd = texts;
  });
  for (int round = 0; round < 100 && texts < kTextsAtMost; ++round) Settle();
  EXPECT_GE(texts, kTextsAtMost);
  EXPECT_LT(textsAtItsEnd, kTextsAtMost);
}

TEST_F(BusyClientsTest, ClientThatComesMeanwhileIsTakenAfterwards) {
  Client late;
  RunAmongClients([&] {
    late = ConnectUnnoticed();
    loop.DelayMs(500);
  });
  for (int round = 0; round < 100 && events.connected.size() < 4; ++round) Settle();
  EXPECT_EQ(events.connected.size(), 4u);
}

// The next job becomes overdue between the moment at which what was held back is called and its
// turn. Nobody else ever calls it again.
class SecondJobTest : public ListenerNestingTest {
 protected:
  // Runs a job that is overdue when the posted event has run, and stays so until its end.
  void RunOverdueJob(const std::function<void()>& others) {
    loop.Post([this, others] {
      loop.Post([this] { BecomeOverdue(); });
      others();
      loop.DelayMs(50);
    });
    loop.Pump();
  }

  // The two timers fall due together, that of the listener first.
  void RunJobThatIsOverdueBehindTheCall() {
    const auto jump = loop.Every(std::chrono::milliseconds(15), [this] { BecomeOverdue(); });
    std::this_thread::sleep_for(std::chrono::milliseconds(40));
    loop.Post([this] { loop.DelayMs(50); });
    loop.Pump();
  }

  void SettleLong() {
    for (int round = 0; round < 10; ++round) Settle();
  }

 private:
  void BecomeOverdue() { clock.Advance(std::chrono::seconds(5)); }
};

TEST_F(SecondJobTest, TextIsNotForgotten) {
  ConnectClients(1);
  RunOverdueJob([&] { ClientOf(1).Send("r"); });
  RunJobThatIsOverdueBehindTheCall();
  SettleLong();
  EXPECT_EQ(events.log, (Log{"data 1", "end 1"}));
}

TEST_F(SecondJobTest, ClientIsNotForgotten) {
  Client late;
  RunOverdueJob([&] { late = ConnectUnnoticed(); });
  RunJobThatIsOverdueBehindTheCall();
  SettleLong();
  EXPECT_EQ(events.log, Log{"connected 1"});
}

TEST_F(BusyClientsTest, WaitsOfRequestsHaveNoPrecedence) {
  bool overdue = false;
  const auto request = inside;
  inside = [&, request](ConnectionId id, const std::string& text) {
    request(id, text);
    overdue = overdue || loop.HasOverdueJob();
  };
  ClientOf(1).Send("r");
  Settle();
  EXPECT_GE(texts, kTextsAtMost);
  EXPECT_FALSE(overdue);
}

// The requests below a job cannot end before it does, and it may last for an hour.
TEST_F(ListenerNestingTest, JobOnTopOfTheGreatestDepthKeepsNobodyOut) {
  constexpr int kOther = Listener::kDepthLimit + 1;
  ConnectClients(kOther);
  bool jobRuns = false;
  bool servedInJob = false;
  const auto job = [&] {
    jobRuns = true;
    ClientOf(kOther).Send("r");
    for (int round = 0; round < 1000 && !servedInJob; ++round) {
      loop.DelayMs(20);
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    jobRuns = false;
  };
  inside = [&](ConnectionId id, const std::string&) {
    if (id == kOther) servedInJob = jobRuns;
    if (id < kOther && depth == Listener::kDepthLimit) loop.Post(job);
    if (id < kOther) loop.DelayMs(20);
  };
  for (int id = 1; id < kOther; ++id) ClientOf(id).Send("r");
  for (int round = 0; round < 5; ++round) Settle();
  EXPECT_TRUE(servedInJob);
  EXPECT_EQ(depth, 0);
}

TEST_F(ListenerNestingTest, ReadsNest32DeepAtMostOnAJobToo) {
  constexpr int kBelow = Listener::kDepthLimit;
  constexpr int kAll = kBelow + 40;
  ConnectClients(kAll);
  const auto job = [&] {
    for (int id = kBelow + 1; id <= kAll; ++id) ClientOf(id).Send("r");
    loop.DelayMs(20);
  };
  inside = [&](ConnectionId id, const std::string&) {
    if (id <= kBelow && depth == kBelow) loop.Post(job);
    loop.DelayMs(20);
  };
  for (int id = 1; id <= kBelow; ++id) ClientOf(id).Send("r");
  for (int round = 0; round < 20; ++round) Settle();
  EXPECT_EQ(deepest, 2 * Listener::kDepthLimit);
  EXPECT_EQ(events.reads.size(), static_cast<std::size_t>(kAll));
}

}  // namespace
}  // namespace quillon
