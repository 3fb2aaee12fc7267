// Application events, the time stamp of the debug logs, the error exit, and the day of a
// report.
#include "service/diagnostics.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include "platform/failure.h"
#include "service/error_exit.h"
#include "service/report_day.h"
#include "support/house.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;
using std::chrono::milliseconds;

class DiagnosticsTest : public testing::Test {
 protected:
  void Report(std::string_view text, EventType type = EventType::kFailure) const {
    AppEvent(house.diagnostics, "modHtml", "ReadCssText", text, type);
  }

  template <typename Body>
  void Run(Body&& body) const {
    ErrorExit(house.diagnostics, "modHtml", "ReadCssText", body);
  }

  std::string EventFile() const { return house.installation.Read("Debug/AppEventWeb.txt"); }

  // From now on `watched` takes the text of each event that a watcher is told of.
  void WatchTexts() {
    house.watch.event = [this](int, std::string_view, std::string_view text) {
      watched.emplace_back(text);
    };
  }

  House house;
  Lines watched;
};

TEST_F(DiagnosticsTest, EventIsOneLineOfStampTypeNamesAndText) {
  house.clock.Set(MakeDateTime({2024, 5, 2, 3, 4, 5, 678}));
  AppEvent(house.diagnostics, "frmQuillonWeb", "dartSvc_State", "Service Stopped",
           EventType::kNotice);
  EXPECT_EQ(EventFile(),
            "2024-05-02 03:04:05\t3\tfrmQuillonWeb_dartSvc_State\tService Stopped\r\n");
}

TEST_F(DiagnosticsTest, TypeStandsAsItsNumber) {
  Report("a", EventType::kFailure);
  Report("b", EventType::kFailedMail);
  Report("c", EventType::kNotice);
  EXPECT_EQ(house.Events(), (Lines{"1\tmodHtml_ReadCssText\ta", "2\tmodHtml_ReadCssText\tb",
                                   "3\tmodHtml_ReadCssText\tc"}));
}

TEST_F(DiagnosticsTest, EventIsWrittenWhateverDebugModeSays) {
  for (const bool debugMode : {false, true}) {
    house.settings.DebugMode = debugMode;
    Report("text");
  }
  EXPECT_EQ(house.Events().size(), 2u);
}

TEST_F(DiagnosticsTest, LongTextStandsWhole) {
  const std::string text(300, 'x');
  Report(text);
  EXPECT_EQ(house.Events(), Lines{"1\tmodHtml_ReadCssText\t" + text});
}

TEST_F(DiagnosticsTest, TextWithLineEndsIsOneLine) {
  Report("first\r\nsecond\nthird\rfourth");
  const std::string file = EventFile();
  EXPECT_EQ(file.find('\r'), file.size() - 2) << file;
  EXPECT_EQ(file.find('\n'), file.size() - 1) << file;
  for (const char* word : {"first", "second", "third", "fourth"}) {
    EXPECT_NE(file.find(word), std::string::npos) << word;
  }
}

TEST_F(DiagnosticsTest, ProcedureNamedWithALineEndIsOneLine) {
  AppEvent(house.diagnostics, "modImport", "ClearTable_a\r\nb", "gone", EventType::kFailure);
  EXPECT_EQ(house.Events(), std::vector<std::string>{"1\tmodImport_ClearTable_a  b\tgone"});
}

TEST_F(DiagnosticsTest, EventWaitsHalfASecondAfterItsLine) {
  std::string fileInTheWait;
  house.loop.Post([&] { fileInTheWait = EventFile(); });
  Report("text");
  EXPECT_EQ(house.clock.slept(), milliseconds(500));
  EXPECT_EQ(fileInTheWait, EventFile());
  EXPECT_FALSE(fileInTheWait.empty());
}

TEST_F(DiagnosticsTest, WithoutTheFolderThereIsNeitherLineNorWait) {
  std::filesystem::remove(house.installation.path() + "/Debug");
  Report("text");
  EXPECT_EQ(house.clock.slept(), milliseconds(0));
  EXPECT_FALSE(house.installation.Exists("Debug"));
}

TEST_F(DiagnosticsTest, FileThatCannotBeWrittenEndsTheEventSilently) {
  std::filesystem::create_directory(house.installation.path() + "/Debug/AppEventWeb.txt");
  Report("text");
  EXPECT_EQ(house.clock.slept(), milliseconds(0));
}

