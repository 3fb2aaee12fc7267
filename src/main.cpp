// The composition root: builds the service's objects and hands over to Form_Load. What
// is built here lives as long as the process; nothing else is global.
#include <memory>
#include <string>

#include "import/import.h"
#include "import/report_marks.h"
#include "platform/clock.h"
#include "platform/mail_module.h"
#include "production/auto_create.h"
#include "production/mail_reports.h"
#include "service/console_requests.h"
#include "service/form_load.h"
#include "web/connections.h"

namespace {

// The options as one text, as they were typed.
std::string CommandLine(int argumentCount, char** arguments) {
  std::string line;
  for (int i = 1; i < argumentCount; ++i) {
    line += (line.empty() ? "" : " ") + std::string(arguments[i]);
  }
  return line;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  using namespace quillon;
  SystemClock clock;
  EventLoop loop(clock);
  Settings settings;
  LangWords words;
  const CalendarNames calendar = CalendarNames::OfEnvironment();
  ReportPeriod period;
  ReportRecords records;
  std::string favIconData;

  Listener tcpServer(loop);
  UdpAgent snmpAgent(loop);
  TrapTarget trapTarget;
  JobWatch watch;
  const Diagnostics diagnostics{settings, clock, loop, tcpServer, snmpAgent, trapTarget, &watch};

  RenderContext render{diagnostics, settings, words, calendar, period, records};
  QueryContext queries{diagnostics, settings, clock, loop, words, period, records};

  PageMemory pageMemory;
  WebContext web{diagnostics, settings, clock,      tcpServer,  render,
                 queries,     records,  pageMemory, favIconData};
  WebServer webServer(web);
  tcpServer.SetEvents(webServer);

  ImportContext imports{diagnostics, settings, clock, loop, period};

  RepReceivers repReceiver;
  ProductionContext production{
      diagnostics, settings, clock,   loop,        tcpServer,
      render,      queries,  records, repReceiver, [&] { return NewSmtp(settings.AppPath, loop); }};

  const DailyJobs jobs{[&](bool& done) { Import(imports, done); }, [&] { AutoCreate(production); },
                       [&] { MailReports(production); },
                       [&](std::int16_t hour) { UpdateHistory_Db(imports, hour); }};
  ServiceHost dartSvc(loop, clock);
  const ServiceRegistry registry;
  LocalServer consoleSocket(loop);
  ServiceContext service{diagnostics, settings, trapTarget,   clock,     loop,
                         dartSvc,     registry, tcpServer,    snmpAgent, words,
                         favIconData, jobs,     consoleSocket};
  OperatorContext operators{settings, clock, period, jobs};
  consoleSocket.SetHandler([&](const std::string& request, const LocalServer::Answer& answer) {
    AnswerConsole(service, operators, watch, request, answer);
  });
  try {
    return Form_Load(service, CommandLine(argumentCount, arguments));
  } catch (const LoopEnded&) {
    return service.exitStatus;  // stopped in the wait of a failure outside the loop
  }
}
