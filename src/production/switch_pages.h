// The pre-generated pages of switch ports. A failure is reported, and the page is missing then.
#pragma once

#include <string>
#include <string_view>

#include "production/production_context.h"

namespace quillon {

// Stores the list of the ten worst ports, "access" or "trunk" (any other `kind` than "access" lists
// trunk ports), by `field`, a column of VLAN, as `file`; then the charts of each of its ports as
// hist45-<device>-<interface>.htm, with a pause of 50 ms before each.
void AutoCreateTop10_Switch(ProductionContext& context, std::string_view kind,
                            std::string_view field, const std::string& file);

// Stores the summary of the kind of ports that `file` tells.
void AutoCreateSum_Switch(ProductionContext& context, const std::string& file);

}  // namespace quillon
