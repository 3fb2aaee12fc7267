// Looking into the cache.
#include "web/stored_page.h"

#include "web/page_cache.h"

namespace quillon {

bool TakeStored(WebContext& context, ConnectionId id, const std::string& fileName,
                std::string& text, bool& fromCache) {
  if (!TakeRemembered(context.settings, context.pageMemory, fileName, text)) {
    if (!IsCached(context.settings, fileName)) return false;
    ReadFromCache(context.diagnostics, context.pageMemory, id, fileName, text);
  }
  fromCache = true;
  return true;
}

}  // namespace quillon
