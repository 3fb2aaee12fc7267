// The file by its directory's descriptor.
#include "platform/socket_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/failure.h"

namespace quillon {

SocketFile::SocketFile(const std::string& directory, std::string name)
    : name_(std::move(name)),
      directory_(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (directory_ < 0) throw FileFailure("cannot open " + directory + ": " + std::strerror(errno));
}

SocketFile::~SocketFile() {
  close(directory_);
}

std::string SocketFile::Address() const {
  return "/proc/self/fd/" + std::to_string(directory_) + "/" + name_;
}

bool SocketFile::Exists() const {
  struct stat status {};
  return fstatat(directory_, name_.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

bool SocketFile::IsSocket() const {
  struct stat status {};
  return fstatat(directory_, name_.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISSOCK(status.st_mode);
}

void SocketFile::Remove() const {
  unlinkat(directory_, name_.c_str(), 0);
}

}  // namespace quillon
