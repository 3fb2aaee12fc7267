// The list of a backup's files. It is one that 'sha256sum -c' reads as well.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/date_time.h"

namespace quillon {

class SourceFile;

inline constexpr const char* kManifestName = "MANIFEST";

struct ManifestEntry {
  std::string file;  // below the directory, as "WebReports/qws.css"
  std::uintmax_t size = 0;
  std::string sha256;
};

// The entry of a file below the folder, as it is now.
ManifestEntry EntryOf(const std::string& folder, const std::string& file);

std::string ManifestText(const std::vector<ManifestEntry>& entries, DateTime made);

// The entries of the folder's manifest: each database and whatever other files a backup can hold,
// no other name and none twice. FileFailure, which names the line, for anything else.
std::vector<ManifestEntry> ReadManifest(const std::string& folder);

// FileFailure where the open file is another one than the entry tells.
void RequireSame(const SourceFile& file, const ManifestEntry& entry);

}  // namespace quillon
