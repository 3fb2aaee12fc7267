// Fields whose value the service cannot use. Nulls in the tables of one row are found elsewhere.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "import/schema/sqlite_file.h"

namespace quillon {

// Appends a line for each wrong value in the table, whose columns have to be whole. `place`
// begins the lines.
void CheckFields(const SqliteFile& file, const std::string& place, std::string_view table,
                 std::vector<std::string>& findings);

}  // namespace quillon
