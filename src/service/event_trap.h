// An application event as an SNMP trap.
#pragma once

#include <cstdint>
#include <string_view>

#include "service/diagnostics_context.h"

namespace quillon {

// Sends the event to the trap target, from the agent. `type` is the number of the event's
// type. Fails where the agent does.
void SendEventTrap(const Diagnostics& diagnostics, std::string_view module,
                   std::string_view procedure, std::string_view text, std::int32_t type);

}  // namespace quillon
