// Stands between a program and the system by LD_PRELOAD, and lets one call of a kind fail, once or
// from then on. What is not below the installation is left alone, and not counted.
//
//   FAIL_BELOW     the installation, an absolute path without links
//   FAIL_REPORT    a file elsewhere, for "failed KIND NUMBER PATH", a line for the first failure,
//                  and at the end of the program "counted KIND NUMBER", a line for each kind
//   FAIL_KIND      write, open (of files to write in), sync, rename or truncate; none: all are
//                  counted
//   FAIL_AT        the number of the call, from 1
//   FAIL_ERROR     ENOSPC or EIO
//   FAIL_FOR_GOOD  where it is set, all later calls of the kind fail as well
//   FAIL_ROOM      so many bytes are free: when files have grown by them altogether, none grows any
//                  more, and none is created. What is deleted gives no room back
//   FAIL_SPARED    a file whose calls neither fail nor count: the one that failures are told in
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>

namespace {

enum Kind : unsigned { kWrite, kOpen, kSync, kRename, kTruncate, kKinds };
constexpr std::array<std::string_view, kKinds> kNames = {"write", "open", "sync", "rename",
                                                         "truncate"};

std::string_view Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

// Without limit where nothing is said.
off_t BytesOf(std::string_view text) {
  return text.empty() ? std::numeric_limits<off_t>::max() : std::atoll(text.data());
}

int NumberOf(std::string_view text) {
  return text.empty() ? 0 : std::atoi(text.data());
}

// What the environment asks for, and what has been counted. The program has one thread. Nothing
// here has to be destroyed: calls come until the very end.
class Plan {
 public:
  // Counts the call, and tells whether it has to fail.
  bool Meets(Kind kind, std::string_view path) {
    if (!IsMeant(path)) return false;
    const int number = ++counts_[kind];
    if (kNames[kind] != kind_ || number < at_ || (number > at_ && !isForGood_)) return false;
    if (number == at_) Tell("failed", kind, path);
    errno = error_;
    return true;
  }

  // How many of the bytes have room that are to be written at that place of a file of that length.
  std::size_t Fitting(std::string_view path, std::size_t size, off_t begin, off_t length) {
    if (!IsMeant(path)) return size;
    const off_t growth = std::max<off_t>(0, begin + static_cast<off_t>(size) - length);
    const off_t granted = std::min(growth, room_);
    room_ -= granted;
    const auto missing = static_cast<std::size_t>(growth - granted);
    return size - std::min(size, missing);
  }

  bool CanCreate(std::string_view path) const { return room_ > 0 || !IsMeant(path); }

  void TellCounts() const {
    for (unsigned kind = 0; kind < kKinds; ++kind) Tell("counted", kind, "");
  }

 private:
  bool IsMeant(std::string_view path) const { return IsBelow(path) && path != spared_; }

  // The installation's own folder as well, whose entries are synced like a file.
  bool IsBelow(std::string_view path) const {
    return !below_.empty() && path.starts_with(below_) &&
           (path.size() == below_.size() || path[below_.size()] == '/');
  }

  void Tell(std::string_view what, unsigned kind, std::string_view path) const {
    const std::string line = std::string(what) + " " + std::string(kNames[kind]) + " " +
                             std::to_string(counts_[kind]) + " " + std::string(path) + "\n";
    const long file = syscall(SYS_open, report_.data(), O_WRONLY | O_CREAT | O_APPEND, 0644);
    if (file < 0) return;
    syscall(SYS_write, file, line.data(), line.size());
    syscall(SYS_close, file);
  }

