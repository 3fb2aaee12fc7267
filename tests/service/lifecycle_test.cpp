// The states of the service and its timer, with the clock set by hand.
#include "service/lifecycle.h"

#include <gtest/gtest.h>

#include "support/service_house.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;

class LifecycleTest : public ::testing::Test {
 protected:
  LifecycleTest() { house.settings.ConnMain.clear(); }

  void Start() { dartSvc_State(house.service, ServiceState::kStart); }
  void TickAt(std::chrono::seconds afterStart) {
    house.clock.Advance(house.settings.StartTime + afterStart - house.clock.Now());
    timer1_Timer(house.service);
  }

  ServiceHouse house;
};

TEST_F(LifecycleTest, StartReadsWhatTheServiceNeeds) {
  house.SetGeneral("DebugMode", "1");
  house.SetGeneral("DatumFormat", "MM/DD/YYYY");
  house.installation.Write("Morvane.ini", "ServerIpAddr=10.1.2.3\r\n");
  house.installation.Write("WebReports/Language.ini", "15\tdevice\tGerät\r\n");
  house.installation.Write("WebReports/HelpText.txt", "help");
  house.installation.Write("WebReports/Favicon.ico", std::string("\0icon", 5));
  house.installation.Write("Debug/WebServices.txt", "of the last run");
  Start();
  EXPECT_EQ(house.settings.ConnHistory, "Provider=SQLite;Data Source=" + house.installation.path() +
                                            "/History.mdb;Persist Security Info=False");
  EXPECT_FALSE(house.installation.Exists("Debug/WebServices.txt"));
  EXPECT_TRUE(house.settings.DebugMode);
  EXPECT_EQ(house.settings.DatumFormat, "MM/DD/YYYY");
  EXPECT_EQ(house.settings.ServerIpAddr, "10.1.2.3");
  EXPECT_EQ(house.words.LangWord[15], "Gerät");
  EXPECT_EQ(house.words.HelpText, "help");
  EXPECT_EQ(house.favIconData, std::string("\0icon", 5));
  EXPECT_EQ(house.settings.StartTime, house.clock.Now());
  EXPECT_NE(house.service.timer1, nullptr);
  EXPECT_FALSE(house.tcpServer.Listening());
  EXPECT_EQ(house.Events(), Lines{});
}

TEST_F(LifecycleTest, SecondStartDoesNothing) {
  Start();
  const DateTime started = house.settings.StartTime;
  house.clock.Advance(std::chrono::seconds(5));
  house.SetGeneral("DebugMode", "1");
  Start();
  EXPECT_EQ(house.settings.StartTime, started);
  EXPECT_FALSE(house.settings.DebugMode);
}

TEST_F(LifecycleTest, MissingIniFileEndsTheProcess) {
  house.SetGeneral("SnmpcDir", "/nowhere");
  Start();
  EXPECT_EQ(house.Events(),
            Lines{"1\tfrmQuillonWeb_dartSvc_State\t/nowhere\\Morvane.ini Not Found"});
  EXPECT_EQ(house.service.exitStatus, 1);
  EXPECT_EQ(house.service.timer1, nullptr);
  house.loop.Run();  // returns at once
}

TEST_F(LifecycleTest, EmptyMorvaneFolderTriesTheRootOfTheDrive) {
  house.SetGeneral("SnmpcDir", "");
  Start();
  EXPECT_EQ(house.Events(), (Lines{"1\tfrmQuillonWeb_dartSvc_State\tNo Path to Morvane",
                                   "1\tfrmQuillonWeb_dartSvc_State\tc:\\Morvane.ini Not Found"}));
}

TEST_F(LifecycleTest, DatabaseThatCannotBeReadIsReportedAndTheProcessLivesOn) {
  house.installation.Sql("Quillon.mdb", "DELETE FROM Settings_General");
  Start();
  EXPECT_EQ(house.Events(), Lines{"1\tfrmQuillonWeb_dartSvc_State\tQuillon.mdb: no current row"});
  EXPECT_EQ(house.service.exitStatus, 0);
}

