// The names of one port.
#pragma once

#include <cstdint>
#include <string>

#include "queries/query_context.h"

namespace quillon {

// devName and portName := the names that VLAN in Reports.mdb has for the port, "n/a" both where it
// has none; as database text (UTF-8), which the reports convert when they show it. A failure is
// reported and leaves the two as they were.
void SqlPortNameLookup(const QueryContext& context, std::int32_t recNo, std::int32_t ifIndex,
                       std::string& devName, std::string& portName);

}  // namespace quillon
