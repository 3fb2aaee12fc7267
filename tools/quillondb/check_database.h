// The check of one database file: mode, integrity, journal, tables, columns, indexes, rows.
#pragma once

#include <string>
#include <vector>

#include "import/schema/databases.h"
#include "import/schema/shapes.h"
#include "import/schema/sqlite_file.h"

namespace quillon {

// Appends a line for each thing that is missing or wrong in that file of the directory.
void CheckDatabase(const std::string& directory, const Database& database,
                   std::vector<std::string>& findings);

// Appends a line where the table or one of its columns is missing or has another declared type,
// by which the service tells dates and booleans. `place` begins the lines. True if all is well.
bool CheckTable(const SqliteFile& file, const std::string& place, const TableShape& expected,
                std::vector<std::string>& findings);

}  // namespace quillon
