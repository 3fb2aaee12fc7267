// The head of the first page: a magic number, the name of the engine, its version.
#include "quillondb/jet/jet_header.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "platform/failure.h"
#include "platform/terminal_text.h"

namespace quillon {
namespace {

constexpr std::size_t kNameStart = 4;
constexpr std::size_t kVersionPlace = 0x14;
constexpr std::string_view kJetName{"Standard Jet DB\0", 16};
constexpr std::string_view kNewerName{"Standard ACE DB\0", 16};

// An empty database has more; the catalog alone begins on page 2.
constexpr std::uintmax_t kLeastPages = 3;

using Head = std::array<char, kVersionPlace + 1>;

// Root reads it as that user, too.
[[noreturn]] void FailRights(const std::string& name) {
  throw FileFailure("cannot open " + name + ": " + std::strerror(EACCES) +
                    "; the user to whom the installation belongs has to be able to read it");
}

Head HeadOf(const std::string& path, const std::string& name) {
  std::error_code failure;
  const bool isFile = std::filesystem::is_regular_file(path, failure);
  if (failure.value() == EACCES) FailRights(name);
  if (!isFile) {
    throw FileFailure(name + " is no file; name the database file of the older installation");
  }
  Head head{};
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file && errno == EACCES) FailRights(name);
  if (!file) throw FileFailure("cannot open " + name + ": " + std::strerror(errno));
  file.read(head.data(), head.size());
  return head;
}

std::uintmax_t PageSize(char version, const std::string& name) {
  switch (version) {
    case 0:
      return 2048;
    case 1:
      return 4096;
    default:
      throw FileFailure(name +
                        " is a Jet database of a newer version; save it as one of the version of"
                        " 2000 to 2003 (.mdb), and take that");
  }
}

}  // namespace

void RequireJetFile(const std::string& path) {
  const std::string name = TerminalText(path);
  const Head head = HeadOf(path, name);
  const std::string_view engine(head.data() + kNameStart, kJetName.size());
  if (engine == kNewerName) {
    throw FileFailure(name +
                      " is a database of the newer kind (.accdb); save it as one of the version of"
                      " 2000 to 2003 (.mdb), and take that");
  }
  if (engine != kJetName) throw FileFailure(name + " is no Jet database file");
  const std::uintmax_t page = PageSize(head[kVersionPlace], name);
  const std::uintmax_t size = std::filesystem::file_size(path);
  if (size % page != 0 || size < kLeastPages * page) {
    throw FileFailure(name + " is cut off: " + std::to_string(size) + " bytes are " +
                      (size % page != 0 ? "no whole number of" : "too few") +
                      " pages; copy it again");
  }
}

}  // namespace quillon
