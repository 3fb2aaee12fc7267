// The charts of one port as production builds them, for the cache and for mails.
#pragma once

#include <cstdint>
#include <string>

#include "production/production_context.h"

namespace quillon {

// The three charts, of a port with these names (database text). Events run in its pauses.
std::string PortCharts(ProductionContext& context, std::int32_t recNo, std::int32_t ifIndex,
                       const std::string& device, const std::string& port);

}  // namespace quillon
