// A table opened as a whole for reading only, in stored order or sorted by a column.
#pragma once

#include <memory>
#include <string>

#include "platform/recordset_source.h"

namespace quillon {

// Opens the table on a handle that outlives the walk. The rows are those of this moment: the walk
// is one read of the file, whose log cannot be folded in while it lasts. Raises DatabaseFailure
// where there is no such table.
std::unique_ptr<Recordset::Source> MakeTableView(sqlite3* handle, const std::string& file,
                                                 const std::string& table);

}  // namespace quillon
