// The lock on the directory itself.
#include "platform/instance_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include "platform/failure.h"

namespace quillon {
namespace {

// Whoever only asks for the holder, as a check does, has the lock himself for a moment.
constexpr int kAttempts = 5;
constexpr std::chrono::milliseconds kPause{20};

// False, with errno, where the lock cannot be had.
bool Lock(int descriptor) {
  for (int attempt = 1; flock(descriptor, LOCK_EX | LOCK_NB) != 0; ++attempt) {
    if (errno != EWOULDBLOCK || attempt == kAttempts) return false;
    std::this_thread::sleep_for(kPause);
  }
  return true;
}

}  // namespace

InstanceLock::InstanceLock(const std::string& directory)
    : descriptor_(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
      held_(descriptor_ >= 0 && Lock(descriptor_)) {
  if (held_ || errno == EWOULDBLOCK) return;
  const std::string reason = std::strerror(errno);
  if (descriptor_ >= 0) close(descriptor_);
  throw FileFailure("cannot lock " + directory + ": " + reason);
}

InstanceLock::~InstanceLock() {
  close(descriptor_);
}

}  // namespace quillon
