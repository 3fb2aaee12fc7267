// Which search shows the statistics of a device.
#pragma once

#include <cstdint>
#include <string>

#include "queries/query_context.h"

namespace quillon {

// `request` := the post of the search form that finds the device: that for ports where it is a
// switch, that for disks where it is a server, in bytes of the pages' charset. It stays as it was
// where no table has the device, and after a failure, which is reported.
void CheckForStats(const QueryContext& context, std::int32_t recNo, std::string& request);

}  // namespace quillon
