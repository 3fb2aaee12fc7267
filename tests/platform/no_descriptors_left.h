// A process that has used up its descriptors: while this lives, it gets no further one. Those that
// are open work on. Not with the sanitizers, which look at objects through a pipe.
#pragma once

#include <sys/resource.h>

#include <stdexcept>

#include "support/sanitized.h"

namespace quillon {

class NoDescriptorsLeft {
 public:
  NoDescriptorsLeft() {
    if (getrlimit(RLIMIT_NOFILE, &before_) != 0) throw std::runtime_error("no limit to read");
    const rlimit none{0, before_.rlim_max};
    if (setrlimit(RLIMIT_NOFILE, &none) != 0) throw std::runtime_error("no limit to set");
  }
  ~NoDescriptorsLeft() { setrlimit(RLIMIT_NOFILE, &before_); }
  NoDescriptorsLeft(const NoDescriptorsLeft&) = delete;
  NoDescriptorsLeft& operator=(const NoDescriptorsLeft&) = delete;

 private:
  rlimit before_{};
};

}  // namespace quillon
