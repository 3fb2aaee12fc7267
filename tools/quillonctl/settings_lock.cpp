// The lock on the settings database, of a kind that the engine does not use.
#include "quillonctl/settings_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/failure.h"

namespace quillon {

SettingsLock::SettingsLock(const std::string& directory)
    : descriptor_(open((directory + "/Quillon.mdb").c_str(), O_RDONLY | O_CLOEXEC)) {
  if (descriptor_ < 0) {
    throw FileFailure(directory + "/Quillon.mdb: " + std::strerror(errno));
  }
  while (flock(descriptor_, LOCK_EX) != 0 && errno == EINTR) continue;
}

SettingsLock::~SettingsLock() {
  close(descriptor_);
}

}  // namespace quillon
