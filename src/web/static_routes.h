// The routes of the stylesheet and the icon.
#pragma once

#include "web/request.h"
#include "web/web_context.h"

namespace quillon {

void RouteStylesheet(WebContext& context, Request& request);
void RouteFavIcon(WebContext& context, Request& request);

}  // namespace quillon
