// The shape of one database: its tables, their columns, and whether the file is whole.
#pragma once

#include <string>
#include <vector>

#include "import/schema/databases.h"
#include "import/schema/shapes.h"
#include "import/schema/sqlite_file.h"

namespace quillon {

// Appends a line where the database in that file is damaged, or where a table or column is missing
// that its readers need, whatever stands in its rows. For copies, whose side files nobody made yet.
void CheckShape(const std::string& path, const Database& database,
                std::vector<std::string>& findings);

// Appends a line for each damage of the file, which is read whole. `place` begins the lines.
void CheckIntegrity(const SqliteFile& file, const std::string& place,
                    std::vector<std::string>& findings);

// Appends a line where the table or one of its columns is missing or has another declared type,
// by which the service tells dates and booleans, or where something else has its name: reading a
// view could go on for ever. `place` begins the lines. True if all is well.
bool CheckTable(const SqliteFile& file, const std::string& place, const TableShape& expected,
                std::vector<std::string>& findings);

}  // namespace quillon
