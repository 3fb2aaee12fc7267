// A table of statistics out of CSV.
#pragma once

#include <cstdint>
#include <string>

namespace quillon {

// Replaces all rows of the table, in Reports.mdb of the installation, by the records of the file
// ("-" for standard input), and returns how many they are. All or nothing: ConversionFailure where
// the file does not fit the table, with a line, fit for a terminal, for each of the first mistakes.
// Readers see the old rows until the new ones stand. Other programs may write until the file is
// read and judged; one that writes then is waited for 5 s.
// The file is opened with the caller's rights, the database with those of its owner. A file inside
// of the installation has to be an ordinary one; root opens it as the owner, and has given up his
// own rights then.
std::int64_t LoadTable(const std::string& directory, const std::string& table,
                       const std::string& csvPath);

}  // namespace quillon
