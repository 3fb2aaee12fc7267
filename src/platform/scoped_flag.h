// A flag that tells what is on the stack.
#pragma once

#include <utility>

namespace quillon {

// Sets the flag while it lives and then sets it back, however its scope is left.
class ScopedFlag {
 public:
  ScopedFlag(bool& flag, bool value) : flag_(flag), before_(std::exchange(flag, value)) {}
  ~ScopedFlag() { flag_ = before_; }
  ScopedFlag(const ScopedFlag&) = delete;
  ScopedFlag& operator=(const ScopedFlag&) = delete;

 private:
  bool& flag_;
  bool before_;
};

}  // namespace quillon
