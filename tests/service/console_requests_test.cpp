// The requests of the console: the state of the service, when a job is taken and when it is
// refused, and what its answer tells while it runs.
#include "service/console_requests.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/failure.h"
#include "service/console_protocol.h"
#include "service/hourly_pass.h"
#include "service/version.h"
#include "support/service_house.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;

// A service that is started and idle, and verbs that ask it.
class ConsoleRequests : public testing::Test {
 protected:
  ConsoleRequests() {
    house.service.socketsOpened = true;
    house.settings.StartTime = MakeDateTime({2024, 5, 1, 9, 8, 7});
  }

  // The lines of the answer, also those of one that fails.
  void Ask(const std::string& request, Lines& answer) {
    AnswerConsole(house.service, house.operators, house.watch, request,
                  [&answer](std::string_view line) { answer.emplace_back(line); });
  }
  Lines Ask(const std::string& request) {
    Lines answer;
    Ask(request, answer);
    return answer;
  }
  // The states by their names, in an answer that has nothing else but its end.
  std::map<std::string, std::string> States() {
    std::map<std::string, std::string> states;
    Lines answer = Ask("status");
    EXPECT_EQ(answer.back(), "done\t");
    answer.pop_back();
    for (const std::string& line : answer) {
      const std::vector<std::string> words = console::Words(line);
      EXPECT_EQ(words.size(), 3u) << line;
      EXPECT_EQ(words[0], "state") << line;
      states[words[1]] = words[2];
    }
    return states;
  }

  // Expects that the request is refused for a reason that holds these words, and nothing is done.
  void ExpectRefused(const std::string& request, const std::string& words = "") {
    const Lines callsBefore = house.jobCalls;
    ExpectRefusal(request, words);
    EXPECT_EQ(house.jobCalls, callsBefore) << request;
  }
  void ExpectRefusal(const std::string& request, const std::string& words) {
    const Lines answer = Ask(request);
    ASSERT_EQ(answer.size(), 1u) << request;
    EXPECT_TRUE(answer[0].starts_with("refused\t")) << answer[0];
    EXPECT_GT(answer[0].size(), std::string("refused\t").size()) << request;
    EXPECT_NE(answer[0].find(words), std::string::npos) << answer[0] << " without " << words;
  }
  void ExpectAllJobsRefused(const std::string& words = "") {
    for (const char* job : kJobs) ExpectRefused(job, words);
  }
  void ExpectIdle() {
    EXPECT_FALSE(house.service.jobRunning);
    EXPECT_EQ(house.service.jobName, "");
    EXPECT_EQ(States()["activity"], "idle");
  }

  void Report(std::string_view text, EventType type = EventType::kFailure) const {
    AppEvent(house.diagnostics, "modHtml", "ReadCssText", text, type);
  }

  static constexpr const char* kJobs[] = {"import", "auto-create", "mail-create",
                                          "set-rep-date\t2014-11-07"};

  ServiceHouse house;
};

TEST_F(ConsoleRequests, StatusTellsTheStateAndStartOfTheService) {
  house.period = {"2024-05-01&nbsp;&nbsp03:00", "2024-05-02&nbsp;&nbsp03:00"};
  const std::map<std::string, std::string> expected = {
      {"version", std::string(kVersion)},
      {"activity", "idle"},
      {"started", "2024-05-01 09:08:07"},
      {"address", ""},
      {"port", "0"},
      {"debug-mode", "no"},
      {"report-start", "2024-05-01&nbsp;&nbsp03:00"},
      {"report-end", "2024-05-02&nbsp;&nbsp03:00"},
  };
  EXPECT_EQ(States(), expected);
  EXPECT_EQ(house.jobCalls, Lines{});
  EXPECT_EQ(house.Events(), Lines{});
}

TEST_F(ConsoleRequests, StatusTellsWhereTheListenerIsOpen) {
  house.tcpServer.SetLocalHost("127.0.0.1");
  house.tcpServer.SetLocalPort(0);
  EXPECT_EQ(States()["address"], "");
  house.tcpServer.SetListening(true);
  EXPECT_EQ(States()["address"], "127.0.0.1");
  EXPECT_EQ(States()["port"], std::to_string(house.tcpServer.LocalPort()));
  house.tcpServer.SetListening(false);
  EXPECT_EQ(States()["address"], "");
  EXPECT_EQ(States()["port"], "0");
}

TEST_F(ConsoleRequests, StatusTellsTheDebugModeThatIsInForce) {
  house.settings.DebugMode = true;
  EXPECT_EQ(States()["debug-mode"], "yes");
}