TEST_F(DiagnosticsTest, NestedEventsWriteTheirLinesToo) {
  house.loop.Post([&] {
    house.loop.Post([&] { Report("innermost"); });
    Report("inner");
  });
  Report("outer");
  EXPECT_EQ(house.Events(), (Lines{"1\tmodHtml_ReadCssText\touter", "1\tmodHtml_ReadCssText\tinner",
                                   "1\tmodHtml_ReadCssText\tinnermost"}));
}

TEST_F(DiagnosticsTest, EndOfTheLoopPassesTheWaitOfAnEvent) {
  house.loop.Post([&] { house.loop.Quit(); });
  EXPECT_THROW(Report("text"), LoopEnded);
  EXPECT_EQ(house.Events(), Lines{"1\tmodHtml_ReadCssText\ttext"});
}

TEST_F(DiagnosticsTest, WatcherIsToldOfAnEventBeforeAnythingElseHappens) {
  house.settings.SendAppEvents = true;
  house.trapTarget.SnmpAgentOpen = true;
  std::string told;
  house.watch.event = [&](int type, std::string_view source, std::string_view text) {
    told = std::to_string(type) + " " + std::string(source) + " " + std::string(text);
    EXPECT_EQ(EventFile(), "");
    EXPECT_EQ(house.clock.slept(), milliseconds(0));
    EXPECT_EQ(house.snmpAgent.sent.size(), 0u);
  };
  AppEvent(house.diagnostics, "modImport", "ClearTable_a\r\nb", "B\xFCro\r\nof sw1",
           EventType::kFailedMail);
  EXPECT_EQ(told, "2 modImport_ClearTable_a  b B\xFCro  of sw1");
  EXPECT_EQ(house.Events().size(), 1u);
  EXPECT_EQ(house.snmpAgent.sent.size(), 1u);
}

TEST_F(DiagnosticsTest, WatcherIsToldOfEventsThatCannotBeWrittenToo) {
  std::filesystem::remove(house.installation.path() + "/Debug");
  WatchTexts();
  Report("text");
  EXPECT_EQ(watched, Lines{"text"});
}

TEST_F(DiagnosticsTest, WatcherIsNotToldOfEventsOfRequests) {
  WatchTexts();
  house.loop.Post([&] {
    const EventLoop::RequestMark request(house.loop);
    house.loop.Post([&] { Report("of a job inside a request"); });
    Report("of a request inside a job");
  });
  Report("of a job");
  EXPECT_EQ(watched, (Lines{"of a job", "of a job inside a request"}));
  EXPECT_EQ(house.Events().size(), 3u);
}

TEST_F(DiagnosticsTest, WatcherIsToldOfProgress) {
  struct Case {
    JobUnit unit;
    int number;
    int total;
  };
  const Case cases[] = {
      {JobUnit::kStep, 1, 8}, {JobUnit::kPage, 12, 190}, {JobUnit::kReceiver, 3, 3}};
  for (const Case& row : cases) {
    int calls = 0;
    house.watch.progress = [&](JobUnit unit, int number, int total) {
      ++calls;
      EXPECT_EQ(unit, row.unit);
      EXPECT_EQ(number, row.number);
      EXPECT_EQ(total, row.total);
    };
    TellProgress(house.diagnostics, row.unit, row.number, row.total);
    EXPECT_EQ(calls, 1);
  }
}

TEST_F(DiagnosticsTest, WithoutAWatcherProgressIsToldToNobody) {
  house.diagnostics.watch = nullptr;
  EXPECT_NO_THROW(TellProgress(house.diagnostics, JobUnit::kStep, 1, 8));
  Report("text");
  EXPECT_EQ(house.Events(), Lines{"1\tmodHtml_ReadCssText\ttext"});
}

