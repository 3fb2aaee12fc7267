// Whether a database may be opened with what lies beside it.
#pragma once

#include <string>

namespace quillon {

// DatabaseFailure where the database or a side file is anything but an ordinary file, or where a
// "-journal" lies there: opening it could wait without end, or undo what a stranger tells it to.
// A file that is missing is none of that.
void RequireOrdinarySideFiles(const std::string& database);

}  // namespace quillon
