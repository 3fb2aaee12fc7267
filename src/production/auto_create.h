// The pre-generation: after an import the page cache is built anew, so that the site answers from
// files.
#pragma once

#include "production/production_context.h"

namespace quillon {

// Deletes all files of the cache, then builds the 63 fixed pages, the charts of every port that
// stands in a list, and those of every server's memory and every disk. Events run in its pauses. A
// page that fails is reported and skipped; a cache that cannot be emptied ends the run.
void AutoCreate(ProductionContext& context);

}  // namespace quillon
