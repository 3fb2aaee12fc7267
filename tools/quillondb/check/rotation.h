// The check of a rotation of day tables in the history.
#pragma once

#include <string>
#include <vector>

#include "import/schema/databases.h"
#include "import/schema/sqlite_file.h"

namespace quillon {

// Appends a line for each thing wrong with the rows of the control table and with the day tables
// that they name, of which `reference`, a new history, holds the model. The control table itself
// has to be whole. `place` begins the lines.
void CheckRotation(const SqliteFile& history, const SqliteFile& reference, const std::string& place,
                   const DayTableKind& kind, std::vector<std::string>& findings);

}  // namespace quillon
