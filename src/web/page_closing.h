// The common closing of a report page.
#pragma once

#include "web/request.h"
#include "web/web_context.h"

namespace quillon {

// Footer, closing tags, and the head in front: the last step of every route that
// finishes a report. Stored pages are without all three.
void ClosePage(WebContext& context, Request& request);

}  // namespace quillon
