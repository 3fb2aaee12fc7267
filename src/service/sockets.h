// Opening and closing the service's sockets by the rows of their settings tables.
#pragma once

#include <string_view>

#include "service/service_context.h"

namespace quillon {

// "snmpAgent": where the row of Settings_SnmpAgent is enabled, opens the agent on the address of
// Morvane.ini and fixes switch, target and community of the traps.
// "tcpServer": takes CharSet from Settings_WebServer and, where the row is enabled, opens
// the listener; the row then tells the bound address and the state. "0.0.0.0" in the row
// stands for the address of Morvane.ini. A failure is reported, stored in the row and
// leaves the service running without that socket. Any other name opens the database and
// closes it. Waits for a second; events may run inside.
void ServiceOpen(ServiceContext& context, std::string_view name);

// "tcpServer": stops listening, open connections stay, and the row says "Not Started".
void ServiceClose(ServiceContext& context, std::string_view name);

}  // namespace quillon
