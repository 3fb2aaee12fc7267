// The states of the service, with the clock set by hand.
#include "service/lifecycle.h"

#include <filesystem>

#include "service/service_fixture.h"

namespace quillon {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

class LifecycleTest : public ServiceTest {
 protected:
  void Stop() { dartSvc_State(house.service, ServiceState::kStop); }
  // A stop that arrives in the running loop.
  void RunUntilStopped() {
    house.loop.Post([&] { Stop(); });
    house.loop.Run();
  }
  void Sql(const std::string& statements) const {
    house.installation.Sql("Quillon.mdb", statements);
  }
  std::string ConnectionString(const std::string& file) const {
    return "Provider=SQLite;Data Source=" + house.installation.path() + "/" + file +
           ";Persist Security Info=False";
  }
  // The start went through all of its steps, or it ended before the last one.
  bool IsStarted() const { return house.service.timer1 != nullptr; }

  static constexpr const char* kStarted =
      "3\tfrmQuillonWeb_dartSvc_State\tService Started. Version: 9.05";
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
  EXPECT_FALSE(house.installation.Exists("Debug/WebServices.txt"));
  EXPECT_TRUE(house.settings.DebugMode);
  EXPECT_EQ(house.settings.DatumFormat, "MM/DD/YYYY");
  EXPECT_EQ(house.settings.MorvaneDir, house.installation.path());
  EXPECT_EQ(house.settings.ServerIpAddr, "10.1.2.3");
  EXPECT_EQ(house.words.LangWord[15], "Gerät");
  EXPECT_EQ(house.words.HelpText, "help");
  EXPECT_EQ(house.favIconData, std::string("\0icon", 5));
  EXPECT_EQ(house.settings.StartTime, house.clock.Now());
  EXPECT_TRUE(IsStarted());
  EXPECT_EQ(house.Events(), Lines{});
}

TEST_F(LifecycleTest, StartNamesTheThreeDatabases) {
  Start();
  EXPECT_EQ(house.settings.ConnMain, ConnectionString("Quillon.mdb"));
  EXPECT_EQ(house.settings.ConnReports, ConnectionString("Reports.mdb"));
  EXPECT_EQ(house.settings.ConnHistory, ConnectionString("History.mdb"));
}

TEST_F(LifecycleTest, StartOpensNoSocketAndRunsNoJob) {
  Start();
  EXPECT_FALSE(house.tcpServer.Listening());
  EXPECT_EQ(house.snmpAgent.openings, 0);
  EXPECT_EQ(house.jobCalls, Lines{});
  EXPECT_EQ(house.service.exitStatus, 0);
}

// The debug folder is cleared before the settings are read, and the files of this start come
// behind both.
TEST_F(LifecycleTest, DebugCopiesOfTheStartAreThereAfterIt) {
  house.SetGeneral("DebugMode", "1");
  house.installation.Write("WebReports/HelpText.txt", "help");
  house.installation.Write("Debug/HelpText.txt", "of the last run");
  house.installation.Write("Debug/qws.css", "of the last run");
  Start();
  EXPECT_EQ(house.installation.List("Debug"), (Lines{"HelpText.txt", "Language.ini"}));
  EXPECT_EQ(house.installation.Read("Debug/HelpText.txt"), "help");
}

TEST_F(LifecycleTest, StartLeavesTheEventsOfAllDays) {
  const std::string old = "2020-01-01 00:00:00\t3\tm_p\ttext\r\n";
  house.installation.Write("Debug/AppEventWeb.txt", old);
  Start();
  EXPECT_EQ(house.installation.Read("Debug/AppEventWeb.txt"), old);
}

TEST_F(LifecycleTest, SecondStartDoesNothing) {
  Start();
  const DateTime started = house.settings.StartTime;
  house.clock.Advance(seconds(5));
  house.SetGeneral("DebugMode", "1");
  house.installation.Write("Debug/WebServices.txt", "of this run");
  Start();
  EXPECT_EQ(house.settings.StartTime, started);
  EXPECT_FALSE(house.settings.DebugMode);
  EXPECT_TRUE(house.installation.Exists("Debug/WebServices.txt"));
}

TEST_F(LifecycleTest, StartWithAConnectionStringAlreadySetDoesNothing) {
  house.settings.ConnMain = "anything";
  house.installation.Write("Debug/WebServices.txt", "of this run");
  Start();
  EXPECT_EQ(house.settings.ConnMain, "anything");
  EXPECT_FALSE(IsStarted());
  EXPECT_TRUE(house.installation.Exists("Debug/WebServices.txt"));
}

TEST_F(LifecycleTest, MissingIniFileEndsTheProcess) {
  house.SetGeneral("SnmpcDir", "/nowhere");
  house.installation.Write("WebReports/HelpText.txt", "help");
  Start();
  EXPECT_EQ(house.Events(),
            Lines{Failed("frmQuillonWeb_dartSvc_State", "/nowhere\\Morvane.ini Not Found")});
  EXPECT_EQ(house.service.exitStatus, 1);
  EXPECT_FALSE(IsStarted());
  EXPECT_EQ(house.words.HelpText, "");
  house.loop.Run();  // returns at once
}

TEST_F(LifecycleTest, FolderOfTheIniFilesNameIsNoFile) {
  std::filesystem::create_directories(house.installation.path() + "/folder/Morvane.ini");
  house.SetGeneral("SnmpcDir", house.installation.path() + "/folder");
  Start();
  EXPECT_FALSE(IsStarted());
  EXPECT_EQ(house.service.exitStatus, 1);
}

TEST_F(LifecycleTest, EmptyMorvaneFolderTriesTheRootOfTheDrive) {
  house.SetGeneral("SnmpcDir", "");
  Start();
  EXPECT_EQ(house.Events(),
            (Lines{Failed("frmQuillonWeb_dartSvc_State", "No Path to Morvane"),
                   Failed("frmQuillonWeb_dartSvc_State", "c:\\Morvane.ini Not Found")}));
  EXPECT_EQ(house.service.exitStatus, 1);
}

TEST_F(LifecycleTest, EmptyMorvaneFolderIsNotFatalByItself) {
  house.SetGeneral("SnmpcDir", "");
  std::filesystem::create_directory(house.installation.path() + "/c:");
  house.installation.Write("c:/Morvane.ini", "ServerIpAddr=10.1.2.3\r\n");
  Start();
  EXPECT_EQ(house.Events(), Lines{Failed("frmQuillonWeb_dartSvc_State", "No Path to Morvane")});
  EXPECT_EQ(house.settings.MorvaneDir, "c:");
  EXPECT_EQ(house.settings.ServerIpAddr, "10.1.2.3");
  EXPECT_TRUE(IsStarted());
}

TEST_F(LifecycleTest, GeneralSettingsThatCannotBeReadEndTheStartAndTheProcessLivesOn) {
  struct Case {
    std::string statements;
    std::string description;
    std::string read;  // "<DebugMode> <DatumFormat>" after it
  };
  const Case cases[] = {
      {"UPDATE Settings_General SET DebugMode = NULL",
       "field DebugMode holds null and not a truth value", "off old"},
      {"UPDATE Settings_General SET DatumFormat = NULL",
       "field DatumFormat holds null and not a text", "on old"},
      {"UPDATE Settings_General SET SnmpcDir = NULL", "field SnmpcDir holds null and not a text",
       "on DD/MM/YYYY"},
      {"DELETE FROM Settings_General", "Quillon.mdb: no current row", "off old"},
      {"DROP TABLE Settings_General", "Quillon.mdb: no such table: Settings_General", "off old"},
  };
  for (const Case& row : cases) {
    ServiceHouse fresh;
    fresh.settings.ConnMain.clear();
    fresh.settings.DatumFormat = "old";
    fresh.SetGeneral("DebugMode", "1");
    fresh.SetGeneral("DatumFormat", "DD/MM/YYYY");
    fresh.installation.Sql("Quillon.mdb", row.statements);
    fresh.installation.Write("Debug/WebServices.txt", "of the last run");
    dartSvc_State(fresh.service, ServiceState::kStart);
    EXPECT_EQ(fresh.Events(), Lines{Failed("frmQuillonWeb_dartSvc_State", row.description)});
    EXPECT_EQ((fresh.settings.DebugMode ? "on " : "off ") + fresh.settings.DatumFormat, row.read);
    EXPECT_FALSE(fresh.installation.Exists("Debug/WebServices.txt")) << row.statements;
    EXPECT_EQ(fresh.settings.MorvaneDir, "") << row.statements;
    EXPECT_EQ(fresh.service.timer1, nullptr) << row.statements;
    EXPECT_EQ(fresh.service.exitStatus, 0) << row.statements;
  }
}

TEST_F(LifecycleTest, MissingDatabaseEndsTheStartAndTheProcessLivesOn) {
  std::filesystem::remove(house.installation.path() + "/Quillon.mdb");
  Start();
  EXPECT_EQ(house.Events(), Lines{Failed("frmQuillonWeb_dartSvc_State",
                                         "Quillon.mdb: the database file is missing")});
  EXPECT_FALSE(IsStarted());
  EXPECT_EQ(house.service.exitStatus, 0);
  Start();  // the connection strings stand, so this is no first one
  EXPECT_EQ(house.Events().size(), 1u);
}

TEST_F(LifecycleTest, MissingReportsAndHistoryDoNotKeepTheServiceFromStarting) {
  std::filesystem::remove(house.installation.path() + "/Reports.mdb");
  std::filesystem::remove(house.installation.path() + "/History.mdb");
  Start();
  EXPECT_TRUE(IsStarted());
  EXPECT_EQ(house.Events(), Lines{});
}

TEST_F(LifecycleTest, FailuresOfTheFilesAreReportedInTheirOrderAndTheStartGoesOn) {
  house.SetGeneral("SnmpcDir", "");
  std::filesystem::create_directory(house.installation.path() + "/c:");
  house.installation.Write("c:/Morvane.ini", "ServerTrapPort=x\r\n");
  house.installation.Write("WebReports/Language.ini", "101\tlabel\ttext\r\n");
  house.installation.Write("WebReports/HelpText.txt", "help");
  const DateTime began = house.clock.Now();
  Start();
  const Lines events = house.Events();
  ASSERT_EQ(events.size(), 3u);
  EXPECT_EQ(events[0], Failed("frmQuillonWeb_dartSvc_State", "No Path to Morvane"));
  EXPECT_TRUE(events[1].starts_with("1\tmodQuillonWeb_ReadMorvaneIni\t")) << events[1];
  EXPECT_TRUE(events[2].starts_with("1\tmodQuillonWeb_ReadLangWord\t")) << events[2];
  EXPECT_EQ(house.words.HelpText, "help");
  EXPECT_TRUE(IsStarted());
  EXPECT_EQ(house.settings.StartTime, began + milliseconds(3 * 500));
}

TEST_F(LifecycleTest, MissingWordsHelpAndIconAreNoFailure) {
  Start();
  EXPECT_EQ(house.words.LangWord[15], "n/a");
  EXPECT_EQ(house.words.HelpText, "");
  EXPECT_EQ(house.favIconData, "");
  EXPECT_TRUE(IsStarted());
  EXPECT_EQ(house.Events(), Lines{});
}

TEST_F(LifecycleTest, PauseAndResumeAreRefused) {
  dartSvc_State(house.service, ServiceState::kPause);
  dartSvc_State(house.service, ServiceState::kResume);
  EXPECT_EQ(house.Events(), (Lines{"3\tfrmQuillonWeb_dartSvc_State\tPause Not Implemented",
                                   "3\tfrmQuillonWeb_dartSvc_State\tResume Not Implemented"}));
}

TEST_F(LifecycleTest, RefusedStatesLeaveTheServiceRunning) {
  Start();
  TickAt(seconds(30));
  dartSvc_State(house.service, ServiceState::kPause);
  dartSvc_State(house.service, ServiceState::kResume);
  EXPECT_TRUE(house.tcpServer.Listening());
  EXPECT_TRUE(IsStarted());
  EXPECT_FALSE(house.service.stopping);
}

TEST_F(LifecycleTest, OtherStatesDoNothing) {
  for (const int state : {4, 5, 99, 32'767}) {
    dartSvc_State(house.service, static_cast<ServiceState>(state));
    EXPECT_EQ(house.settings.ConnMain, "") << state;
    EXPECT_FALSE(IsStarted()) << state;
    EXPECT_FALSE(house.service.stopping) << state;
  }
  EXPECT_EQ(house.Events(), Lines{});
  EXPECT_EQ(house.clock.slept(), milliseconds(0));
}

TEST_F(LifecycleTest, StopClosesTheListenerAfterItsWait) {
  Start();
  TickAt(seconds(30));
  const auto before = house.clock.slept();
  RunUntilStopped();
  EXPECT_EQ(house.clock.slept() - before, milliseconds(500 + 2000 + 1000));
  EXPECT_EQ(house.Events().back(), "3\tfrmQuillonWeb_dartSvc_State\tService Stopped");
  EXPECT_EQ(house.WebServer("Status"), "Not Started");
  EXPECT_FALSE(house.tcpServer.Listening());
  EXPECT_FALSE(IsStarted());
  EXPECT_EQ(house.service.exitStatus, 0);
}

TEST_F(LifecycleTest, StopEndsTheTimerBeforeItsEventAndTheListenerTwoSecondsAfter) {
  Start();
  TickAt(seconds(30));
  const auto before = house.clock.slept();
  bool timerInTheEvent = true;
  bool listeningInTheEvent = false;
  milliseconds closedAfter{-1};
  house.loop.OnTurn([&] {
    const milliseconds since = house.clock.slept() - before;
    if (since == milliseconds(10)) {
      timerInTheEvent = IsStarted();
      listeningInTheEvent = house.tcpServer.Listening();
    }
    if (closedAfter.count() < 0 && !house.tcpServer.Listening()) closedAfter = since;
  });
  RunUntilStopped();
  EXPECT_FALSE(timerInTheEvent);
  EXPECT_TRUE(listeningInTheEvent);
  EXPECT_GE(closedAfter, milliseconds(2500));
  EXPECT_LE(closedAfter, milliseconds(2510));
}

TEST_F(LifecycleTest, StopBeforeTheOpeningLeavesTheRowNotStarted) {
  house.SetWebServer("Status", "of the last run");
  Start();
  RunUntilStopped();
  EXPECT_EQ(house.WebServer("Status"), "Not Started");
  EXPECT_EQ(house.Events(), Lines{"3\tfrmQuillonWeb_dartSvc_State\tService Stopped"});
}

TEST_F(LifecycleTest, StopThatCannotWriteItsRowEndsAllTheSame) {
  Start();
  TickAt(seconds(30));
  Sql("DROP TABLE Settings_WebServer");
  RunUntilStopped();
  EXPECT_EQ(house.Events().back(),
            Failed("modQuillonWeb_ServiceClose", "Quillon.mdb: no such table: Settings_WebServer"));
}

TEST_F(LifecycleTest, StopWithoutAStartEndsTheLoop) {
  RunUntilStopped();
  EXPECT_EQ(house.Events().front(), "3\tfrmQuillonWeb_dartSvc_State\tService Stopped");
}

TEST_F(LifecycleTest, SecondStopInsideTheFirstOneIsIgnored) {
  Start();
  house.loop.Post([&] {
    house.loop.Post([&] { Stop(); });
    Stop();
  });
  house.loop.Run();
  EXPECT_EQ(house.Events(), Lines{"3\tfrmQuillonWeb_dartSvc_State\tService Stopped"});
}

TEST_F(LifecycleTest, StopInsideALongJobEndsTheLoopAndLeavesTheJob) {
  Start();
  bool jobEnded = false;
  house.loop.Post([&] {
    house.loop.Post([&] { Stop(); });
    house.loop.DelayMs(30'000);
    jobEnded = true;
  });
  house.loop.Run();
  EXPECT_FALSE(jobEnded);
  EXPECT_EQ(house.WebServer("Status"), "Not Started");
}

TEST_F(LifecycleTest, StopInsideAnHourlyPassLeavesThePass) {
  Start();
  house.importIsDue = true;
  house.jobs.AutoCreate = [&] {
    house.jobCalls.emplace_back("AutoCreate");
    house.loop.Post([&] { Stop(); });
    house.loop.DelayMs(30'000);
  };
  house.loop.Post([&] { TickAt(seconds(60)); });
  house.loop.Run();
  EXPECT_EQ(house.jobCalls, (Lines{"Import", "AutoCreate"}));
  EXPECT_FALSE(house.service.jobRunning);
  EXPECT_EQ(house.Events(), Lines{"3\tfrmQuillonWeb_dartSvc_State\tService Stopped"});
}

TEST_F(LifecycleTest, ErrorOfTheServiceManagerIsKeptAndNothingElseHappens) {
  Start();
  for (const std::string description : {"no notification socket", "another one", ""}) {
    dartSvc_Error(house.service, 111, description);
    EXPECT_EQ(house.service.serviceError, description);
  }
  EXPECT_EQ(house.Events(), Lines{});
  EXPECT_EQ(house.clock.slept(), milliseconds(0));
  EXPECT_EQ(house.service.exitStatus, 0);
  EXPECT_FALSE(house.service.stopping);
  EXPECT_TRUE(IsStarted());
}

TEST_F(LifecycleTest, PortOfTheRangeIsListenedOn) {
  house.SetWebServer("IpAddr", "127.83.71.9");  // an address that nothing else uses
  for (const std::string port : {"65535", "1024"}) {
    house.SetWebServer("TcpPort", port);
    house.settings.ConnMain.clear();
    Start();
    TickAt(seconds(30));
    EXPECT_EQ(std::to_string(house.tcpServer.LocalPort()), port);
    EXPECT_EQ(house.Events().back(), kStarted);
  }
}

TEST_F(LifecycleTest, WebServerSettingsThatCannotBeUsedLeaveTheServiceRunning) {
  struct Case {
    std::string statements;
    std::string description;
  };
  const Case cases[] = {
      {"UPDATE Settings_WebServer SET TcpPort = 65536", "not a TCP port: 65536"},
      {"UPDATE Settings_WebServer SET TcpPort = 70000", "not a TCP port: 70000"},
      {"UPDATE Settings_WebServer SET TcpPort = -1", "not a TCP port: -1"},
      {"UPDATE Settings_WebServer SET TcpPort = 5000000000",
       "field TcpPort: number out of range: 5000000000"},
      {"UPDATE Settings_WebServer SET TcpPort = 'http'",
       "field TcpPort holds \"http\" and not a number"},
      {"UPDATE Settings_WebServer SET TcpPort = NULL", "field TcpPort holds null and not a number"},
      {"UPDATE Settings_WebServer SET IpAddr = 'no address'", "TCP Server IP Address is not valid"},
      {"UPDATE Settings_WebServer SET IpAddr = '192.0.2.1'", "TCP Server IP Address is not valid"},
      {"UPDATE Settings_WebServer SET IpAddr = NULL", "field IpAddr holds null and not a text"},
      {"UPDATE Settings_WebServer SET CharSet = NULL", "field CharSet holds null and not a text"},
      {"UPDATE Settings_WebServer SET Enabled = NULL",
       "field Enabled holds null and not a truth value"},
      {"DELETE FROM Settings_WebServer", "Quillon.mdb: no current row"},
      {"DROP TABLE Settings_WebServer", "Quillon.mdb: no such table: Settings_WebServer"},
  };
  for (const Case& row : cases) {
    ServiceHouse fresh;
    fresh.settings.ConnMain.clear();
    fresh.installation.Sql("Quillon.mdb", row.statements);
    dartSvc_State(fresh.service, ServiceState::kStart);
    fresh.clock.Advance(seconds(30));
    timer1_Timer(fresh.service);
    EXPECT_EQ(fresh.Events(),
              (Lines{Failed("modQuillonWeb_ServiceOpen", row.description), kStarted}));
    EXPECT_FALSE(fresh.tcpServer.Listening()) << row.statements;
    fresh.clock.Advance(seconds(30));
    timer1_Timer(fresh.service);
    EXPECT_EQ(fresh.jobCalls, Lines{"Import"}) << row.statements;
  }
}

TEST_F(LifecycleTest, ListenerThatCannotOpenTakesTheAddressOfTheIniFileNextTime) {
  house.SetWebServer("IpAddr", "192.0.2.1");
  Start();
  TickAt(seconds(30));
  EXPECT_EQ(house.WebServer("IpAddr"), "0.0.0.0");
  house.settings.ConnMain.clear();
  Start();
  TickAt(seconds(30));
  EXPECT_TRUE(house.tcpServer.Listening());
  EXPECT_EQ(house.WebServer("IpAddr"), "127.0.0.1");
}

TEST_F(LifecycleTest, MissingDebugFolderCostsTheLinesAlone) {
  std::filesystem::remove(house.installation.path() + "/Debug");
  Start();
  TickAt(seconds(30));
  TickAt(seconds(60));
  EXPECT_TRUE(house.tcpServer.Listening());
  EXPECT_TRUE(house.trapTarget.SnmpAgentOpen);
  EXPECT_TRUE(house.snmpAgent.sent.empty());
  EXPECT_EQ(house.jobCalls, Lines{"Import"});
  RunUntilStopped();
  EXPECT_EQ(house.WebServer("Status"), "Not Started");
  EXPECT_FALSE(house.installation.Exists("Debug"));
}

TEST_F(LifecycleTest, MissingDebugFolderAndMissingIniFileEndTheProcessWithoutALine) {
  std::filesystem::remove(house.installation.path() + "/Debug");
  house.SetGeneral("SnmpcDir", "/nowhere");
  Start();
  EXPECT_EQ(house.service.exitStatus, 1);
  EXPECT_EQ(house.clock.slept(), milliseconds(0));
}

}  // namespace
}  // namespace quillon
