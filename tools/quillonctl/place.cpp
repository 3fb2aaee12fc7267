// The directory and the rights.
#include "quillonctl/place.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "installation_owner.h"
#include "platform/failure.h"
#include "platform/program_path.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSettingsFile = "Quillon.mdb";

[[noreturn]] void FailForeign(const std::string& directory) {
  throw FileFailure("the installation in " + directory +
                    " belongs to another user; call this program as that user, or as root");
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

}  // namespace

std::string EnterInstallation(const std::string& given) {
  std::string directory = given.empty() ? ProgramDirectory() : fs::absolute(given).string();
  while (directory.size() > 1 && directory.ends_with('/')) directory.pop_back();
  RequireSettings(directory);
  BecomeOwner(directory);
  if (geteuid() != 0 && access((directory + "/" + kSettingsFile).c_str(), R_OK | W_OK) != 0) {
    FailForeign(directory);
  }
  return directory;
}

}  // namespace quillon