TEST_F(ConsoleRequests, PeriodIsToldInUtf8) {
  house.period = {"B\xFCro", "\xC4nde"};
  EXPECT_EQ(States()["report-start"], "B\xC3\xBCro");
  EXPECT_EQ(States()["report-end"], "\xC3\x84nde");
  house.settings.CharSet = "ISO-8859-5";
  house.period = {"\xB6", ""};
  EXPECT_EQ(States()["report-start"], "\xD0\x96");
  EXPECT_EQ(States()["report-end"], "");
}

TEST_F(ConsoleRequests, StatusNamesWhatTheServiceDoes) {
  struct Case {
    bool socketsOpened;
    bool jobRunning;
    const char* jobName;
    bool stopping;
    const char* activity;
  };
  const Case cases[] = {
      {false, false, "", false, "starting"},
      {true, false, "", false, "idle"},
      {true, true, "", false, "hourly pass"},
      {true, true, "import", false, "import"},
      {true, true, "mail-create", false, "mail-create"},
      {true, false, "", true, "stopping"},
      {true, true, "", true, "stopping"},
      {true, true, "auto-create", true, "stopping"},
  };
  for (const Case& row : cases) {
    house.service.socketsOpened = row.socketsOpened;
    house.service.jobRunning = row.jobRunning;
    house.service.jobName = row.jobName;
    house.service.stopping = row.stopping;
    EXPECT_EQ(States()["activity"], row.activity);
  }
}

TEST_F(ConsoleRequests, JobsAreDoneAndTheirLastLineSaysSo) {
  EXPECT_EQ(Ask("auto-create"), Lines{"done\tended"});
  EXPECT_EQ(Ask("mail-create"), Lines{"done\tended"});
  EXPECT_EQ(Ask("import"), Lines{"done\tok 0"});
  EXPECT_EQ(house.jobCalls, (Lines{"AutoCreate", "MailReports", "UpdateHistory_Db 3", "Import"}));
  ExpectIdle();
}

TEST_F(ConsoleRequests, ImportTellsItsMilliseconds) {
  house.jobs.Import = [&](bool&) { house.clock.Advance(std::chrono::milliseconds(1234)); };
  EXPECT_EQ(Ask("import"), Lines{"done\tok 1234"});
}

TEST_F(ConsoleRequests, NeitherPagesNorMailsFollowAnImport) {
  house.importIsDue = true;
  Ask("import");
  EXPECT_EQ(house.jobCalls, (Lines{"UpdateHistory_Db 3", "Import"}));
}

TEST_F(ConsoleRequests, UnknownRequestIsRefused) {
  for (const char* request :
       {"", " ", "\t", "Import", "IMPORT", "imports", "impor", " import", "stop", "done",
        "\xFF\xFE", "progress\tstep\t1\t8", "'; DROP TABLE Settings_General; --"}) {
    ExpectRefused(request);
  }
  ExpectRefused(std::string("import\0", 7));
  ExpectRefused(std::string(1000, 'x'));
  ExpectIdle();
}

TEST_F(ConsoleRequests, JobsAreRefusedUntilTheSocketsAreOpened) {
  house.service.socketsOpened = false;
  ExpectAllJobsRefused();
  house.service.socketsOpened = true;
  EXPECT_EQ(Ask("import"), Lines{"done\tok 0"});
}

TEST_F(ConsoleRequests, TickThatOpensTheSocketsLetsJobsBeTaken) {
  house.service.socketsOpened = false;
  house.service.startTick = house.clock.TickMs();
  house.clock.Advance(std::chrono::seconds(30));
  EXPECT_EQ(States()["activity"], "starting");
  timer1_Timer(house.service);
  EXPECT_EQ(States()["activity"], "idle");
  EXPECT_EQ(Ask("auto-create"), Lines{"done\tended"});
}

TEST_F(ConsoleRequests, JobsAreRefusedWhileTheServiceStops) {
  house.service.stopping = true;
  ExpectAllJobsRefused();
}

TEST_F(ConsoleRequests, JobsAreRefusedInAnHourlyPass) {
  house.service.LastHour = 11;
  bool asked = false;
  house.jobs.Import = [&](bool&) {
    asked = true;
    ExpectAllJobsRefused("hourly pass");
    EXPECT_EQ(States()["activity"], "hourly pass");
    EXPECT_TRUE(house.service.jobRunning);
  };
  HourlyPass(house.service);
  EXPECT_TRUE(asked);
  EXPECT_EQ(house.service.LastHour, 12);
  ExpectIdle();
}

