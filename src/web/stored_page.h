// A part of a page that is taken from the cache instead of being built.
#pragma once

#include <string>

#include "web/request.h"
#include "web/web_context.h"

namespace quillon {

// text := the stored part and `fromCache` := true, where the cache has the file; false where not.
bool TakeStored(WebContext& context, ConnectionId id, const std::string& fileName,
                std::string& text, bool& fromCache);

}  // namespace quillon
