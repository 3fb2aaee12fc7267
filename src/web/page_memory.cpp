// Remembered pages, checked against their files at each use.
#include "web/page_memory.h"

#include <ctime>
#include <tuple>
#include <utility>

#include "platform/files.h"

namespace quillon {
namespace {

// What a page grows by before it leaves, head and footer: room for it spares a copy.
constexpr std::size_t kRoomForFrame = 1024;

auto Identity(const struct stat& status) {
  return std::tuple(status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
                    status.st_mtim.tv_nsec, status.st_ctim.tv_sec, status.st_ctim.tv_nsec);
}

// True where the last change is so long ago that a further one would show in the times.
bool IsSettled(const struct stat& status) {
  constexpr std::time_t kSettledSeconds = 1;
  return std::time(nullptr) - status.st_ctim.tv_sec > kSettledSeconds;
}

}  // namespace

bool PageMemory::Take(const std::string& path, std::string& text) const {
  const auto found = pages_.find(path);
  struct stat status {};
  if (found == pages_.end() || stat(path.c_str(), &status) != 0) return false;
  const auto& [remembered, bytes] = found->second;
  if (Identity(remembered) != Identity(status)) return false;
  text.reserve(bytes.size() + kRoomForFrame);
  text = bytes;
  return true;
}

void PageMemory::Read(const std::string& path, std::string& text) {
  if (Take(path, text)) return;
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) TouchFile(path);
  text = ReadFileBytes(path);
  if (IsSettled(status) && std::cmp_equal(status.st_size, text.size())) {
    Remember(path, status, text);
  }
}

void PageMemory::Remember(const std::string& path, const struct stat& status,
                          const std::string& bytes) {
  if (const auto old = pages_.find(path); old != pages_.end()) {
    size_ -= old->second.bytes.size();
    pages_.erase(old);
  }
  if (bytes.size() > kLimit) return;
  if (size_ + bytes.size() > kLimit) {
    pages_.clear();
    size_ = 0;
  }
  pages_[path] = {status, bytes};
  size_ += bytes.size();
}

}  // namespace quillon
