// Pages that were read from the cache folder lately, so that a page which many clients
// ask for costs one look at its file and no reading.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <string>
#include <unordered_map>

namespace quillon {

// The file stays the whole cache state: what is remembered counts only as long as the
// file's identity, size and times are those it was read with. A file that has changed
// within the last second is not remembered, since one more change inside a step of the
// file system's clock could not be told from it.
class PageMemory {
 public:
  // Bytes remembered in all; where a further page does not fit, the others are forgotten.
  static constexpr std::size_t kLimit = std::size_t{2} * 1024 * 1024;

  // text := the remembered bytes, where the file is still the one that they were read from. False
  // where nothing is remembered of it or it has changed; the text stays then.
  bool Take(const std::string& path, std::string& text) const;

  // text := the bytes of the file, remembered or read. An absent file is made, with length
  // zero. FileFailure where that is not possible; the text stays then.
  void Read(const std::string& path, std::string& text);

 private:
  struct Page {
    struct stat status;  // of the file when it was read
    std::string bytes;
  };

  void Remember(const std::string& path, const struct stat& status, const std::string& bytes);

  std::unordered_map<std::string, Page> pages_;
  std::size_t size_ = 0;  // of all bytes in pages_
};

}  // namespace quillon
