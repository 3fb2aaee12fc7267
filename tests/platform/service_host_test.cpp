// The service manager's side: signals become states, reports and signs of life become notices.
#include "platform/service_host.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <thread>

#include "support/datagram_sockets.h"
#include "support/environment.h"
#include "support/test_clock.h"

namespace quillon {
namespace {

using std::chrono::milliseconds;
using Lines = std::vector<std::string>;
using States = std::vector<ServiceState>;

// While it lives, a signal that nobody takes is lost: without it, one would end or stop the
// whole test program.
class LostSignals {
 public:
  LostSignals() {
    for (std::size_t i = 0; i < kSignals.size(); ++i)
      before_[i] = std::signal(kSignals[i], SIG_IGN);
  }
  ~LostSignals() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) std::signal(kSignals[i], before_[i]);
  }
  LostSignals(const LostSignals&) = delete;
  LostSignals& operator=(const LostSignals&) = delete;

 private:
  static constexpr std::array kSignals = {SIGTERM, SIGINT, SIGTSTP, SIGCONT};
  std::array<void (*)(int), kSignals.size()> before_{};
};

class ServiceHostTest : public testing::Test {
 protected:
  // Runs the host until the script, an event behind the start state, is done.
  void Run(const std::function<void(ServiceHost&)>& script) {
    ServiceHost host(loop, clock);
    // A start state that never comes must not hold the tests up.
    const auto deadline = loop.Every(std::chrono::seconds(60), [this] { loop.Quit(); });
    bool done = false;
    host.RunService(
        {[&](ServiceState state) {
           states.push_back(state);
           if (onState) onState(state);
           if (state != ServiceState::kStart) return;
           loop.Post([&] {
             script(host);
             done = true;
             loop.Quit();
           });
         },
         [this](int, const std::string& description) { errors.push_back(description); }});
    EXPECT_TRUE(done);
  }

  void RaiseAndSettle(int signal) {
    std::raise(signal);
    loop.DelayMs(50);
  }

  // What the host makes of signals, each raised when the one before has been served.
  States StatesOf(const std::vector<int>& signals) {
    Run([&](ServiceHost&) {
      for (const int signal : signals) RaiseAndSettle(signal);
    });
    return states;
  }

  LostSignals lostSignals;
  Environment environment{{"NOTIFY_SOCKET", "WATCHDOG_USEC", "WATCHDOG_PID"}};
  TestClock clock;
  EventLoop loop{clock};
  States states;
  Lines errors;
  std::function<void(ServiceState)> onState;
};

TEST_F(ServiceHostTest, StartStateIsTheFirst) {
  EXPECT_EQ(StatesOf({}), States{ServiceState::kStart});
}

TEST_F(ServiceHostTest, TerminationIsTheStop) {
  EXPECT_EQ(StatesOf({SIGTERM}), (States{ServiceState::kStart, ServiceState::kStop}));
}

TEST_F(ServiceHostTest, InterruptOfATerminalIsTheStop) {
  EXPECT_EQ(StatesOf({SIGINT}), (States{ServiceState::kStart, ServiceState::kStop}));
}

TEST_F(ServiceHostTest, TerminalStopIsThePause) {
  EXPECT_EQ(StatesOf({SIGTSTP}), (States{ServiceState::kStart, ServiceState::kPause}));
}

TEST_F(ServiceHostTest, ContinuingAfterAPauseIsTheResume) {
  EXPECT_EQ(StatesOf({SIGTSTP, SIGCONT}),
            (States{ServiceState::kStart, ServiceState::kPause, ServiceState::kResume}));
}

TEST_F(ServiceHostTest, ContinuingAgainIsNoSecondResume) {
  EXPECT_EQ(StatesOf({SIGTSTP, SIGCONT, SIGCONT, SIGCONT}),
            (States{ServiceState::kStart, ServiceState::kPause, ServiceState::kResume}));
}

TEST_F(ServiceHostTest, EachPauseHasItsResume) {
  EXPECT_EQ(StatesOf({SIGTSTP, SIGCONT, SIGTSTP, SIGCONT}),
            (States{ServiceState::kStart, ServiceState::kPause, ServiceState::kResume,
                    ServiceState::kPause, ServiceState::kResume}));
}

TEST_F(ServiceHostTest, ContinuingWithoutAPauseIsIgnored) {
  EXPECT_EQ(StatesOf({SIGCONT}), States{ServiceState::kStart});
}

