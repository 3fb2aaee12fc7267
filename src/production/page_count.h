// Storing the pages of a pre-generation, and telling whoever watches it how far it is.
#pragma once

#include <string>
#include <string_view>

#include "production/production_context.h"

namespace quillon {

// Begins the count of a run, with what is expected of it: the fixed pages, ten ports for each list,
// and the storages of the newest day table. Reads nothing while nobody watches.
void BeginPages(ProductionContext& context);

// Stores a page in the cache, and counts it.
void StorePage(ProductionContext& context, std::string_view file, std::string_view page);

}  // namespace quillon