  std::string_view below_ = Variable("FAIL_BELOW");
  std::string_view spared_ = Variable("FAIL_SPARED");
  std::string_view report_ = Variable("FAIL_REPORT");
  std::string_view kind_ = Variable("FAIL_KIND");
  int at_ = NumberOf(Variable("FAIL_AT"));
  int error_ = Variable("FAIL_ERROR") == "EIO" ? EIO : ENOSPC;
  off_t room_ = BytesOf(Variable("FAIL_ROOM"));
  bool isForGood_ = !Variable("FAIL_FOR_GOOD").empty();
  std::array<int, kKinds> counts_{};
};

Plan& ThePlan() {
  static Plan plan;
  return plan;
}

bool MustFail(Kind kind, const char* path) {
  return ThePlan().Meets(kind, path);
}

std::string PathOf(int file) {
  std::array<char, PATH_MAX> path{};
  const std::string link = "/proc/self/fd/" + std::to_string(file);
  const ssize_t length = readlink(link.c_str(), path.data(), path.size());
  return length > 0 ? std::string(path.data(), static_cast<std::size_t>(length)) : std::string();
}

bool MustFail(Kind kind, int file) {
  return ThePlan().Meets(kind, PathOf(file));
}

// Whether the disk is too full for any of the bytes; else `size` is what has room.
bool IsFull(int file, size_t& size, off_t begin) {
  struct stat status {};
  if (size == 0 || fstat(file, &status) != 0) return false;
  size = ThePlan().Fitting(PathOf(file), size, begin, status.st_size);
  if (size == 0) errno = ENOSPC;
  return size == 0;
}

bool IsFullToCreate(const char* path, int flags) {
  const bool isFull =
      (flags & O_CREAT) != 0 && access(path, F_OK) != 0 && !ThePlan().CanCreate(path);
  if (isFull) errno = ENOSPC;
  return isFull;
}

// Where the next write begins.
off_t PlaceIn(int file) {
  const bool isAtEnd = (fcntl(file, F_GETFL) & O_APPEND) != 0;
  return lseek(file, 0, isAtEnd ? SEEK_END : SEEK_CUR);
}

[[gnu::destructor]] void AtTheEnd() {
  ThePlan().TellCounts();
}

// The function that would have been called without this library.
template <typename Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

// The third argument stands there only if the flags create a file.
int open(const char* path, int flags, ...) {
  mode_t mode = 0;
  if ((flags & O_CREAT) != 0) {
    va_list arguments;
    va_start(arguments, flags);
    mode = va_arg(arguments, mode_t);
    va_end(arguments);
  }
  const bool isToWrite = (flags & O_ACCMODE) != O_RDONLY;
  if (isToWrite && MustFail(kOpen, path)) return -1;
  if (IsFullToCreate(path, flags)) return -1;
  return Real<int(const char*, int, ...)>("open")(path, flags, mode);
}

ssize_t write(int file, const void* bytes, size_t size) {
  if (MustFail(kWrite, file) || IsFull(file, size, PlaceIn(file))) return -1;
  return Real<ssize_t(int, const void*, size_t)>("write")(file, bytes, size);
}

ssize_t writev(int file, const iovec* pieces, int count) {
  if (MustFail(kWrite, file)) return -1;
  return Real<ssize_t(int, const iovec*, int)>("writev")(file, pieces, count);
}

ssize_t pwrite(int file, const void* bytes, size_t size, off_t offset) {
  if (MustFail(kWrite, file) || IsFull(file, size, offset)) return -1;
  return Real<ssize_t(int, const void*, size_t, off_t)>("pwrite")(file, bytes, size, offset);
}

int fsync(int file) {
  return MustFail(kSync, file) ? -1 : Real<int(int)>("fsync")(file);
}

int fdatasync(int file) {
  return MustFail(kSync, file) ? -1 : Real<int(int)>("fdatasync")(file);
}

int rename(const char* from, const char* to) noexcept {
  return MustFail(kRename, to) ? -1 : Real<int(const char*, const char*)>("rename")(from, to);
}

int ftruncate(int file, off_t length) noexcept {
  return MustFail(kTruncate, file) ? -1 : Real<int(int, off_t)>("ftruncate")(file, length);
}

// On a machine of 64 bits the same under other names.
static_assert(sizeof(off_t) == sizeof(off64_t));
int open64(const char* path, int flags, ...) __attribute__((alias("open")));
ssize_t pwrite64(int file, const void* bytes, size_t size, off64_t offset)
    __attribute__((alias("pwrite")));
int ftruncate64(int file, off64_t length) noexcept __attribute__((alias("ftruncate")));

}  // extern "C"