TEST_F(LifecycleTest, TickBelowFiftySecondsOpensTheListener) {
  Start();
  TickAt(std::chrono::seconds(30));
  EXPECT_TRUE(house.tcpServer.Listening());
  EXPECT_EQ(house.Events(),
            Lines{"3\tfrmQuillonWeb_dartSvc_State\tService Started. Version: 9.05"});
}

TEST_F(LifecycleTest, FiftySecondsAreCountedWhole) {
  struct Case {
    std::chrono::milliseconds afterStart;
    bool opens;
  };
  const Case cases[] = {{std::chrono::milliseconds(49'999), true},
                        {std::chrono::milliseconds(50'000), false},
                        {std::chrono::milliseconds(60'000), false}};
  for (const Case& row : cases) {
    ServiceHouse fresh;
    fresh.settings.StartTime = fresh.clock.Now();
    fresh.service.startTick = fresh.clock.TickMs();
    fresh.clock.Advance(row.afterStart);
    timer1_Timer(fresh.service);
    EXPECT_EQ(fresh.tcpServer.Listening(), row.opens) << row.afterStart.count();
  }
}

TEST_F(LifecycleTest, WallClockThatIsSetMeanwhileDoesNotCount) {
  for (const auto step : {std::chrono::hours(1), std::chrono::hours(-1)}) {
    ServiceHouse fresh;
    fresh.settings.StartTime = fresh.clock.Now();
    fresh.service.startTick = fresh.clock.TickMs();
    fresh.clock.Advance(std::chrono::seconds(30));
    fresh.clock.Set(fresh.clock.Now() + step);
    timer1_Timer(fresh.service);
    EXPECT_TRUE(fresh.tcpServer.Listening()) << step.count();
  }
}

TEST_F(LifecycleTest, PauseAndResumeAreRefused) {
  dartSvc_State(house.service, ServiceState::kPause);
  dartSvc_State(house.service, ServiceState::kResume);
  EXPECT_EQ(house.Events(), (Lines{"3\tfrmQuillonWeb_dartSvc_State\tPause Not Implemented",
                                   "3\tfrmQuillonWeb_dartSvc_State\tResume Not Implemented"}));
}

TEST_F(LifecycleTest, StopClosesTheListenerAfterItsWait) {
  Start();
  TickAt(std::chrono::seconds(30));
  const auto before = house.clock.slept();
  house.loop.Post([&] { dartSvc_State(house.service, ServiceState::kStop); });
  house.loop.Run();
  EXPECT_EQ(house.clock.slept() - before, std::chrono::milliseconds(500 + 2000 + 1000));
  EXPECT_EQ(house.Events().back(), "3\tfrmQuillonWeb_dartSvc_State\tService Stopped");
  EXPECT_EQ(house.WebServer("Status"), "Not Started");
  EXPECT_FALSE(house.tcpServer.Listening());
  EXPECT_EQ(house.service.timer1, nullptr);
}

TEST_F(LifecycleTest, SecondStopInsideTheFirstOneIsIgnored) {
  Start();
  const auto stop = [&] { dartSvc_State(house.service, ServiceState::kStop); };
  house.loop.Post([&] {
    house.loop.Post(stop);
    stop();
  });
  house.loop.Run();
  EXPECT_EQ(house.Events(), Lines{"3\tfrmQuillonWeb_dartSvc_State\tService Stopped"});
}

TEST_F(LifecycleTest, StopInsideALongJobEndsTheLoopAndLeavesTheJob) {
  Start();
  bool jobEnded = false;
  house.loop.Post([&] {
    house.loop.Post([&] { dartSvc_State(house.service, ServiceState::kStop); });
    house.loop.DelayMs(30'000);
    jobEnded = true;
  });
  house.loop.Run();
  EXPECT_FALSE(jobEnded);
  EXPECT_EQ(house.WebServer("Status"), "Not Started");
}

}  // namespace
}  // namespace quillon
