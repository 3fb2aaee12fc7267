// Start and stop, in their order.
#include "service/lifecycle.h"

#include "platform/failure.h"
#include "platform/files.h"
#include "platform/standard_error.h"
#include "service/connection_strings.h"
#include "service/console_protocol.h"
#include "service/debug_folder.h"
#include "service/error_exit.h"
#include "service/exit_status.h"
#include "service/morvane_ini.h"
#include "service/sockets.h"
#include "service/stored_settings.h"
#include "service/timer.h"
#include "web/static_resources.h"

namespace quillon {
namespace {

constexpr std::string_view kModule = "frmQuillonWeb";

constexpr std::int16_t kStopWaitMs = 2000;   // before the listener closes
constexpr std::int16_t kCloseWaitMs = 1000;  // after it

// The waits of a stop last longer while clients ask on: each request that fails inside them
// holds them up for its own half second. After so long the service ends all the same.
constexpr std::chrono::seconds kLongestStop{10};

void SetConnectionStrings(Settings& settings) {
  settings.ConnMain = ConnectionString(settings, "\\Quillon.mdb");
  settings.ConnReports = ConnectionString(settings, "\\Reports.mdb");
  settings.ConnHistory = ConnectionString(settings, "\\History.mdb");
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

// Without it the service does all that it does by itself, so a failure is no event.
void OpenConsole(ServiceContext& context) {
  try {
    context.consoleSocket.Open(context.settings.AppPath, console::kSocketName);
  } catch (const Failure& failure) {
    TellStandardError(std::string("no operator's console: ") + failure.what());
  }
}

void StartService(ServiceContext& context) {
  Settings& settings = context.settings;
  if (!settings.ConnMain.empty()) return;
  SetConnectionStrings(settings);
  ClearDebugDir(context.diagnostics);
  SetMorvaneDir(context, ReadGeneralSettings(settings));
  if (!FileExists(MorvaneIniPath(settings))) {
    NoticeFromState(context, settings.MorvaneDir + "\\Morvane.ini Not Found", EventType::kFailure);
    context.exitStatus = kExitFailed;
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
  OpenConsole(context);
  context.dartSvc.ReportReady("Started; the sockets open 30 seconds after the start");
}

void EndAtOnce(ServiceContext& context) {
  ServiceClose(context, "tcpServer");
  context.loop.Quit();
}

void StopService(ServiceContext& context) {
  if (context.stopping) return;  // the stop is under way
  context.stopping = true;
  context.dartSvc.ReportStopping();
  context.timer1.reset();
  context.stopLimit = context.loop.Every(kLongestStop, [&context] { EndAtOnce(context); });
  NoticeFromState(context, "Service Stopped", EventType::kNotice);
  context.loop.DelayMs(kStopWaitMs);
  ServiceClose(context, "tcpServer");
  context.loop.DelayMs(kCloseWaitMs);
  context.loop.Quit();
}

}  // namespace

void dartSvc_State(ServiceContext& context, ServiceState state) {
  const bool done = ErrorExit(context.diagnostics, kModule, "dartSvc_State", [&] {
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
  if (!done) context.dartSvc.ReportStatus("Failed; Debug/AppEventWeb.txt says why");
}

void dartSvc_Error(ServiceContext& context, int, const std::string& description) {
  context.serviceError = description;
}

}  // namespace quillon