TEST_F(ConsoleRequests, JobsAreRefusedBesideAnotherOneThatTheRefusalNames) {
  struct Case {
    const char* request;
    std::function<void(std::function<void()>)> setJob;
  };
  const Case cases[] = {
      {"import",
       [&](std::function<void()> look) { house.jobs.Import = [look](bool&) { look(); }; }},
      {"import",
       [&](std::function<void()> look) {
         house.jobs.UpdateHistory_Db = [look](std::int16_t) { look(); };
       }},
      {"auto-create", [&](std::function<void()> look) { house.jobs.AutoCreate = look; }},
      {"mail-create", [&](std::function<void()> look) { house.jobs.MailReports = look; }},
  };
  const DailyJobs whole = house.jobs;
  for (const Case& row : cases) {
    house.jobs = whole;
    bool asked = false;
    row.setJob([&] {
      asked = true;
      EXPECT_TRUE(house.service.jobRunning);
      EXPECT_EQ(house.service.jobName, row.request);
      EXPECT_EQ(States()["activity"], row.request);
      ExpectAllJobsRefused(row.request);
    });
    Ask(row.request);
    EXPECT_TRUE(asked) << row.request;
    ExpectIdle();
  }
}

TEST_F(ConsoleRequests, ReportDateIsTakenIntoTheSettings) {
  EXPECT_TRUE(Ask("set-rep-date\t2015-01-31")[0].starts_with("done\t"));
  EXPECT_EQ(house.settings.txtRepDate, "2015-01-31");
  EXPECT_FALSE(house.settings.RepDateOverride);
}

TEST_F(ConsoleRequests, ReportDateSaysWhetherItActed) {
  EXPECT_EQ(Ask("set-rep-date\t2014-11-07"),
            Lines{"done\tnothing was done: no report day is being replayed"});
  EXPECT_EQ(house.period.ReportStart, "");

  house.settings.RepDateOverride = true;
  EXPECT_EQ(Ask("set-rep-date\t2024-03-01"), Lines{"done\tok"});
  EXPECT_EQ(house.period.ReportStart, "2024-02-29&nbsp;&nbsp03:00");
  EXPECT_EQ(house.period.ReportEnd, "2024-03-01&nbsp;&nbsp03:00");

  EXPECT_EQ(Ask("set-rep-date\t2015-01-01"),
            Lines{"done\tnothing was done: the report has a period already"});
  EXPECT_EQ(house.period.ReportStart, "2024-02-29&nbsp;&nbsp03:00");
}

TEST_F(ConsoleRequests, ReportDateThatCannotBeReadIsRefusedAndStaysOutOfTheSettings) {
  for (const bool isReplayed : {false, true}) {
    house.settings.RepDateOverride = isReplayed;
    for (const char* date : {"", "\t", "\tsoon", "\t2014-13-07", "\t2023-02-29", "\t07/11/2014"}) {
      ExpectRefused("set-rep-date" + std::string(date));
      EXPECT_EQ(house.settings.txtRepDate, "2014-11-07") << date;
      EXPECT_EQ(house.period.ReportStart, "") << date;
    }
  }
  ExpectIdle();
}

TEST_F(ConsoleRequests, AnswerTellsProgressAndEventsInTheirOrder) {
  house.jobs.AutoCreate = [&] {
    TellProgress(house.diagnostics, JobUnit::kStep, 1, 8);
    Report("first", EventType::kFailure);
    TellProgress(house.diagnostics, JobUnit::kPage, 12, 190);
    Report("second", EventType::kFailedMail);
    TellProgress(house.diagnostics, JobUnit::kReceiver, 2, 3);
    Report("third", EventType::kNotice);
  };
  EXPECT_EQ(
      Ask("auto-create"),
      (Lines{"progress\tstep\t1\t8", "event\t1\tmodHtml_ReadCssText\tfirst",
             "progress\tpage\t12\t190", "event\t2\tmodHtml_ReadCssText\tsecond",
             "progress\treceiver\t2\t3", "event\t3\tmodHtml_ReadCssText\tthird", "done\tended"}));
  EXPECT_EQ(house.Events().size(), 3u);
}

TEST_F(ConsoleRequests, EventsAreToldInUtf8AndInOneLine) {
  house.jobs.AutoCreate = [&] {
    Report("B\xFCro\tof\nsw1");
    house.settings.CharSet = "ISO-8859-5";
    Report("\xB6");
  };
  EXPECT_EQ(Ask("auto-create"), (Lines{"event\t1\tmodHtml_ReadCssText\tB\xC3\xBCro of sw1",
                                       "event\t1\tmodHtml_ReadCssText\t\xD0\x96", "done\tended"}));
}