TEST_F(ServiceHostTest, ContinuingThatComesWithAStopIsIgnored) {
  EXPECT_EQ(StatesOf({SIGTERM, SIGCONT}), (States{ServiceState::kStart, ServiceState::kStop}));
}

TEST_F(ServiceHostTest, ContinuingThatComesWithAStopIsIgnoredAfterAPauseToo) {
  EXPECT_EQ(StatesOf({SIGTSTP, SIGTERM, SIGCONT}),
            (States{ServiceState::kStart, ServiceState::kPause, ServiceState::kStop}));
}

TEST_F(ServiceHostTest, ContinuingAfterAnInterruptIsIgnoredAfterAPauseToo) {
  EXPECT_EQ(StatesOf({SIGTSTP, SIGINT, SIGCONT}),
            (States{ServiceState::kStart, ServiceState::kPause, ServiceState::kStop}));
}

// As the service manager sends them: without a moment between.
TEST_F(ServiceHostTest, StopAndContinuingAtOnceAreTheStopAlone) {
  Run([&](ServiceHost&) {
    RaiseAndSettle(SIGTSTP);
    std::raise(SIGTERM);
    RaiseAndSettle(SIGCONT);
  });
  EXPECT_EQ(states, (States{ServiceState::kStart, ServiceState::kPause, ServiceState::kStop}));
}

TEST_F(ServiceHostTest, StatesRunNestedInsideAWait) {
  bool stoppedInTheWait = false;
  onState = [&](ServiceState state) {
    if (state != ServiceState::kStart) return;
    RaiseAndSettle(SIGTERM);
    stoppedInTheWait = states.back() == ServiceState::kStop;
  };
  Run([](ServiceHost&) {});
  EXPECT_TRUE(stoppedInTheWait);
}

TEST_F(ServiceHostTest, ReportsAreNotices) {
  for (const NoticeSocket::Kind kind : {NoticeSocket::Kind::kFile, NoticeSocket::Kind::kAbstract}) {
    NoticeSocket socket(kind);
    environment.Set("NOTIFY_SOCKET", socket.name());
    EventLoop other(clock);
    ServiceHost host(other, clock);
    host.ReportReady("Started, not listening yet");
    host.ReportStatus("Listening on 127.0.0.1:8080");
    host.ReportStopping();
    EXPECT_EQ(socket.Arrived(), (Lines{"READY=1\nSTATUS=Started, not listening yet",
                                       "STATUS=Listening on 127.0.0.1:8080", "STOPPING=1"}));
  }
}

TEST_F(ServiceHostTest, NothingIsReportedByItself) {
  NoticeSocket socket;
  environment.Set("NOTIFY_SOCKET", socket.name());
  EXPECT_EQ(StatesOf({SIGTSTP, SIGCONT, SIGTERM}).size(), 4u);
  EXPECT_EQ(socket.Arrived(), Lines{});
}

TEST_F(ServiceHostTest, WithoutASocketReportsAreNoFailure) {
  Run([&](ServiceHost& host) {
    host.ReportReady("ready");
    host.ReportStatus("status");
    host.ReportStopping();
    loop.DelayMs(50);
  });
  EXPECT_EQ(errors, Lines{});
}

TEST_F(ServiceHostTest, ReportThatCannotBeSentIsAnErrorEvent) {
  NoticeSocket socket;
  environment.Set("NOTIFY_SOCKET", socket.name());
  socket.Close();
  const std::function<void(ServiceHost&)> reports[] = {
      [](ServiceHost& host) { host.ReportReady("ready"); },
      [](ServiceHost& host) { host.ReportStatus("status"); },
      [](ServiceHost& host) { host.ReportStopping(); },
  };
  std::size_t errorsAtOnce = 0;
  Run([&](ServiceHost& host) {
    for (const auto& report : reports) {
      const std::size_t before = errors.size();
      EXPECT_NO_THROW(report(host));
      errorsAtOnce += errors.size() - before;
      loop.DelayMs(50);
    }
  });
  EXPECT_EQ(errorsAtOnce, 0u);
  ASSERT_EQ(errors.size(), 3u);
  for (const std::string& error : errors) EXPECT_NE(error, "");
}

