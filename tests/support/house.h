// The service's objects around a test installation and a clock that is set by hand:
// what main.cpp builds, without open sockets.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "import/import_context.h"
#include "platform/event_loop.h"
#include "queries/query_context.h"
#include "render/render_context.h"
#include "service/diagnostics.h"
#include "support/installation.h"
#include "support/recording_agent.h"
#include "support/test_clock.h"

namespace quillon {

class House {
 public:
  House() {
    settings.AppPath = installation.path();
    settings.ConnMain = ConnectionString("Quillon.mdb");
    settings.ConnReports = ConnectionString("Reports.mdb");
    settings.ConnHistory = ConnectionString("History.mdb");
    settings.DatumFormat = "YYYY-MM-DD";
    settings.CharSet = "ISO-8859-1";
  }

  // Words that show their number: behind the prefix "W", word 38 is "W38".
  void NumberWords(const std::string& prefix) {
    for (int number = 1; number <= words.LangWord.kSize; ++number) {
      words.LangWord[number] = prefix + std::to_string(number);
    }
  }

  // The calendar day so many days before today, "2024-05-01" for 1.
  std::string DayBefore(int age) const { return DayText(clock.Now() - std::chrono::days(age)); }

  // Runs the action in the first turn of the loop in which the condition holds.
  void Once(std::function<bool()> condition, std::function<void()> action) {
    loop.Post([this, condition = std::move(condition), action = std::move(action)]() mutable {
      if (!condition()) return Once(std::move(condition), std::move(action));
      action();
    });
  }

  // Lines of the event file, oldest first, without their time stamps:
  // "1\tmodHtml_ReadCssText\t...".
  std::vector<std::string> Events() const {
    std::vector<std::string> events;
    for (const std::string& line : SplitLines(installation.Read("Debug/AppEventWeb.txt"))) {
      constexpr std::size_t kStampLength = 20;  // "YYYY-MM-DD HH:MM:SS" and the tab
      events.push_back(line.size() < kStampLength ? line : line.substr(kStampLength));
    }
    return events;
  }
  void ForgetEvents() const { installation.Write("Debug/AppEventWeb.txt", ""); }

  Installation installation;
  TestClock clock;
  EventLoop loop{clock};
  Settings settings;
  LangWords words;
  CalendarNames calendar;
  ReportPeriod period;
  ReportRecords records;
  Listener tcpServer{loop};
  RecordingAgent snmpAgent;
  TrapTarget trapTarget;
  JobWatch watch;  // nobody watches until a test sets it
  Diagnostics diagnostics{settings, clock, loop, tcpServer, snmpAgent, trapTarget, &watch};
  RenderContext render{diagnostics, settings, words, calendar, period, records};
  QueryContext queries{diagnostics, settings, clock, loop, words, period, records};
  ImportContext imports{diagnostics, settings, clock, loop, period};

 private:
  std::string ConnectionString(const std::string& file) const {
    return "Provider=SQLite;Data Source=" + installation.path() + "/" + file +
           ";Persist Security Info=False";
  }
};

}  // namespace quillon