TEST_F(ConsoleRequests, EventOfABrowsersRequestIsNoneOfTheJob) {
  house.jobs.AutoCreate = [&] {
    house.loop.Post([&] {
      const EventLoop::RequestMark request(house.loop);
      Report("of a browser");
    });
    house.loop.Post([&] { Report("of a nested event"); });
    house.loop.DelayMs(100);
  };
  EXPECT_EQ(Ask("auto-create"),
            (Lines{"event\t1\tmodHtml_ReadCssText\tof a nested event", "done\tended"}));
  EXPECT_EQ(house.Events().size(), 2u);
}

TEST_F(ConsoleRequests, NothingIsToldBehindTheJob) {
  Lines answer;
  Ask("auto-create", answer);
  house.jobs.AutoCreate = [] { throw FileFailure("no room"); };
  Ask("auto-create", answer);
  const Lines whole = answer;
  Report("later");
  TellProgress(house.diagnostics, JobUnit::kPage, 1, 2);
  EXPECT_EQ(answer, whole);
  EXPECT_EQ(house.Events().size(), 1u);
}

TEST_F(ConsoleRequests, RequestBesideAJobGetsNothingOfItsProgressAndTakesNothingFromIt) {
  Lines status;
  Lines refusal;
  house.jobs.AutoCreate = [&] {
    Ask("status", status);
    Ask("mail-create", refusal);
    TellProgress(house.diagnostics, JobUnit::kPage, 1, 190);
    Report("text");
  };
  EXPECT_EQ(Ask("auto-create"), (Lines{"progress\tpage\t1\t190",
                                       "event\t1\tmodHtml_ReadCssText\ttext", "done\tended"}));
  EXPECT_EQ(status.back(), "done\t");
  EXPECT_EQ(refusal.size(), 1u);
}

TEST_F(ConsoleRequests, NobodyIsToldOfAnHourlyPass) {
  Lines answer;
  Ask("auto-create", answer);
  house.jobs.Import = [&](bool&) {
    TellProgress(house.diagnostics, JobUnit::kStep, 1, 8);
    Report("of the pass");
  };
  HourlyPass(house.service);
  EXPECT_EQ(answer, Lines{"done\tended"});
}

TEST_F(ConsoleRequests, FailureThatLeavesAJobIsItsRefusal) {
  struct Case {
    const char* request;
    std::function<void()> breakJob;
  };
  const auto fail = [] { throw DatabaseFailure("History.mdb: no such table: General_Info"); };
  const Case cases[] = {
      {"import", [&] { house.jobs.Import = [&](bool&) { fail(); }; }},
      {"import", [&] { house.jobs.UpdateHistory_Db = [&](std::int16_t) { fail(); }; }},
      {"auto-create", [&] { house.jobs.AutoCreate = fail; }},
      {"mail-create", [&] { house.jobs.MailReports = fail; }},
  };
  for (const Case& row : cases) {
    row.breakJob();
    ExpectRefusal(row.request, "History.mdb: no such table: General_Info");
    ExpectIdle();
  }
}

TEST_F(ConsoleRequests, FailureComesBehindWhatTheJobHasTold) {
  house.jobs.AutoCreate = [&] {
    TellProgress(house.diagnostics, JobUnit::kPage, 1, 190);
    throw ConversionFailure("not a date:\t\"x\ny\"");
  };
  EXPECT_EQ(Ask("auto-create"), (Lines{"progress\tpage\t1\t190", "refused\tnot a date: \"x y\""}));
}

TEST_F(ConsoleRequests, EndOfTheLoopPassesAJobAndNobodyIsToldThatItIsDone) {
  house.jobs.AutoCreate = [&] {
    TellProgress(house.diagnostics, JobUnit::kPage, 1, 190);
    house.loop.Quit();
    house.loop.DelayMs(10);
  };
  Lines answer;
  EXPECT_THROW(Ask("auto-create", answer), LoopEnded);
  EXPECT_EQ(answer, Lines{"progress\tpage\t1\t190"});
  EXPECT_FALSE(house.service.jobRunning);
  EXPECT_EQ(house.service.jobName, "");
  TellProgress(house.diagnostics, JobUnit::kPage, 2, 190);
  EXPECT_EQ(answer.size(), 1u);
}

TEST_F(ConsoleRequests, DebugModeStaysOnBehindTheMails) {
  Ask("mail-create");
  EXPECT_EQ(States()["debug-mode"], "yes");
}

}  // namespace
}  // namespace quillon
