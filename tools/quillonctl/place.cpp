// The directory and the rights.
#include "quillonctl/place.h"

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/failure.h"
#include "platform/files.h"
#include "platform/program_path.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSettingsFile = "Quillon.mdb";

[[noreturn]] void FailForeign(const std::string& directory) {
  throw FileFailure("the installation in " + directory +
                    " belongs to another user; call this program as that user, or as root");
}

// A link could be anybody's, so it is not followed.
struct stat Status(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) == 0) return status;
  throw FileFailure(path + ": " + std::strerror(errno));
}

void RequireSettings(const std::string& directory) {
  const std::string path = directory + "/" + kSettingsFile;
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) {
    if (errno == EACCES) FailForeign(directory);
    throw FileFailure(path + ": " + std::strerror(errno) +
                      "; name the installation with --directory");
  }
  if (!S_ISREG(status.st_mode)) throw FileFailure(path + " is no ordinary file");
}

// Whom the installation belongs to: the first one who is not root among the owners of what is
// written into. Whose directory it is may have put root's file in the place of another.
struct stat Owner(const std::string& directory) {
  struct stat owner = Status(directory);
  for (const char* name : {kSettingsFile, "WebReports", "Debug"}) {
    const std::string path = directory + "/" + name;
    if (owner.st_uid != 0) break;
    if (PathExists(path)) owner = Status(path);
  }
  return owner;
}

void Require(int result, const char* what) {
  if (result == 0) return;
  throw FileFailure(std::string("cannot take over the rights of the installation's owner: ") +
                    what + ": " + std::strerror(errno));
}

void BecomeOwner(const struct stat& owner) {
  Require(setgroups(0, nullptr), "setgroups");
  Require(setgid(owner.st_gid), "setgid");
  Require(setuid(owner.st_uid), "setuid");
}

}  // namespace

std::string EnterInstallation(const std::string& given) {
  std::string directory = given.empty() ? ProgramDirectory() : fs::absolute(given).string();
  while (directory.size() > 1 && directory.ends_with('/')) directory.pop_back();
  RequireSettings(directory);
  const struct stat owner = Owner(directory + "/.");
  if (geteuid() == 0 && owner.st_uid != 0) BecomeOwner(owner);
  if (geteuid() != 0 && access((directory + "/" + kSettingsFile).c_str(), R_OK | W_OK) != 0) {
    FailForeign(directory);
  }
  return directory;
}

}  // namespace quillon
