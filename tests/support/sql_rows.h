// What SQL says of a database file, past the layers under test.
#pragma once

#include <string>
#include <vector>

namespace quillon {

using SqlRow = std::vector<std::string>;

// Runs one or more statements on the file and returns all rows that they give; a null reads as
// "NULL". Throws std::runtime_error with the engine's message.
std::vector<SqlRow> SqlRows(const std::string& path, const std::string& sql);

}  // namespace quillon
