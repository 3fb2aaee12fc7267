// The name of the machine, as this thread alone sees it while this lives.
#pragma once

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include <string>

namespace quillon {

class HostName {
 public:
  explicit HostName(const std::string& name)
      : before_(open("/proc/thread-self/ns/uts", O_RDONLY | O_CLOEXEC)),
        isOther_(before_ >= 0 && unshare(CLONE_NEWUTS) == 0 &&
                 sethostname(name.data(), name.size()) == 0) {}
  ~HostName() {
    if (before_ < 0) return;
    setns(before_, CLONE_NEWUTS);
    close(before_);
  }
  HostName(const HostName&) = delete;
  HostName& operator=(const HostName&) = delete;

  // False where this user may not change it.
  bool isOther() const { return isOther_; }

 private:
  int before_;
  bool isOther_;
};

}  // namespace quillon