TEST_F(ServiceHostTest, ReportThatCannotBeSentBeforeTheProcessIsHandedOverIsNoFailure) {
  NoticeSocket socket;
  environment.Set("NOTIFY_SOCKET", socket.name());
  socket.Close();
  ServiceHost host(loop, clock);
  EXPECT_NO_THROW(host.ReportReady("ready"));
  EXPECT_NO_THROW(host.ReportStatus("status"));
  EXPECT_NO_THROW(host.ReportStopping());
}

class WatchdogTest : public ServiceHostTest {
 protected:
  WatchdogTest() { environment.Set("NOTIFY_SOCKET", socket.name()); }

  // Signs of life within so many tenths of a second of waiting. They are taken at each tenth,
  // since the socket holds few.
  std::size_t SignsInAWait(int tenths) {
    std::size_t signs = 0;
    for (int i = 0; i < tenths; ++i) {
      loop.DelayMs(100);
      signs += TakeSigns();
    }
    return signs;
  }

  std::size_t TakeSigns() {
    const Lines notices = socket.Arrived();
    for (const std::string& notice : notices) EXPECT_EQ(notice, "WATCHDOG=1");
    return notices.size();
  }

  NoticeSocket socket;
};

TEST_F(WatchdogTest, SignsOfLifeComeAtLeastTwiceAPeriodInALongWait) {
  environment.Set("WATCHDOG_USEC", "2000000");
  std::vector<std::size_t> signs;
  Run([&](ServiceHost&) {
    for (int period = 0; period < 20; ++period) signs.push_back(SignsInAWait(20));
  });
  for (const std::size_t inOnePeriod : signs) EXPECT_GE(inOnePeriod, 2u);
}

TEST_F(WatchdogTest, SignsOfLifeComeInTheWaitOfANestedEvent) {
  environment.Set("WATCHDOG_USEC", "2000000");
  std::size_t signs = 0;
  Run([&](ServiceHost&) {
    loop.Post([&] { signs = SignsInAWait(100); });
    loop.DelayMs(10);
  });
  EXPECT_GE(signs, 10u);
}

TEST_F(WatchdogTest, SignsOfLifeComeWhileTheLoopIsIdle) {
  environment.Set("WATCHDOG_USEC", "600000");
  SystemClock real;
  EventLoop idle(real);
  ServiceHost host(idle, real);
  // A stop that never comes must not hold the tests up.
  const auto deadline = idle.Every(std::chrono::seconds(60), [&] { idle.Quit(); });
  constexpr int kSigns = 5;
  int signs = 0;
  std::chrono::steady_clock::duration took{};
  std::thread manager([&] {
    if (socket.Next() == "WATCHDOG=1") ++signs;
    const auto first = std::chrono::steady_clock::now();
    while (signs > 0 && signs < kSigns && socket.Next() == "WATCHDOG=1") ++signs;
    took = std::chrono::steady_clock::now() - first;
    kill(getpid(), SIGTERM);
  });
  host.RunService({[&](ServiceState state) {
                     if (state == ServiceState::kStop) idle.Quit();
                   },
                   [](int, const std::string&) {}});
  manager.join();
  EXPECT_EQ(signs, kSigns);
  // Two a period are 1200 ms; one a period would be 2400.
  EXPECT_LT(took, milliseconds(2200));
}

TEST_F(WatchdogTest, NoSignOfLifeComesWhileOneEventKeepsTheThread) {
  environment.Set("WATCHDOG_USEC", "200000");
  std::size_t signsBefore = 0;
  std::size_t signsInTheEvent = 99;
  Run([&](ServiceHost&) {
    signsBefore = SignsInAWait(10);
    clock.Advance(std::chrono::seconds(10));
    std::this_thread::sleep_for(milliseconds(600));
    signsInTheEvent = TakeSigns();
  });
  EXPECT_GE(signsBefore, 1u);
  EXPECT_EQ(signsInTheEvent, 0u);
}

TEST_F(WatchdogTest, WithoutAPeriodNoSignOfLifeComes) {
  std::size_t signs = 99;
  Run([&](ServiceHost&) { signs = SignsInAWait(100); });
  EXPECT_EQ(signs, 0u);
}

TEST_F(WatchdogTest, PeriodOfAnotherProcessBringsNoSignOfLife) {
  environment.Set("WATCHDOG_USEC", "2000000");
  environment.Set("WATCHDOG_PID", std::to_string(getppid()));
  std::size_t signs = 99;
  Run([&](ServiceHost&) { signs = SignsInAWait(100); });
  EXPECT_EQ(signs, 0u);
}

}  // namespace
}  // namespace quillon
