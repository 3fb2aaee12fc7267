// The lock on the directory itself.
#include "platform/instance_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/failure.h"

namespace quillon {

InstanceLock::InstanceLock(const std::string& directory)
    : descriptor_(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
      held_(descriptor_ >= 0 && flock(descriptor_, LOCK_EX | LOCK_NB) == 0) {
  if (held_ || errno == EWOULDBLOCK) return;
  const std::string reason = std::strerror(errno);
  if (descriptor_ >= 0) close(descriptor_);
  throw FileFailure("cannot lock " + directory + ": " + reason);
}

InstanceLock::~InstanceLock() {
  if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace quillon
