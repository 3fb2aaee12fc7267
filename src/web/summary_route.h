// The route of the 45-day summary of all access ports or all trunk ports.
#pragma once

#include "web/request.h"
#include "web/web_context.h"

namespace quillon {

// hist45d-switch-<kind>-port-summary.htm: from the cache, or built and stored. A URL that names
// neither kind gets the charts that the slot's record holds, without a page head.
void RouteSwitchSummary(WebContext& context, Request& request);

}  // namespace quillon
