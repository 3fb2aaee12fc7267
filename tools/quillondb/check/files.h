// The files and folders of an installation beside its databases: what is missing, and what lies in
// the place of another.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace quillon {

// A file that the site shows, and what becomes of the pages without it.
struct WebFile {
  const char* path;
  const char* loss;
};

extern const std::array<WebFile, 4> kWebFiles;

// Where the files that come with the program are found.
inline constexpr const char* kWebFileSources = "/etc/quillon-web or share/WebReports";

// Appends a line for each folder and file that is missing, is something else, or is in the way.
// `owner` is the service's user.
void CheckFiles(const std::string& directory, const std::string& owner,
                std::vector<std::string>& findings);

// Whether the file is of a size that a text of a person has; appends a line where it is not. The
// service reads it whole at each start.
bool IsShort(const std::string& path, const std::string& name, std::vector<std::string>& findings);

}  // namespace quillon
