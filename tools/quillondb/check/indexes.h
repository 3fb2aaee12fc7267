// The indexes of a table, told by their columns: what an index is called means nothing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "import/schema/sqlite_file.h"

namespace quillon {

// The columns of each index, as "IfIndex, RecNo".
std::vector<std::string> IndexesOf(const SqliteFile& file, std::string_view table);

// Appends a line for each expected index that the table lacks. `place` begins the lines.
void CheckIndexes(const SqliteFile& file, const std::string& place, const std::string& table,
                  const std::vector<std::string>& expected, std::vector<std::string>& findings);

}  // namespace quillon
