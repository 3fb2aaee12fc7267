// The message loop: posted events, the pumping wait with events nested inside, the end
// of the loop from any depth, timers and signals.
#include "platform/event_loop.h"

#include <gtest/gtest.h>

#include <csignal>
#include <limits>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/test_clock.h"

namespace quillon {
namespace {

using std::chrono::milliseconds;

// A test clock that also notes each single sleep.
class SleepLog : public TestClock {
 public:
  void Sleep(milliseconds duration) override {
    TestClock::Sleep(duration);
    sleeps.push_back(duration);
  }
  std::vector<milliseconds> sleeps;
};

class EventLoopTest : public testing::Test {
 protected:
  void Log(const std::string& entry) { log.push_back(entry); }

  // An event that logs its two ends around a wait.
  void PostWaiting(const std::string& name, std::int16_t wait) {
    loop.Post([this, name, wait] {
      Log(name + " begins");
      loop.DelayMs(wait);
      Log(name + " ends");
    });
  }

  SleepLog clock;
  EventLoop loop{clock};
  std::vector<std::string> log;
};

TEST_F(EventLoopTest, DelaySleepsInStepsOfTenMilliseconds) {
  struct Case {
    int wait;
    std::size_t sleeps;
  };
  const Case cases[] = {{0, 0},
                        {9, 0},
                        {10, 1},
                        {19, 1},
                        {20, 2},
                        {500, 50},
                        {1000, 100},
                        {-1, 0},
                        {-10, 0},
                        {-500, 0},
                        {std::numeric_limits<std::int16_t>::max(), 3276},
                        {std::numeric_limits<std::int16_t>::min(), 0}};
  for (const Case& row : cases) {
    clock.sleeps.clear();
    loop.DelayMs(static_cast<std::int16_t>(row.wait));
    EXPECT_EQ(clock.sleeps, std::vector<milliseconds>(row.sleeps, milliseconds(10))) << row.wait;
  }
}

TEST_F(EventLoopTest, EventsRunInTheOrderInWhichTheyArePosted) {
  for (const char* name : {"a", "b", "c"}) loop.Post([this, name] { Log(name); });
  EXPECT_TRUE(log.empty());
  loop.Pump();
  EXPECT_EQ(log, (std::vector<std::string>{"a", "b", "c"}));
}

TEST_F(EventLoopTest, EventsRunNestedInsideAWait) {
  PostWaiting("outer", 10);
  PostWaiting("inner", 10);
  loop.Post([this] { Log("innermost"); });
  loop.Pump();
  EXPECT_EQ(log, (std::vector<std::string>{"outer begins", "inner begins", "innermost",
                                           "inner ends", "outer ends"}));
}

TEST_F(EventLoopTest, EventPostedByAWaitingHandlerRunsInsideItsWait) {
  loop.Post([this] {
    loop.Post([this] { Log("posted"); });
    Log("before");
    loop.DelayMs(9);
    Log("no wait");
    loop.DelayMs(10);
    Log("after");
  });
  loop.Pump();
  EXPECT_EQ(log, (std::vector<std::string>{"before", "no wait", "posted", "after"}));
}

TEST_F(EventLoopTest, HandlerThatPostsItselfAgainCannotHoldAPump) {
  int runs = 0;
  std::function<void()> again = [&] {
    ++runs;
    loop.Post(again);
  };
  loop.Post(again);
  loop.Pump();
  EXPECT_GE(runs, 1);
  EXPECT_LE(runs, 256);
  runs = 0;
  loop.DelayMs(30);
  EXPECT_GE(runs, 3);
  EXPECT_LE(runs, 3 * 256);
}

TEST_F(EventLoopTest, PumpRuns256EventsAtMost) {
  int runs = 0;
  for (int i = 0; i < 300; ++i) loop.Post([&] { ++runs; });
  loop.Pump();
  EXPECT_EQ(runs, 256);
  loop.Pump();
  EXPECT_EQ(runs, 300);
}

TEST_F(EventLoopTest, RunEndsWithQuit) {
  loop.Post([this] { Log("a"); });
  loop.Post([this] { loop.Quit(); });
  loop.Run();
  EXPECT_EQ(log, (std::vector<std::string>{"a"}));
}

TEST_F(EventLoopTest, QuitInsideANestedEventEndsTheOuterWaits) {
  PostWaiting("outer", 1000);
  PostWaiting("inner", 1000);
  loop.Post([this] {
    loop.Quit();
    Log("quit");
  });
  loop.Run();
  EXPECT_EQ(log, (std::vector<std::string>{"outer begins", "inner begins", "quit"}));
  EXPECT_LT(clock.slept(), milliseconds(1000));
}

TEST_F(EventLoopTest, WaitEndsByLoopEndedAfterQuit) {
  loop.Post([this] {
    loop.Post([this] { loop.Quit(); });
    try {
      loop.DelayMs(1000);
    } catch (const std::exception&) {
      Log("an exception");
    } catch (const LoopEnded&) {
      Log("the loop's end");
      throw;
    }
  });
  loop.Run();
  EXPECT_EQ(log, (std::vector<std::string>{"the loop's end"}));
}

TEST_F(EventLoopTest, ExceptionEndsAtItsEvent) {
  loop.Post([] { throw std::runtime_error("broken"); });
  loop.Post([this] { Log("next"); });
  loop.Post([this] { loop.Quit(); });
  loop.Run();
  EXPECT_EQ(log, (std::vector<std::string>{"next"}));
}

TEST_F(EventLoopTest, ExceptionOfANestedEventDoesNotUnwindTheOuterOne) {
  PostWaiting("outer", 10);
  loop.Post([] { throw std::runtime_error("broken"); });
  loop.Pump();
  EXPECT_EQ(log, (std::vector<std::string>{"outer begins", "outer ends"}));
}

TEST_F(EventLoopTest, SignalArrivesAsAnEventEachTime) {
  int signals = 0;
  loop.OnSignal(SIGUSR1, [&] { ++signals; });
  for (int expected = 1; expected <= 2; ++expected) {
    std::raise(SIGUSR1);
    loop.DelayMs(50);
    EXPECT_EQ(signals, expected);
  }
}

TEST_F(EventLoopTest, TurnIsToldAfterEachEventOfRun) {
  loop.OnTurn([this] { Log("turn"); });
  for (const char* name : {"a", "b", "c"}) loop.Post([this, name] { Log(name); });
  loop.Post([this] { loop.Quit(); });
  EXPECT_TRUE(log.empty());
  loop.Run();
  ASSERT_GE(log.size(), 6u);
  log.resize(6);  // the loop may still come round after the event that ended it
  EXPECT_EQ(log, (std::vector<std::string>{"a", "turn", "b", "turn", "c", "turn"}));
}

TEST_F(EventLoopTest, TurnIsToldAfterEachSliceOfAWait) {
  struct Case {
    int wait;
    int turns;
  };
  const Case cases[] = {{9, 0}, {10, 1}, {19, 1}, {50, 5}, {-10, 0}};
  int turns = 0;
  loop.OnTurn([&] { ++turns; });
  for (const Case& row : cases) {
    turns = 0;
    loop.DelayMs(static_cast<std::int16_t>(row.wait));
    EXPECT_EQ(turns, row.turns) << row.wait;
  }
}

TEST_F(EventLoopTest, TurnIsToldBehindTheEventsOfItsSlice) {
  loop.OnTurn([this] { Log("turn"); });
  loop.Post([this] { Log("a"); });
  loop.Post([this] { Log("b"); });
  loop.DelayMs(20);
  EXPECT_EQ(log, (std::vector<std::string>{"a", "b", "turn", "turn"}));
}

TEST_F(EventLoopTest, TurnIsToldInTheWaitOfANestedEvent) {
  loop.OnTurn([this] { Log("turn"); });
  PostWaiting("inner", 20);
  loop.DelayMs(10);
  EXPECT_EQ(log, (std::vector<std::string>{"inner begins", "turn", "turn", "inner ends", "turn"}));
}

TEST_F(EventLoopTest, TurnIsSilentWhileOneEventKeepsTheThread) {
  int turns = 0;
  int turnsInTheEvent = 99;
  loop.OnTurn([&] { ++turns; });
  loop.Post([&] {
    const int before = turns;
    clock.Advance(std::chrono::hours(1));
    std::this_thread::sleep_for(milliseconds(50));
    turnsInTheEvent = turns - before;
    loop.Quit();
  });
  loop.Run();
  EXPECT_EQ(turnsInTheEvent, 0);
}

// Timers follow the real time.
class TimerTest : public testing::Test {
 protected:
  SystemClock clock;
  EventLoop loop{clock};
  int ticks = 0;
};

TEST_F(TimerTest, TicksUntilItGoes) {
  auto timer = loop.Every(milliseconds(5), [&] {
    if (++ticks == 3) loop.Quit();
  });
  const std::int64_t start = clock.TickMs();
  loop.Run();
  EXPECT_EQ(ticks, 3);
  EXPECT_GE(clock.TickMs() - start, 14);
}

TEST_F(TimerTest, DoesNotTickAfterItWent) {
  auto timer = loop.Every(milliseconds(5), [&] { ++ticks; });
  loop.DelayMs(30);
  EXPECT_GE(ticks, 1);
  timer.reset();
  ticks = 0;
  loop.DelayMs(30);
  EXPECT_EQ(ticks, 0);
}

TEST_F(TimerTest, FirstTickComesAfterTheInterval) {
  const auto timer = loop.Every(milliseconds(2000), [&] { ++ticks; });
  loop.DelayMs(20);
  EXPECT_EQ(ticks, 0);
}

TEST_F(TimerTest, LateTicksComeOnceAndNotInABurst) {
  const auto timer = loop.Every(milliseconds(10), [&] {
    if (++ticks == 1) std::this_thread::sleep_for(milliseconds(200));
  });
  std::this_thread::sleep_for(milliseconds(15));
  loop.Pump();
  loop.Pump();
  EXPECT_GE(ticks, 1);
  EXPECT_LE(ticks, 2);
}

TEST_F(TimerTest, TicksInsideAWait) {
  const auto timer = loop.Every(milliseconds(5), [&] { ++ticks; });
  loop.Post([&] {
    loop.DelayMs(100);
    EXPECT_GE(ticks, 2);
    loop.Quit();
  });
  loop.Run();
}

TEST_F(TimerTest, TickBringsTheLoopRound) {
  int turns = 0;
  loop.OnTurn([&] { ++turns; });
  const auto timer = loop.Every(milliseconds(5), [&] {
    if (++ticks == 4) loop.Quit();
  });
  loop.Run();
  EXPECT_GE(turns, 3);
}

TEST_F(TimerTest, MayEndItselfInItsTick) {
  std::unique_ptr<EventLoop::Timer> timer;
  timer = loop.Every(milliseconds(5), [&] {
    ++ticks;
    timer.reset();
  });
  loop.DelayMs(50);
  EXPECT_EQ(ticks, 1);
}

// The second tick is queued already when its timer goes, and must not come.
TEST_F(TimerTest, TwoTimersThatAreDueTogetherMayEndEachOther) {
  std::unique_ptr<EventLoop::Timer> timers[2];
  for (int i = 0; i < 2; ++i) {
    timers[i] = loop.Every(milliseconds(5), [&, i] {
      ++ticks;
      timers[1 - i].reset();
    });
  }
  std::this_thread::sleep_for(milliseconds(20));
  loop.Pump();
  EXPECT_EQ(ticks, 1);
}

}  // namespace
}  // namespace quillon
