// A disk without room: no file of this process can grow beyond a size. Rights would not do,
// since tests may run as root.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace quillon {

class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handlerBefore_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &limitBefore_);
    const rlimit limit{bytes, limitBefore_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &limitBefore_);
    std::signal(SIGXFSZ, handlerBefore_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  void (*handlerBefore_)(int);
  rlimit limitBefore_{};
};

}  // namespace quillon
