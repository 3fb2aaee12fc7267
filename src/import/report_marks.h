// The marks of a finished report, for an import that the operator starts by hand.
#pragma once

#include <cstdint>

#include "import/import_context.h"

namespace quillon {

// Stands in for the management product: sets LastReport of General_Info to now, ReportStart to
// yesterday and ReportEnd to today as display texts, each at that hour of the clock, 0 to 23.
void UpdateHistory_Db(ImportContext& context, std::int16_t hour);

}  // namespace quillon
