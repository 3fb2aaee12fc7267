// An open file of the system's.
#pragma once

#include <unistd.h>

namespace quillon {

// A file descriptor that closes itself. Below 0 it is none.
class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  ~Descriptor() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  Descriptor(Descriptor&& other) noexcept : descriptor_(other.descriptor_) {
    other.descriptor_ = -1;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor& operator=(Descriptor&&) = delete;
  int get() const { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace quillon
