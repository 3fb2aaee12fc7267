// Opening the listener by the row of Settings_WebServer.
#pragma once

#include "service/service_context.h"
#include "service/settings_row.h"

namespace quillon {

// What a row says that leaves the choice of the address to Morvane.ini.
inline constexpr const char* kEveryAddress = "0.0.0.0";

// Takes CharSet and, where the row is enabled, opens the listener; the row then tells the
// bound address and the status. Waits up to a second.
void OpenListenerByRow(ServiceContext& context, SettingsRow& row);

}  // namespace quillon
