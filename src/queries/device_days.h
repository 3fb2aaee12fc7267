// The days of a device report: which day table holds a day, and the walk over the days.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "queries/chart_panel.h"
#include "queries/query_context.h"
#include "queries/reused_connection.h"

namespace quillon {

// A table of History.mdb that tells for each day table the day that it holds.
struct ControlTable {
  std::string_view name;
  std::string_view dateField;
};

// Writes wanted days and day tables, "" for a day that the control table does not have. Its rows
// are walked from the newest back, and a row is passed only when its day is wanted: a row of today
// or later, or a second one of a day, holds the walk, and all days behind it are missing. Positions
// behind the last row are not written.
void FindDayTables(const QueryContext& context, ReusedConnection& history,
                   const ControlTable& control, Days<DateTime>& dates, Days<std::string>& tables);

// Fetches the days in record order by `fetch`, which gets a position whose day has a table, sets
// the others missing, and raises the axis tops, with their wait behind each day. In the background
// it waits 20 ms more behind each fetch.
void FetchDays(const QueryContext& context, const Days<std::string>& tables, Panels panels,
               bool background, const std::function<void(int position)>& fetch);

}  // namespace quillon
