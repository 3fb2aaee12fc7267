// A service that runs for days: each tick of its timer, a management product that finishes its
// report at the same time of each day, and a wall clock that can be set meanwhile. Pages are built
// where a test wants them; the mails of three receivers are noted with the day on which they go
// out.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <string>

#include "import/import.h"
#include "import/report_marks.h"
#include "production/auto_create.h"
#include "production/mail_fixture.h"
#include "production/mail_reports.h"
#include "service/hourly_pass.h"
#include "service/timer.h"

namespace quillon {

class DaysTest : public MailTest {
 protected:
  DaysTest() {
    History(
        "DELETE FROM VLAN_HistSum;"
        "UPDATE VLAN_HistCtrl SET TrafficDate = '2000-01-01 00:00:00'");
    AddReceiverNamed("Daily");
    AddReceiverNamed("Weekly", {{"TimeSchedule", "2"}, {"WeekDay", "'Monday'"}});
    AddReceiverNamed("Monthly", {{"TimeSchedule", "3"}});
    mails.onCall = [this](const std::string& line) {
      constexpr std::string_view kAdd = "AddRecipient ";
      if (!line.starts_with(kAdd)) return;
      const std::string name = line.substr(kAdd.size(), line.find(" <") - kAdd.size());
      sent.push_back(DayText(site.clock.Now()) + " " + name);
    };
  }

  // When the wall clock first shows the one time, it is set to the other one.
  void SetClock(const std::string& at, const std::string& to) {
    changes_.emplace(ParseDateTime(at).value(), ParseDateTime(to).value());
  }

  // All ticks from one time of the wall clock to the other.
  void Run(const std::string& from, const std::string& to) {
    site.clock.Set(from);
    service.LastHour = HourNow(service);
    RunUntil(to);
  }

  // The same of a service that starts then, and knows of no pass.
  void RunAnew(const std::string& from, const std::string& to) {
    site.clock.Set(from);
    service.LastHour = 0;
    RunUntil(to);
  }

  // The days that have a table, each as often as it has one, and those that have sums.
  Lines Days() const {
    return site.installation.Select("History.mdb",
                                    "SELECT date(TrafficDate) FROM VLAN_HistCtrl"
                                    " WHERE date(TrafficDate) > '2001' ORDER BY TrafficDate");
  }
  Lines DaysOfSums() const {
    return site.installation.Select("History.mdb",
                                    "SELECT date(TrafficDate) FROM VLAN_HistSum"
                                    " WHERE IsTrunk = 0 ORDER BY TrafficDate");
  }

  std::chrono::minutes reportTime{3 * 60 + 10};  // of the day, when the product has finished
  bool buildsPages = false;
  std::function<void()> onTick;                       // behind the work of each tick
  std::function<void(const std::string& job)> onJob;  // before "Import", "Pages", "Mails"
  Lines sent;                                         // "2024-04-01 Weekly"

 private:
  void RunUntil(const std::string& to) {
    const DateTime end = ParseDateTime(to).value();
    for (bool isOver = false; !isOver; isOver = changes_.empty() && site.clock.Now() >= end) {
      const DateTime before = site.clock.Now();
      site.clock.Advance(kTimerInterval);
      if (!TurnClock() && IsPassed(reportTime, before)) UpdateHistory_Db(imports_, 3);
      HourlyPass(service);
      if (onTick) onTick();
    }
  }

  // Whether the wall clock has come to that time of the day since the tick before.
  bool IsPassed(std::chrono::minutes time, DateTime before) const {
    const DateTime moment = std::chrono::floor<std::chrono::days>(site.clock.Now()) + time;
    return before < moment && moment <= site.clock.Now();
  }

  // True where the clock is set now: no time of the day passes by that.
  bool TurnClock() {
    const auto change = changes_.begin();
    if (change == changes_.end() || site.clock.Now() < change->first) return false;
    site.clock.Set(change->second);
    changes_.erase(change);
    return true;
  }

  void ImportDay(bool& done) {
    if (onJob) onJob("Import");
    Import(imports_, done);
  }
  void BuildPages() {
    if (onJob) onJob("Pages");
    if (buildsPages) AutoCreate(production);
  }
  void SendMails() {
    if (onJob) onJob("Mails");
    MailReports(production);
  }

  std::map<DateTime, DateTime> changes_;
  ImportContext imports_{site.diagnostics, site.settings, site.clock, site.loop, site.period};
  ServiceHost dartSvc_{site.loop, site.clock};
  ServiceRegistry registry_{site.installation.path()};
  LocalServer consoleSocket_{site.loop};
  DailyJobs jobs_{[this](bool& done) { ImportDay(done); }, [this] { BuildPages(); },
                  [this] { SendMails(); }};

 protected:
  ServiceContext service{site.diagnostics, site.settings, site.trapTarget,  site.clock,
                         site.loop,        dartSvc_,      registry_,        site.tcpServer,
                         site.snmpAgent,   site.words,    site.favIconData, jobs_,
                         consoleSocket_};
};

}  // namespace quillon
