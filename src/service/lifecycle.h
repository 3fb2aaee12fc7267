// The states of the service: what starts and stops it.
#pragma once

#include <string>

#include "service/service_context.h"

namespace quillon {

// Carries out a state. Start runs once only: connection strings, debug folder, settings,
// Morvane.ini, words and icon, timer1; without Morvane.ini the process ends. Stop ends the
// loop after its waits. Pause and resume are refused with a notice.
void dartSvc_State(ServiceContext& context, ServiceState state);

// An error of the service manager's side: its description is kept, and nothing else happens.
void dartSvc_Error(ServiceContext& context, int code, const std::string& description);

}  // namespace quillon
