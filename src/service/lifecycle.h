// The life of the process: command line, states of the service, the timer.
#pragma once

#include <string>

#include "service/service_context.h"

namespace quillon {

// What the service manager tells.
enum class ServiceState { kStop = 0, kPause = 1, kStart = 2, kResume = 3 };

// Runs the process from its command line to its end; its exit status. With no option it
// is the service itself, in the foreground, until a stop arrives.
int Form_Load(ServiceContext& context, const std::string& commandLine);

// Carries out a state. Start runs once only: connection strings, debug folder, settings,
// Morvane.ini, words and icon, timer1. Stop ends the loop after its waits. Pause and
// resume are refused with a notice.
void dartSvc_State(ServiceContext& context, ServiceState state);

// A tick of timer1, every 30 seconds: the one below 50 seconds after the start opens the
// sockets.
void timer1_Timer(ServiceContext& context);

}  // namespace quillon
