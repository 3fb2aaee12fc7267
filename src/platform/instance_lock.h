// One instance of the service in one installation directory.
#pragma once

#include <string>

namespace quillon {

// Holds the directory locked for this process; the lock goes with the object, or with
// the process however it ends. No file is made.
class InstanceLock {
 public:
  // FileFailure where the directory cannot be locked for another reason than a holder.
  explicit InstanceLock(const std::string& directory);
  ~InstanceLock();
  InstanceLock(const InstanceLock&) = delete;
  InstanceLock& operator=(const InstanceLock&) = delete;

  // False where another process holds the directory, for longer than a look at it takes.
  bool held() const { return held_; }

 private:
  int descriptor_;
  bool held_;
};

}  // namespace quillon
