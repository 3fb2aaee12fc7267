// Opening the agent by the row of Settings_SnmpAgent.
#pragma once

#include "service/service_context.h"
#include "service/settings_row.h"

namespace quillon {

// Where the row is enabled, opens the agent, waits a second and fixes what traps need. With
// DebugMode on the status goes to \Debug\WebServices.txt, which begins anew; the row is not
// written.
void OpenAgentByRow(ServiceContext& context, SettingsRow& row);

}  // namespace quillon
