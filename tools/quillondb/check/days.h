// The check of the days in the history that the charts walk over.
#pragma once

#include <string>
#include <vector>

#include "import/schema/sqlite_file.h"

namespace quillon {

// Appends a line for each day of the table that holds up the charts: one with several rows, behind
// which they show nothing, and one that is not over yet. The table has to be whole; one that
// charts do not walk over is passed. `place` begins the lines.
void CheckDays(const SqliteFile& history, const std::string& place, const std::string& table,
               std::vector<std::string>& findings);

}  // namespace quillon
