// The table that decides which report a request yields.
#pragma once

#include "web/request.h"
#include "web/web_context.h"

namespace quillon {

// Runs the first route whose words the request holds, or the default page. Leaves the
// whole response in request.pageHtml, or leaves it as it is where the route gives up.
// A route may pump events; what it holds is in `request` alone.
void Dispatch(WebContext& context, Request& request);

}  // namespace quillon
