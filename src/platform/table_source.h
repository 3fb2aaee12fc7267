// The rows of a table opened as a whole to be changed.
#pragma once

#include <memory>
#include <string>

#include "platform/recordset_source.h"

namespace quillon {

// Opens the table on a handle that outlives the walk. Raises DatabaseFailure where there is
// no such table.
std::unique_ptr<Recordset::Source> MakeTableSource(sqlite3* handle, const std::string& file,
                                                   const std::string& table);

}  // namespace quillon
