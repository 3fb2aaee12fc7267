// The common closing.
#include "web/page_closing.h"

#include "render/page_frame.h"
#include "web/http_header.h"

namespace quillon {

void ClosePage(WebContext& context, Request& request) {
  Page_Footer(context.render, request.pageHtml);
  Page_End(context.render, request.pageHtml);
  HTTP_Header("text/html", request.pageHtml);
}

}  // namespace quillon