TEST_F(DiagnosticsTest, LogTimeStampHasTheMillisecondsOfASinglePrecisionNumber) {
  struct Case {
    DateTimeParts moment;
    std::string text;
  };
  const Case cases[] = {
      {{2024, 5, 2, 0, 0, 0, 0}, "2024-05-02 00:00:00.000"},
      {{2024, 5, 2, 0, 0, 0, 123}, "2024-05-02 00:00:00.123"},
      {{2024, 5, 2, 1, 0, 0, 123}, "2024-05-02 01:00:00.123"},
      {{2024, 5, 2, 12, 0, 0, 123}, "2024-05-02 12:00:00.121"},  // 43200.12109375
      {{2024, 5, 2, 20, 0, 0, 123}, "2024-05-02 20:00:00.125"},  // 72000.125
      {{2024, 5, 2, 20, 0, 0, 62}, "2024-05-02 20:00:00.063"},   // 72000.0625
      {{2024, 5, 2, 20, 0, 0, 312}, "2024-05-02 20:00:00.313"},  // 72000.3125
      {{2024, 5, 2, 20, 0, 0, 500}, "2024-05-02 20:00:00.500"},
      {{2024, 12, 31, 23, 59, 59, 999}, "2024-12-31 23:59:59.000"},  // 86400
  };
  for (const Case& row : cases) {
    house.clock.Set(MakeDateTime(row.moment));
    EXPECT_EQ(LogTimeStamp(house.clock), row.text);
  }
}

TEST_F(DiagnosticsTest, ErrorExitReportsTheFailureAndReturns) {
  bool reached = false;
  Run([&] {
    if (!reached) throw DatabaseFailure("Reports.mdb: no such table: VLAN");
  });
  reached = true;
  EXPECT_EQ(house.Events(), Lines{"1\tmodHtml_ReadCssText\tReports.mdb: no such table: VLAN"});
}

TEST_F(DiagnosticsTest, ErrorExitWithoutAFailureReportsNothing) {
  bool ran = false;
  Run([&] { ran = true; });
  EXPECT_TRUE(ran);
  EXPECT_FALSE(house.installation.Exists("Debug/AppEventWeb.txt"));
  EXPECT_EQ(house.clock.slept(), milliseconds(0));
}

TEST_F(DiagnosticsTest, ErrorExitTakesEveryKindOfFailure) {
  Run([] { throw IndexFailure("index"); });
  Run([] { throw OverflowFailure("overflow"); });
  Run([] { throw SocketFailure(SocketFailure::Code::kOther, "socket"); });
  Run([] { throw std::length_error("length"); });
  EXPECT_EQ(house.Events(),
            (Lines{"1\tmodHtml_ReadCssText\tindex", "1\tmodHtml_ReadCssText\toverflow",
                   "1\tmodHtml_ReadCssText\tsocket", "1\tmodHtml_ReadCssText\tlength"}));
}

TEST_F(DiagnosticsTest, ErrorExitClosesWhatTheBodyOpenedBeforeTheEvent) {
  struct Opened {
    explicit Opened(bool& isOpen) : isOpen_(isOpen) { isOpen_ = true; }
    ~Opened() { isOpen_ = false; }
    bool& isOpen_;
  };
  bool isOpen = false;
  bool openInTheWait = true;
  house.loop.Post([&] { openInTheWait = isOpen; });
  Run([&] {
    const Opened opened(isOpen);
    throw FileFailure("broken");
  });
  EXPECT_FALSE(openInTheWait);
}

TEST_F(DiagnosticsTest, ErrorExitLetsTheEndOfTheLoopPass) {
  EXPECT_THROW(Run([] { throw LoopEnded{}; }), LoopEnded);
  EXPECT_FALSE(house.installation.Exists("Debug/AppEventWeb.txt"));
}

TEST_F(DiagnosticsTest, StepBeforeTheEventMayReportAnotherText) {
  std::string fileBefore = "unset";
  ErrorExit(
      house.diagnostics, "modQuillonWeb", "ServiceOpen", [] { throw FileFailure("broken"); },
      [&](const std::exception& failure) {
        fileBefore = EventFile();
        return "Port was in use: " + std::string(failure.what());
      });
  EXPECT_EQ(fileBefore, "");
  EXPECT_EQ(house.Events(), Lines{"1\tmodQuillonWeb_ServiceOpen\tPort was in use: broken"});
}

TEST_F(DiagnosticsTest, ReportDayIsThePresentUnlessItIsOverridden) {
  house.clock.Set(MakeDateTime({2024, 5, 2, 3, 4, 5}));
  house.settings.txtRepDate = "2014-11-07";
  EXPECT_EQ(ReportDay(house.settings, house.clock), MakeDateTime({2024, 5, 2, 3, 4, 5}));
  house.settings.RepDateOverride = true;
  EXPECT_EQ(ReportDay(house.settings, house.clock), MakeDateTime({2014, 11, 7}));
}

}  // namespace
}  // namespace quillon
