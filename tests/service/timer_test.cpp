// The ticks of timer1: which one opens the sockets, and what a pass that fails leaves.
#include "service/timer.h"

#include <functional>
#include <stdexcept>

#include "service/service_fixture.h"

namespace quillon {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::seconds;

class TimerTickTest : public ServiceTest {
 protected:
  // The clock of a started service whose start lies long back.
  void RunSince(const DateTimeParts& now, std::int16_t lastHour) {
    house.clock.Set(MakeDateTime(now));
    house.settings.StartTime = house.clock.Now() - hours(100);
    house.service.startTick = house.clock.TickMs() - milliseconds(hours(100)).count();
    house.settings.ConnMain = "Provider=SQLite;Data Source=" + house.installation.path() +
                              "/Quillon.mdb;Persist Security Info=False";
    house.service.LastHour = lastHour;
  }

  // The jobs' calls of one tick.
  Lines JobsOfTick() {
    house.jobCalls.clear();
    Tick();
    return house.jobCalls;
  }

  void LetImportFail() {
    house.jobs.Import = [this](bool&) {
      house.jobCalls.emplace_back("Import");
      throw std::runtime_error("the import broke");
    };
  }
};

TEST_F(TimerTickTest, TickBelowFiftySecondsOpensAgentAndListener) {
  Start();
  TickAt(seconds(30));
  EXPECT_TRUE(house.tcpServer.Listening());
  EXPECT_EQ(house.snmpAgent.openings, 1);
  EXPECT_TRUE(house.trapTarget.SnmpAgentOpen);
  EXPECT_EQ(house.Events(),
            Lines{"3\tfrmQuillonWeb_dartSvc_State\tService Started. Version: 9.05"});
}

TEST_F(TimerTickTest, AgentOpensBeforeTheListenerAndTheNoticeComesLast) {
  Start();
  house.snmpAgent.openingFails = SocketFailure::Code::kAddressInUse;
  house.SetWebServer("TcpPort", "70000");
  TickAt(seconds(30));
  EXPECT_EQ(house.Events(),
            (Lines{Failed("modQuillonWeb_ServiceOpen", "SNMP Agent Port was in use"),
                   Failed("modQuillonWeb_ServiceOpen", "not a TCP port: 70000"),
                   "3\tfrmQuillonWeb_dartSvc_State\tService Started. Version: 9.05"}));
}

TEST_F(TimerTickTest, StartTickRunsNoPass) {
  house.clock.Set(MakeDateTime({2024, 5, 2, 9, 40, 0}));
  Start();
  TickAt(seconds(30));
  EXPECT_EQ(house.jobCalls, Lines{});
  EXPECT_EQ(house.service.LastHour, 0);
}

TEST_F(TimerTickTest, OrdinaryTickOpensNothingAndTellsNothing) {
  Start();
  TickAt(seconds(60));
  EXPECT_FALSE(house.tcpServer.Listening());
  EXPECT_EQ(house.snmpAgent.openings, 0);
  EXPECT_EQ(house.jobCalls, Lines{"Import"});
  EXPECT_EQ(house.Events(), Lines{});
}

TEST_F(TimerTickTest, FiftySecondsAreCountedWhole) {
  struct Case {
    milliseconds afterStart;
    bool opens;
  };
  const Case cases[] = {{milliseconds(0), true},
                        {milliseconds(49'999), true},
                        {milliseconds(50'000), false},
                        {milliseconds(60'000), false}};
  for (const Case& row : cases) {
    ServiceHouse fresh;
    fresh.settings.StartTime = fresh.clock.Now();
    fresh.service.startTick = fresh.clock.TickMs();
    fresh.clock.Advance(row.afterStart);
    timer1_Timer(fresh.service);
    EXPECT_EQ(fresh.tcpServer.Listening(), row.opens) << row.afterStart.count();
  }
}

TEST_F(TimerTickTest, WallClockThatIsSetMeanwhileDoesNotCount) {
  for (const auto step : {hours(1), hours(-1)}) {
    ServiceHouse fresh;
    fresh.settings.StartTime = fresh.clock.Now();
    fresh.service.startTick = fresh.clock.TickMs();
    fresh.clock.Advance(seconds(30));
    fresh.clock.Set(fresh.clock.Now() + step);
    timer1_Timer(fresh.service);
    EXPECT_TRUE(fresh.tcpServer.Listening()) << step.count();
  }
}

TEST_F(TimerTickTest, TicksEveryThirtySecondsOpenTheSocketsOnce) {
  Start();
  for (int tick = 1; tick <= 20; ++tick) TickAt(tick * kTimerInterval);
  EXPECT_EQ(house.snmpAgent.openings, 1);
  EXPECT_EQ(house.Events().size(), 1u);
}

TEST_F(TimerTickTest, ServiceStartedAtTenPastMidnightRunsNoPassUntilOne) {
  house.clock.Set(MakeDateTime({2024, 5, 2, 0, 10, 0}));
  Start();
  for (int tick = 1; tick < 100; ++tick) TickAt(tick * kTimerInterval);  // until 00:59:30
  EXPECT_EQ(house.jobCalls, Lines{});
  EXPECT_EQ(house.service.LastHour, 0);
  TickAt(100 * kTimerInterval);  // 01:00:00
  EXPECT_EQ(house.jobCalls, Lines{"Import"});
  EXPECT_EQ(house.service.LastHour, 1);
}

TEST_F(TimerTickTest, ServiceStartedAtTwentyToTenRunsAPassAfterAMinuteAndTheNextAfterTen) {
  house.clock.Set(MakeDateTime({2024, 5, 2, 9, 40, 10}));
  Start();
  TickAt(seconds(30));
  EXPECT_EQ(house.jobCalls, Lines{});
  TickAt(seconds(60));
  EXPECT_EQ(house.jobCalls, Lines{"Import"});
  EXPECT_EQ(house.service.LastHour, 9);
  for (int tick = 3; tick < 40; ++tick) TickAt(tick * kTimerInterval);  // until 09:59:40
  EXPECT_EQ(house.jobCalls, Lines{"Import"});
  TickAt(40 * kTimerInterval);  // 10:00:10
  EXPECT_EQ(house.jobCalls, (Lines{"Import", "Import"}));
  EXPECT_EQ(house.service.LastHour, 10);
}

TEST_F(TimerTickTest, FailureInAPassIsReportedUnderTheTimersName) {
  RunSince({2024, 5, 2, 10, 0, 10}, 9);
  LetImportFail();
  Tick();
  EXPECT_EQ(house.Events(), Lines{Failed("frmQuillonWeb_timer1", "the import broke")});
  EXPECT_FALSE(house.service.jobRunning);
}

TEST_F(TimerTickTest, FailedJobEndsItsPass) {
  struct Case {
    std::function<void(DailyJobs&)> breakJob;
    Lines calls;
  };
  const auto fail = [] { throw FileFailure("no room"); };
  const Case cases[] = {
      {[&](DailyJobs& jobs) { jobs.Import = [&](bool&) { fail(); }; }, {}},
      {[&](DailyJobs& jobs) { jobs.AutoCreate = fail; }, {"Import"}},
      {[&](DailyJobs& jobs) { jobs.MailReports = fail; }, {"Import", "AutoCreate"}},
  };
  const DailyJobs whole = house.jobs;
  house.importIsDue = true;
  for (const Case& row : cases) {
    RunSince({2024, 5, 2, 10, 0, 10}, 9);
    house.jobs = whole;
    row.breakJob(house.jobs);
    EXPECT_EQ(JobsOfTick(), row.calls);
    EXPECT_EQ(house.service.LastHour, 10);
    EXPECT_EQ(house.Events().back(), Failed("frmQuillonWeb_timer1", "no room"));
  }
  EXPECT_EQ(house.Events().size(), 3u);
}

TEST_F(TimerTickTest, FailedPassSetsItsHourBeforeTheEvent) {
  RunSince({2024, 5, 2, 10, 0, 10}, 9);
  LetImportFail();
  std::int16_t hourInTheWait = -1;
  house.loop.Post([&] { hourInTheWait = house.service.LastHour; });
  Tick();
  EXPECT_EQ(hourInTheWait, 10);
}

TEST_F(TimerTickTest, TickInsideTheEventOfAFailedPassRunsNoOther) {
  RunSince({2024, 5, 2, 10, 0, 10}, 9);
  LetImportFail();
  house.loop.Post([&] { Tick(); });
  Tick();
  EXPECT_EQ(house.jobCalls, Lines{"Import"});
  EXPECT_EQ(house.Events().size(), 1u);
}

TEST_F(TimerTickTest, FailedPassIsNotTriedAgainWithinTheHour) {
  RunSince({2024, 5, 2, 10, 0, 10}, 9);
  LetImportFail();
  EXPECT_EQ(JobsOfTick(), Lines{"Import"});
  for (const int minute : {1, 30, 59}) {
    house.clock.Set(MakeDateTime({2024, 5, 2, 10, minute, 40}));
    EXPECT_EQ(JobsOfTick(), Lines{}) << minute;
  }
  house.clock.Set(MakeDateTime({2024, 5, 2, 11, 0, 10}));
  EXPECT_EQ(JobsOfTick(), Lines{"Import"});
  EXPECT_EQ(house.Events().size(), 2u);
}

TEST_F(TimerTickTest, FailedPassTakesTheHourOfItsFailure) {
  RunSince({2024, 5, 2, 10, 59, 50}, 9);
  house.jobs.Import = [this](bool&) {
    house.jobCalls.emplace_back("Import");
    house.loop.DelayMs(20'000);
    throw std::runtime_error("the import broke");
  };
  Tick();
  EXPECT_EQ(house.service.LastHour, 11);
  EXPECT_EQ(JobsOfTick(), Lines{});
}

// The hour of the failed pass is 0, so no later pass of that day finds a smaller one.
TEST_F(TimerTickTest, DayWhoseFirstPassFailsIsNotCleaned) {
  RunSince({2024, 5, 2, 0, 0, 10}, 23);
  house.installation.Write("Debug/WebServices.txt", "of yesterday");
  house.installation.Write("Debug/AppEventWeb.txt",
                           "2023-01-01 00:00:00\t3\tm_p\tof last year\r\n");
  const DailyJobs whole = house.jobs;
  LetImportFail();
  Tick();
  house.jobs = whole;
  house.clock.Set(MakeDateTime({2024, 5, 2, 1, 0, 10}));
  Tick();
  EXPECT_TRUE(house.installation.Exists("Debug/WebServices.txt"));
  EXPECT_EQ(house.Events(),
            (Lines{"3\tm_p\tof last year", Failed("frmQuillonWeb_timer1", "the import broke")}));
}

TEST_F(TimerTickTest, EndOfTheLoopPassesThePassWithoutAReport) {
  RunSince({2024, 5, 2, 10, 0, 10}, 9);
  bool ended = false;
  house.jobs.Import = [&](bool&) {
    house.loop.Quit();
    house.loop.DelayMs(10);
    ended = true;
  };
  EXPECT_THROW(Tick(), LoopEnded);
  EXPECT_FALSE(ended);
  EXPECT_FALSE(house.service.jobRunning);
  EXPECT_EQ(house.service.LastHour, 9);
  EXPECT_EQ(house.Events(), Lines{});
}

}  // namespace
}  // namespace quillon
