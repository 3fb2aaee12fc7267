// Whether somebody works with a database.
#pragma once

#include <string>

namespace quillon {

// Whether another program has the database open, and has for half a second. The file itself is not
// touched. False for one that is missing, is no file, or may not be read.
bool IsDatabaseInUse(const std::string& path);

}  // namespace quillon
