// Stylesheet and icon. A missing file is a head with length 0.
#include "web/static_routes.h"

#include "web/http_header.h"
#include "web/static_resources.h"

namespace quillon {

void RouteStylesheet(WebContext& context, Request& request) {
  ReadCssText(context.diagnostics, request.pageHtml);
  HTTP_Header("text/css", request.pageHtml);
}

void RouteFavIcon(WebContext& context, Request& request) {
  request.pageHtml = context.FavIconData;
  HTTP_Header("image/x-icon", request.pageHtml);
}

}  // namespace quillon
