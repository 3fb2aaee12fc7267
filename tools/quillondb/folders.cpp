// The mode is set when a folder is made: by its path it could be another one's later.
#include "quillondb/folders.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "platform/failure.h"
#include "quillondb/installation.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kHomeMode = 0750;
constexpr mode_t kFolderMode = 0755;

[[noreturn]] void FailMaking(const fs::path& path, const std::string& reason) {
  throw FileFailure(path.string() + ": cannot be made: " + reason);
}

bool IsFolder(const fs::path& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored);
}

}  // namespace

bool IsThere(const fs::path& path) {
  std::error_code ignored;
  return fs::exists(fs::symlink_status(path, ignored));
}

void RefuseExisting(const fs::path& path, const std::string& remedy) {
  if (!IsThere(path)) return;
  throw FileFailure(path.string() + " exists already and is not overwritten; " + remedy);
}

void MakeFolder(const fs::path& path, mode_t mode) {
  if (mkdir(path.c_str(), mode) == 0) return;
  const int reason = errno;
  if (reason == EEXIST && IsFolder(path)) return;
  FailMaking(path, std::strerror(reason == EEXIST ? ENOTDIR : reason));
}

void MakeHome(const fs::path& directory) {
  const fs::path home = (directory / "").parent_path();  // without a slash at its end
  std::error_code failure;
  if (home.has_parent_path()) fs::create_directories(home.parent_path(), failure);
  if (failure) FailMaking(directory, failure.message());
  MakeFolder(home, kHomeMode);
}

void MakeFolders(const fs::path& directory) {
  for (const char* folder : kFolders) MakeFolder(directory / folder, kFolderMode);
}

}  // namespace quillon
