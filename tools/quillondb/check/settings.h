// What is wrong with settings beyond the rules on single fields: receivers of mails, and charsets
// that only the C library knows or does not.
#pragma once

#include <string>
#include <vector>

#include "import/schema/shapes.h"
#include "import/schema/sqlite_file.h"

namespace quillon {

// Appends a line for each thing wrong with the settings in the table, whose columns have to be
// whole. `place` begins the lines.
void CheckSettings(const SqliteFile& file, const std::string& place, const TableShape& table,
                   std::vector<std::string>& findings);

}  // namespace quillon
