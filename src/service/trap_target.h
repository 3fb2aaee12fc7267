// Where application events go as traps. The opening of the agent is the only writer, so the
// target stays what it was at that moment.
#pragma once

#include <cstdint>
#include <string>

namespace quillon {

struct TrapTarget {
  bool SnmpAgentOpen = false;  // the agent was opened; no trap leaves without it
  std::string ServerIpAddr;    // copied from the settings of the same names
  std::int16_t ServerTrapPort = 0;
};

}  // namespace quillon
