// The lock on the directory itself.
#include "platform/instance_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace quillon {

InstanceLock::InstanceLock(const std::string& directory)
    : descriptor_(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
      held_(descriptor_ >= 0 && flock(descriptor_, LOCK_EX | LOCK_NB) == 0) {}

InstanceLock::~InstanceLock() {
  if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace quillon
