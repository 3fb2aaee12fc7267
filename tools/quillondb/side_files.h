// What SQLite keeps beside a database, and whether it may be opened with that.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace quillon {

// The endings of the files. One that is left behind would be taken for the next database's.
inline constexpr std::array<const char*, 3> kSideFiles = {"-wal", "-shm", "-journal"};

// The database's path, and those of its side files.
std::vector<std::string> WithSideFiles(const std::string& database);

// DatabaseFailure where the database or a side file is anything but an ordinary file, or where a
// "-journal" lies there: opening it could wait without end, or undo what a stranger tells it to.
// A file that is missing is none of that.
void RequireOrdinarySideFiles(const std::string& database);

}  // namespace quillon
