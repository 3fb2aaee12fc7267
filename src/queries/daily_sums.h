// The days of a summary, out of the daily sums in History.mdb.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/database.h"
#include "queries/query_context.h"

namespace quillon {

// Runs the select, which gives sums from the newest day back, and writes all 45 wanted days. `fill`
// gets each position with the row of its day, or with null where the day has none. A row is passed
// only when its day is wanted: one of today or later, or a second one of a day, holds the walk, and
// all days behind it have none.
void ReadDailySums(const QueryContext& context, const std::string& select,
                   std::string_view dateField, Days<DateTime>& dates,
                   const std::function<void(int position, const Recordset* sums)>& fill);

}  // namespace quillon
