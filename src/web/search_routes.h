// The search routes: the empty forms, and what they find. A result is stored under the number of
// its connection, where the chart links of its table find it until the next search of its kind on
// that number.
#pragma once

#include "web/request.h"
#include "web/web_context.h"

namespace quillon {

void RoutePortNameForm(WebContext& context, Request& request);
void RoutePortAliasForm(WebContext& context, Request& request);
void RouteMacIpForm(WebContext& context, Request& request);
void RouteDiskForm(WebContext& context, Request& request);

// Answer the posted forms; they give up where a field is missing.
void RoutePortNameSearch(WebContext& context, Request& request);
void RoutePortAliasSearch(WebContext& context, Request& request);
void RouteMacIpSearch(WebContext& context, Request& request);
void RouteDiskSearch(WebContext& context, Request& request);

}  // namespace quillon
