// The start tick, and the hourly pass on every later one.
#include "service/timer.h"

#include <fmt/format.h>

#include "platform/free_memory.h"
#include "service/error_exit.h"
#include "service/hourly_pass.h"
#include "service/sockets.h"
#include "service/version.h"

namespace quillon {
namespace {

constexpr std::string_view kModule = "frmQuillonWeb";

// The seconds are those of the steady tick: a wall clock that is set while the machine starts
// would open the sockets twice, or never.
constexpr std::chrono::seconds kStartTickLimit{50};

bool IsStartTick(const ServiceContext& context) {
  const std::chrono::milliseconds running(context.clock.TickMs() - context.startTick);
  return std::chrono::floor<std::chrono::seconds>(running) < kStartTickLimit;
}

std::string ListenerStatus(const Listener& tcpServer) {
  if (!tcpServer.Listening())
    return "Not listening; Debug/AppEventWeb.txt says why, unless it is not enabled";
  return fmt::format("Listening on {} port {}", tcpServer.LocalHost(), tcpServer.LocalPort());
}

void OpenSockets(ServiceContext& context) {
  ServiceOpen(context, "snmpAgent");
  ServiceOpen(context, "tcpServer");
  context.dartSvc.ReportStatus(ListenerStatus(context.tcpServer));
  AppEvent(context.diagnostics, kModule, "dartSvc_State",
           "Service Started. Version: " + std::string(kVersion), EventType::kNotice);
  context.socketsOpened = true;
  ReturnFreeMemory();
}

}  // namespace

void timer1_Timer(ServiceContext& context) {
  ErrorExit(
      context.diagnostics, kModule, "timer1",
      [&] {
        if (IsStartTick(context)) return OpenSockets(context);
        HourlyPass(context);
      },
      [&](const std::exception& failure) {
        context.LastHour = HourNow(context);  // first, or each tick would try again
        return FailureText(context.settings, failure);
      });
}

}  // namespace quillon
