// The tables of an open database, and what stands in their rows.
#pragma once

#include <string>
#include <vector>

#include "import/schema/databases.h"
#include "import/schema/sqlite_file.h"

namespace quillon {

// Appends a line for each thing that is missing or wrong in the database, but for damage of the
// file. `directory` is the installation's. True where all tables have their shape, so that they can
// be read.
bool CheckTables(const SqliteFile& file, const Database& database, const std::string& directory,
                 std::vector<std::string>& findings);

}  // namespace quillon
