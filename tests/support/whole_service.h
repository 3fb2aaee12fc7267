// What main.cpp builds, around an installation that is there already: a clock that is set by hand,
// no open sockets, and mails that really go to the server of the installation's settings. Programs
// that use it are hosts of the mail module, and lie beside it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "import/import.h"
#include "import/report_marks.h"
#include "platform/mail_module.h"
#include "platform/program_path.h"
#include "production/auto_create.h"
#include "production/mail_reports.h"
#include "service/connection_strings.h"
#include "service/hourly_pass.h"
#include "support/test_clock.h"
#include "web/static_resources.h"

namespace quillon {

class WholeService {
 public:
  WholeService(const std::string& directory, DateTime moment)
      : clock(moment), registry_(directory) {
    settings_.AppPath = directory;
    settings_.ConnMain = ConnectionString(settings_, "\\Quillon.mdb");
    settings_.ConnReports = ConnectionString(settings_, "\\Reports.mdb");
    settings_.ConnHistory = ConnectionString(settings_, "\\History.mdb");
    settings_.DatumFormat = "YYYY-MM-DD";
    settings_.CharSet = "ISO-8859-1";
    ReadLangWord(diagnostics_, words_);
    ReadHelpText(diagnostics_, words_);
    ReadFavIcon(diagnostics_, favIconData_);
  }

  // The hourly pass: the import, and behind it pages and mails.
  void Pass() { HourlyPass(service_); }

  // The import alone.
  void ImportDay() {
    bool done = false;
    jobs_.Import(done);
  }

  // The management product has ended its report of today at this hour.
  void EndReport(std::int16_t hour) { jobs_.UpdateHistory_Db(hour); }

  TestClock clock;
  // Is told of each job when it has ended: "imported", only where there was a day, "pages",
  // "mails".
  std::function<void(std::string_view job)> onEnd = [](std::string_view /*job*/) {};

 private:
  void ImportAndTell(bool& done) {
    Import(imports_, done);
    if (done) onEnd("imported");
  }
  void BuildPages() {
    AutoCreate(production_);
    onEnd("pages");
  }
  void SendMails() {
    MailReports(production_);
    onEnd("mails");
  }

  EventLoop loop_{clock};
  Settings settings_;
  LangWords words_;
  CalendarNames calendar_;
  ReportPeriod period_;
  ReportRecords records_;
  std::string favIconData_;
  Listener tcpServer_{loop_};
  UdpAgent snmpAgent_{loop_};
  TrapTarget trapTarget_;
  Diagnostics diagnostics_{settings_, clock, loop_, tcpServer_, snmpAgent_, trapTarget_};
  RenderContext render_{diagnostics_, settings_, words_, calendar_, period_, records_};
  QueryContext queries_{diagnostics_, settings_, clock, loop_, words_, period_, records_};
  ImportContext imports_{diagnostics_, settings_, clock, loop_, period_};

  // A mail on its way waits for a real server.
  SystemClock mailClock_;
  EventLoop mailLoop_{mailClock_};
  RepReceivers receivers_;
  ProductionContext production_{
      diagnostics_, settings_,
      clock,        loop_,
      tcpServer_,   render_,
      queries_,     records_,
      receivers_,   [this] {
        return NewSmtp(ProgramDirectory(), mailLoop_); }};

  DailyJobs jobs_{[this](bool& done) { ImportAndTell(done); }, [this] { BuildPages(); },
                  [this] { SendMails(); },
                  [this](std::int16_t hour) { UpdateHistory_Db(imports_, hour); }};
  ServiceHost dartSvc_{loop_, clock};
  ServiceRegistry registry_;
  LocalServer consoleSocket_{loop_};
  ServiceContext service_{diagnostics_, settings_, trapTarget_,   clock,      loop_,
                          dartSvc_,     registry_, tcpServer_,    snmpAgent_, words_,
                          favIconData_, jobs_,     consoleSocket_};
};

}  // namespace quillon
