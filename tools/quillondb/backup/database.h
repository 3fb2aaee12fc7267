// Copying a database that is in use, and judging the copy.
#pragma once

#include <functional>
#include <string>

#include "import/schema/databases.h"

namespace quillon {

// Copies a database of the installation into the empty file `to`, as it is at one moment, with what
// stands in its side files. Others read and write it meanwhile and wait for nothing; what they
// write is not in the copy. `percent` is told 0 to 100. Root reads with the rights of the owner,
// and writes with his own. DatabaseFailure where a file cannot be read or written.
void CopyDatabase(const std::string& directory, const std::string& fileName, const std::string& to,
                  const std::function<void(int percent)>& percent);

// DatabaseFailure, which tells the first of all reasons and then the remedy, where the file is
// damaged or lacks a table or a column. No side files of it are left.
void RequireWholeCopy(const std::string& path, const Database& database, const std::string& remedy);

}  // namespace quillon
