// Asks the system for the locks on the file. SQLite, which would open it for the question, plays
// back what a stranger put beside it.
#include "quillondb/database_use.h"

#include <fcntl.h>

#include <chrono>
#include <thread>

#include "platform/descriptor.h"

namespace quillon {
namespace {

// Others open a file for shorter than that.
constexpr int kQuestions = 6;
constexpr std::chrono::milliseconds kPause{100};

// The bytes that SQLite locks. Whoever has a database in write-ahead mode open holds one of them.
constexpr off_t kFirstLockByte = 0x40000000;
constexpr off_t kLockBytes = 512;

bool IsLocked(int descriptor) {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = kFirstLockByte;
  lock.l_len = kLockBytes;
  return fcntl(descriptor, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

}  // namespace

bool IsDatabaseInUse(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (file.get() < 0) return false;
  for (int question = 1; IsLocked(file.get()); ++question) {
    if (question == kQuestions) return true;
    std::this_thread::sleep_for(kPause);
  }
  return false;
}

}  // namespace quillon
