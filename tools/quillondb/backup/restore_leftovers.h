// What a restore that was killed leaves in the directory.
//
// New and old files lie in two folders of the directory, so that the exchange is renames alone.
// While the folder of the old ones has its first name, the exchange is not over: whoever comes
// after a kill puts them back. Its second name says that they are of no more use.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "quillondb/backup/files.h"

namespace quillon {

inline constexpr const char* kNewFolder = "~restore-new";
inline constexpr const char* kOldFolder = "~restore-old";
inline constexpr const char* kEndedFolder = "~restore-ended";

// Puts the old files of a killed restore back and deletes what else it left. Without `replace` it
// is refused where files would be put back: the service may have gone on with others since.
// FileFailure, too, where one of the names is not a folder's.
void EndKilledRestore(const std::filesystem::path& home, bool replace, const Tell& tell);

// A line for each of the folders that is left, and what to do about it.
void CheckRestore(const std::string& directory, std::vector<std::string>& findings);

}  // namespace quillon
