// Clients of the socket file that leave, crowd, stall or do not read, requests inside the wait of
// another, and the end of the loop and the server under them.
#include "platform/listener_fixture.h"
#include "platform/local_server.h"
#include "platform/local_server_fixture.h"
#include "platform/no_descriptors_left.h"
#include "platform/scoped_flag.h"
#include "support/open_descriptors.h"

namespace quillon {
namespace {

using std::chrono::milliseconds;

TEST_F(LocalServerTest, ClientWhoLeavesBeforeHisLineEndsAsksForNothing) {
  Open();
  for (const char* bytes : {"", "imp", "import"}) {
    const auto client = Connect();
    client->Send(bytes);
    Settle();
    client->Leave();
    Settle();
  }
  Connect()->Send("imp");  // and leaves before anybody has noticed
  Settle();
  EXPECT_EQ(requests, Lines{});
  EXPECT_EQ(Exchange("status\n"), "done status\n");
}

TEST_F(LocalServerTest, ClientWhoLeavesBehindHisLineHasAsked) {
  Open();
  Connect()->Send("import\n");
  EXPECT_TRUE(Until([&] { return !requests.empty(); }));
  Settle();
  EXPECT_EQ(requests, Lines{"import"});
  EXPECT_EQ(Exchange("status\n"), "done status\n");
}

TEST_F(LocalServerTest, ClientWhoLeavesDuringHisAnswerDoesNotEndTheHandler) {
  Open();
  const auto client = Connect();
  bool ended = false;
  onRequest = [&](const std::string&, const LocalServer::Answer& answer) {
    answer("first");
    client->Leave();
    for (int line = 0; line < 1000; ++line) {
      answer(std::string(1024, 'x'));
      if (line % 100 == 0) loop.DelayMs(10);
    }
    ended = true;
  };
  client->Send("import\n");
  EXPECT_TRUE(Until([&] { return ended; }));
  onRequest = [](const std::string&, const LocalServer::Answer& answer) { answer("next"); };
  EXPECT_EQ(Exchange("status\n"), "next\n");
}

TEST_F(LocalServerTest, AnswerThatIsKeptTellsNothingBehindItsHandler) {
  Open();
  LocalServer::Answer kept;
  onRequest = [&](const std::string&, const LocalServer::Answer& answer) {
    kept = answer;
    answer("done");
  };
  const auto client = Connect();
  client->Send("status\n");
  EXPECT_TRUE(Until([&] { return kept != nullptr; }));
  kept("late");
  EXPECT_TRUE(Until([&] { return client->HungUpOn(); }));
  kept("later");
  Settle();
  EXPECT_EQ(client->Received(), "done\n");
}

TEST_F(LocalServerTest, NinthClientIsHungUpOnAndTheEightStay) {
  Open();
  auto clients = ConnectMany(LocalServer::kMaxClients);
  for (int attempt = 0; attempt < 3; ++attempt) EXPECT_EQ(Exchange("status\n"), "");
  EXPECT_EQ(requests, Lines{});
  for (const auto& client : clients) EXPECT_FALSE(client->HungUpOn());
  for (const auto& client : clients) {
    client->Send("status\n");
    EXPECT_TRUE(Until([&] { return client->HungUpOn(); }));
    EXPECT_EQ(client->Received(), "done status\n");
  }
}

TEST_F(LocalServerTest, ClientWhoLeavesMakesRoom) {
  Open();
  auto clients = ConnectMany(LocalServer::kMaxClients);
  clients.pop_back();
  Settle();
  EXPECT_EQ(Exchange("status\n"), "done status\n");
}

TEST_F(LocalServerTest, ClientsInTheirAnswerCountToo) {
  Open();
  const auto asking = Connect();
  onRequest = [&](const std::string&, const LocalServer::Answer& answer) {
    const auto others = ConnectMany(LocalServer::kMaxClients - 1);
    for (const auto& client : others) EXPECT_FALSE(client->HungUpOn());
    EXPECT_EQ(Exchange("status\n"), "");
    answer("done");
  };
  asking->Send("import\n");
  EXPECT_TRUE(Until([&] { return asking->HungUpOn(); }));
  EXPECT_EQ(asking->Received(), "done\n");
  EXPECT_EQ(requests, Lines{"import"});
}

// The first half fills what the system keeps of a socket, the second waits in the server.
TEST_F(LocalServerTest, ClientWhoReadsLateGetsTheWholeAnswer) {
  const std::string half = CountedText(200 * 1024);
  Open();
  const auto client = Connect();
  bool ended = false;
  onRequest = [&](const std::string&, const LocalServer::Answer& answer) {
    answer(half);
    loop.DelayMs(20);
    answer(half);
    ended = true;
  };
  client->Send("status\n");
  EXPECT_TRUE(Until([&] { return ended; }));
  Settle();
  EXPECT_TRUE(Until([&] { return client->HungUpOn(); }));
  EXPECT_TRUE(client->Received() == half + "\n" + half + "\n") << client->Received().size();
}

TEST_F(LocalServerTest, AnswerOfAnyLengthReachesAClientWhoReads) {
  const std::string line = CountedText(64 * 1024);
  std::string whole;
  Open();
  const auto client = Connect();
  onRequest = [&](const std::string&, const LocalServer::Answer& answer) {
    for (int number = 0; number < 40; ++number) {
      answer(line);
      whole += line + "\n";
      EXPECT_TRUE(Until([&] { return client->Received().size() == whole.size(); }));
    }
  };
  client->Send("status\n");
  EXPECT_TRUE(Until([&] { return client->HungUpOn(); }));
  EXPECT_TRUE(client->Received() == whole) << client->Received().size();
}

TEST_F(LocalServerTest, ClientWhoDoesNotReadIsHungUpOnAndHoldsUpNobody) {
  constexpr std::size_t kLines = 4096;
  Open();
  const auto client = Connect();
  std::string answered;
  onRequest = [&](const std::string&, const LocalServer::Answer& answer) {
    for (std::size_t line = 0; line < kLines; ++line) {
      answer(std::string(1023, 'x'));
      if (line % 256 == 0) loop.DelayMs(10);
    }
    onRequest = [](const std::string&, const LocalServer::Answer& next) { next("next"); };
    answered = Exchange("status\n");
  };
  client->Send("import\n");
  EXPECT_TRUE(Until([&] { return !answered.empty(); }));
  EXPECT_EQ(answered, "next\n");
  EXPECT_TRUE(Until([&] { return client->HungUpOn(); }));
  EXPECT_LT(client->Received().size(), kLines * 1024);
}

TEST_F(LocalServerTest, RequestInTheWaitOfAnotherIsAnsweredFirst) {
  Open();
  const auto outer = Connect();
  std::string inner;
  onRequest = [&](const std::string& request, const LocalServer::Answer& answer) {
    answer("begin of " + request);
    if (request == "import") {
      const auto client = Connect();
      client->Send("status\n");
      loop.DelayMs(100);
      inner = client->Received();
      EXPECT_TRUE(client->HungUpOn());
    }
    answer("end of " + request);
  };
  outer->Send("import\n");
  EXPECT_TRUE(Until([&] { return outer->HungUpOn(); }));
  EXPECT_EQ(inner, "begin of status\nend of status\n");
  EXPECT_EQ(outer->Received(), "begin of import\nend of import\n");
  EXPECT_EQ(requests, (Lines{"import", "status"}));
}

TEST_F(LocalServerTest, LinesReachTheClientWhileTheHandlerWaits) {
  Open();
  const auto client = Connect();
  onRequest = [&](const std::string&, const LocalServer::Answer& answer) {
    answer("progress");
    loop.DelayMs(30);
    EXPECT_EQ(client->Received(), "progress\n");
    EXPECT_FALSE(client->HungUpOn());
  };
  client->Send("import\n");
  EXPECT_TRUE(Until([&] { return client->HungUpOn(); }));
  EXPECT_EQ(client->Received(), "progress\n");
}

TEST_F(LocalServerTest, HandlerWaitsForARequestThatABrowserWaitsFor) {
  Open();
  onRequest = [](const std::string&, const LocalServer::Answer&) {};
  const auto client = Connect();
  client->Send("import\n");
  {
    const EventLoop::RequestMark browser(loop);
    for (int round = 0; round < 10; ++round) Settle();
    EXPECT_EQ(requests, Lines{});
  }
  EXPECT_TRUE(Until([&] { return client->HungUpOn(); }));
  EXPECT_EQ(requests, Lines{"import"});
}

// Both are ready in one turn of the loop, the line of the client first.
TEST_F(LocalServerTest, HandlerWaitsForARequestThatBeginsBeforeItHasItsTurn) {
  Open();
  const auto client = Connect();
  Settle();
  bool inBrowser = false;
  bool hasBeen = false;
  onRequest = [&](const std::string&, const LocalServer::Answer&) { EXPECT_FALSE(inBrowser); };
  const auto timer = loop.Every(std::chrono::milliseconds(1), [&] {
    if (std::exchange(hasBeen, true)) return;
    const EventLoop::RequestMark browser(loop);
    const ScopedFlag waits(inBrowser, true);
    for (int round = 0; round < 5; ++round) Settle();
  });
  client->Send("import\n");
  std::this_thread::sleep_for(std::chrono::milliseconds(5));
  EXPECT_TRUE(Until([&] { return client->HungUpOn(); }));
  EXPECT_EQ(requests, Lines{"import"});
}

TEST_F(LocalServerTest, HandlerIsNoRequestOfABrowserEvenOnTopOfOneThatDoesNotEnd) {
  Open();
  const auto client = Connect();
  client->Send("import\n");
  std::vector<bool> inRequest;
  onRequest = [&](const std::string&, const LocalServer::Answer&) {
    EXPECT_TRUE(loop.HasRequest());
    inRequest.push_back(loop.InRequest());
    loop.DelayMs(10);
    inRequest.push_back(loop.InRequest());
  };
  const EventLoop::RequestMark browser(loop);
  EXPECT_TRUE(Until([&] { return client->HungUpOn(); }));
  EXPECT_TRUE(loop.InRequest());
  EXPECT_EQ(inRequest, (std::vector<bool>{false, false}));
}

TEST_F(LocalServerTest, AnswerThatIsCompleteTakesNoFurtherLine) {
  Open();
  LocalServer::Answer kept;
  onRequest = [&](const std::string&, const LocalServer::Answer& answer) {
    kept = answer;
    answer(std::string(LocalServer::kPendingLimit - 2, 'x'));  // more than the client takes at once
  };
  const auto client = Connect();
  client->Send("status\n");
  EXPECT_TRUE(Until([&] { return !requests.empty(); }));
  Settle();
  kept("late");
  EXPECT_TRUE(Until([&] { return client->HungUpOn(); }));
  EXPECT_EQ(client->Received().find("late"), std::string::npos);
}

TEST_F(LocalServerTest, HandlerThatFailsEndsItsAnswerAlone) {
  Open();
  onRequest = [](const std::string&, const LocalServer::Answer& answer) {
    answer("begin");
    throw std::runtime_error("broken");
  };
  EXPECT_EQ(Exchange("import\n"), "begin\n");
  onRequest = [](const std::string&, const LocalServer::Answer& answer) { answer("next"); };
  EXPECT_EQ(Exchange("status\n"), "next\n");
}

TEST_F(LocalServerTest, EndOfTheLoopPassesAWaitingHandler) {
  Open();
  const auto client = Connect();
  bool ended = false;
  onRequest = [&](const std::string&, const LocalServer::Answer& answer) {
    answer("begin");
    loop.Quit();
    loop.DelayMs(10);
    ended = true;
  };
  client->Send("import\n");
  loop.Run();
  EXPECT_EQ(requests, Lines{"import"});
  EXPECT_FALSE(ended);
  server.reset();
  EXPECT_TRUE(client->HungUpOn());
}

TEST_F(LocalServerTest, ServerMayGoWhateverItsClientsAreAt) {
  Open();
  onRequest = [this](const std::string&, const LocalServer::Answer& answer) {
    answer(CountedText(200 * 1024));
    loop.DelayMs(20);
    answer(CountedText(200 * 1024));
  };
  const auto clients = ConnectMany(3);  // a silent one, one with half a line, one who does not read
  clients[1]->Send("half");
  clients[2]->Send("long\n");
  EXPECT_TRUE(Until([&] { return !requests.empty(); }));
  const auto unnoticed = Connect();
  unnoticed->Send("status\n");
  server.reset();
  EXPECT_EQ(requests, Lines{"long"});
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(LocalServerTest, ClientsLeaveNoDescriptorsBehind) {
  const std::size_t before = OpenDescriptors();
  Open();
  const std::size_t opened = OpenDescriptors();
  for (int round = 0; round < 20; ++round) {
    EXPECT_EQ(Exchange("status\n"), "done status\n");
    Connect()->Send("half");
    Settle();
  }
  EXPECT_EQ(OpenDescriptors(), opened);
  server.reset();
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(LocalServerTest, WhoComesWhenNoDescriptorIsLeftIsServedLater) {
  if (kSanitized) GTEST_SKIP() << "sanitizers need descriptors";
  Open();
  const auto client = Connect();
  client->Send("status\n");
  {
    const NoDescriptorsLeft none;
    Settle();
  }
  EXPECT_EQ(requests, Lines{});
  EXPECT_TRUE(Until([&] { return client->HungUpOn(); }));
  EXPECT_EQ(client->Received(), "done status\n");
}

// The only test that waits for the limit itself, for all who meet it at once.
TEST_F(LocalServerTest, WhoDoesNotAskInTimeIsHungUpOnAndAnAnswerMayTakeLonger) {
  Open();
  const auto start = std::chrono::steady_clock::now();
  const auto elapsed = [&] { return std::chrono::steady_clock::now() - start; };
  const auto clients = ConnectMany(3);  // a silent one, one with half a line, one of single bytes
  clients[1]->Send("stat");
  std::vector<milliseconds> ends(clients.size(), milliseconds(0));
  onRequest = [&](const std::string&, const LocalServer::Answer& answer) {
    for (int bytes = 0; elapsed() < LocalServer::kRequestTime + milliseconds(800);) {
      if (elapsed() > bytes * milliseconds(400)) bytes += static_cast<int>(clients[2]->Send("x"));
      for (std::size_t n = 0; n < clients.size(); ++n) {
        if (ends[n] != milliseconds(0) || !clients[n]->HungUpOn()) continue;
        ends[n] = std::chrono::duration_cast<milliseconds>(elapsed());
      }
      loop.Pump();
      std::this_thread::sleep_for(milliseconds(5));
    }
    answer("done");
  };
  const auto asking = Connect();
  asking->Send("import\n");
  EXPECT_TRUE(Until([&] { return !requests.empty(); }));
  EXPECT_TRUE(Until([&] { return asking->HungUpOn(); }));
  EXPECT_EQ(asking->Received(), "done\n");
  for (const milliseconds end : ends) EXPECT_GE(end, LocalServer::kRequestTime - milliseconds(100));
  for (const auto& client : clients) EXPECT_EQ(client->Received(), "");
  EXPECT_EQ(requests, Lines{"import"});
}

}  // namespace
}  // namespace quillon
