// The top-10 routes. Switch lists are built on demand and stored; disk lists and the
// disk summary are answered from the cache alone.
#pragma once

#include "web/request.h"
#include "web/web_context.h"

namespace quillon {

void RouteSwitchTop10Access(WebContext& context, Request& request);
void RouteSwitchTop10Trunk(WebContext& context, Request& request);

// Serves the page from the cache; gives up where it is not there.
void RouteCachedPage(WebContext& context, Request& request);

}  // namespace quillon
