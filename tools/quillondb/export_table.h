// A table of statistics as CSV.
#pragma once

#include <cstdint>
#include <string>

namespace quillon {

// Writes all rows of the table, in stored order, into the file ("-" for standard output), and
// returns how many they are. What stands in it is what a load of the file brings back: where the
// table holds what none could, ConversionFailure, with a line, fit for a terminal, for each of the
// first such fields, and an old file stays.
// The file is written with the caller's rights, the database is read with those of its owner. Into
// the installation root writes with those as well, and has given up his own then.
std::int64_t ExportTable(const std::string& directory, const std::string& table,
                         const std::string& csvPath);

}  // namespace quillon
