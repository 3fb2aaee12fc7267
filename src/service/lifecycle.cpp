// Start and stop, in their order.
#include "service/lifecycle.h"

#include <csignal>
#include <iostream>

#include "platform/database.h"
#include "platform/files.h"
#include "platform/instance_lock.h"
#include "platform/program_path.h"
#include "service/debug_folder.h"
#include "service/error_exit.h"
#include "service/morvane_ini.h"
#include "service/sockets.h"
#include "service/version.h"
#include "web/static_resources.h"

namespace quillon {
namespace {

constexpr std::string_view kModule = "frmQuillonWeb";

// Interval and limit belong together: of the ticks every 30 seconds exactly one falls
// below the limit, so the sockets open once. The seconds are those of the steady tick: a
// wall clock that is set while the machine starts would open them twice, or never.
constexpr std::chrono::seconds kTimerInterval{30};
constexpr std::chrono::seconds kStartTickLimit{50};

constexpr std::int16_t kStopWaitMs = 2000;   // before the listener closes
constexpr std::int16_t kCloseWaitMs = 1000;  // after it

constexpr int kFailed = 1;  // exit status of a process that was refused or failed

constexpr std::string_view kDatabaseMessage =
    "Error when accessing the Database.\n"
    "\n"
    "The Microsoft Data Access Components (MDAC) 2.5 or greater must be\n"
    "installed on the computer. The MDAC 2.5 could be found on:\n"
    "\n"
    "https://quillon.example/database\n"
    "\n"
    "or on the Quillon CD-ROM in the MDAC directory.\n";

// A message box is a line on the terminal.
int Refuse(const std::string& message) {
  std::cerr << message << std::endl;
  return kFailed;
}

std::string ConnectionString(const Settings& settings, std::string_view file) {
  return "Provider=SQLite;Data Source=" + PathBelow(settings, file) +
         ";Persist Security Info=False";
}

void SetConnectionStrings(Settings& settings) {
  settings.ConnMain = ConnectionString(settings, "\\Quillon.mdb");
  settings.ConnReports = ConnectionString(settings, "\\Reports.mdb");
  settings.ConnHistory = ConnectionString(settings, "\\History.mdb");
}

// Reads the row of Settings_General; its SnmpcDir.
std::string ReadGeneralSettings(Settings& settings) {
  Connection main;
  main.Open(settings.ConnMain);
  Recordset row;
  row.Open("Settings_General", main, CursorType::kStatic, LockType::kOptimistic);
  settings.DebugMode = row.Field("DebugMode").AsBoolean();
  settings.DatumFormat = row.Field("DatumFormat").AsText();
  return row.Field("SnmpcDir").AsText();
}

void NoticeFromState(const ServiceContext& context, std::string_view text, EventType type) {
  AppEvent(context.diagnostics, kModule, "dartSvc_State", text, type);
}

void SetMorvaneDir(ServiceContext& context, const std::string& snmpcDir) {
  context.settings.MorvaneDir = snmpcDir;
  if (!snmpcDir.empty()) return;
  NoticeFromState(context, "No Path to Morvane", EventType::kFailure);
  context.settings.MorvaneDir = "c:";
}

void StartService(ServiceContext& context) {
  Settings& settings = context.settings;
  if (!settings.ConnMain.empty()) return;
  SetConnectionStrings(settings);
  ClearDebugDir(context.diagnostics);
  SetMorvaneDir(context, ReadGeneralSettings(settings));
  if (!FileExists(MorvaneIniPath(settings))) {
    NoticeFromState(context, settings.MorvaneDir + "\\Morvane.ini Not Found", EventType::kFailure);
    context.exitStatus = kFailed;
    context.loop.Quit();
    return;
  }
  ReadMorvaneIni(context);
  ReadLangWord(context.diagnostics, context.words);
  ReadHelpText(context.diagnostics, context.words);
  ReadFavIcon(context.diagnostics, context.FavIconData);
  settings.StartTime = context.clock.Now();
  context.startTick = context.clock.TickMs();
  context.timer1 = context.loop.Every(kTimerInterval, [&context] { timer1_Timer(context); });
}

void StopService(ServiceContext& context) {
  if (context.stopping) return;  // the stop is under way
  context.stopping = true;
  context.timer1.reset();
  NoticeFromState(context, "Service Stopped", EventType::kNotice);
  context.loop.DelayMs(kStopWaitMs);
  ServiceClose(context, "tcpServer");
  context.loop.DelayMs(kCloseWaitMs);
  context.loop.Quit();
}

// Hands the process over to the loop; the states arrive as events from then on.
void RunService(ServiceContext& context) {
  std::signal(SIGPIPE, SIG_IGN);  // a closed standard error must not end the service
  const auto raise = [&context](ServiceState state) { dartSvc_State(context, state); };
  for (const int signal : {SIGTERM, SIGINT}) {
    context.loop.OnSignal(signal, [raise] { raise(ServiceState::kStop); });
  }
  context.loop.Post([raise] { raise(ServiceState::kStart); });
  context.loop.Run();
}

}  // namespace

int Form_Load(ServiceContext& context, const std::string& commandLine) {
  const bool ended = ErrorExit(context.diagnostics, kModule, "Form_Load", [&] {
    const InstanceLock lock(ProgramDirectory());
    if (!lock.held()) {
      context.exitStatus = Refuse("The Quillon Web Service is already running.");
    } else if (!commandLine.empty()) {
      context.exitStatus = Refuse("Quillon: Invalid command option.");
    } else {
      context.settings.AppPath = ProgramDirectory();
      RunService(context);
    }
  });
  if (!ended) context.exitStatus = Refuse("Quillon: " + std::string(kDatabaseMessage));
  return context.exitStatus;
}

void dartSvc_State(ServiceContext& context, ServiceState state) {
  ErrorExit(context.diagnostics, kModule, "dartSvc_State", [&] {
    switch (state) {
      case ServiceState::kStop:
        return StopService(context);
      case ServiceState::kPause:
        return NoticeFromState(context, "Pause Not Implemented", EventType::kNotice);
      case ServiceState::kStart:
        return StartService(context);
      case ServiceState::kResume:
        return NoticeFromState(context, "Resume Not Implemented", EventType::kNotice);
    }
  });
}

void timer1_Timer(ServiceContext& context) {
  ErrorExit(context.diagnostics, kModule, "timer1", [&] {
    const std::chrono::milliseconds running(context.clock.TickMs() - context.startTick);
    if (std::chrono::floor<std::chrono::seconds>(running) >= kStartTickLimit) return;
    ServiceOpen(context, "snmpAgent");
    ServiceOpen(context, "tcpServer");
    NoticeFromState(context, "Service Started. Version: " + std::string(kVersion),
                    EventType::kNotice);
  });
}

}  // namespace quillon
