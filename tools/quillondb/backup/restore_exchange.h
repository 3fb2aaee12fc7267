// The exchange of an installation's files for new ones, by renames that can be taken back.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quillon {

// The file below the directory, and what the engine keeps beside it where it is a database.
std::vector<std::string> WithItsSideFiles(const std::string& file);

// All that an exchange can move, each database before its side files.
std::vector<std::string> ExchangedFiles();

// FileFailure where that is not possible.
void Rename(const std::filesystem::path& from, const std::filesystem::path& to);

// Puts those files of `newFolder` in the place of the ones in `home`, and leaves these in the
// folder of an exchange that has ended. On a failure the old files are in their places again.
void PutInPlace(const std::filesystem::path& home, const std::filesystem::path& newFolder,
                const std::vector<std::string>& files);

}  // namespace quillon
