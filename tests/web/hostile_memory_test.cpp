// What hostile requests take of the memory comes back, and is never much.
#include <sys/resource.h>

#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "web/hostile_site.h"

namespace quillon {
namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr bool kIsMeasurable = false;  // the sanitizer keeps what was given back
#else
constexpr bool kIsMeasurable = true;
#endif

// A line of what the system says of this process, in KB.
long Memory(std::string_view name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name)) return std::stol(line.substr(name.size() + 1));
  }
  throw std::runtime_error("no line " + std::string(name));
}
long PrivateMemory() {
  return Memory("RssAnon");
}

// The most that was ever resident, from here on.
void ForgetPeak() {
  std::ofstream("/proc/self/clear_refs") << "5" << std::flush;
}
long Peak() {
  return Memory("VmHWM");
}

// Were there no bound inside, the machine would be the first to know: from here on the process gets
// no more than a gigabyte.
class DataLimit {
 public:
  DataLimit() {
    getrlimit(RLIMIT_DATA, &before_);
    const rlimit limit{rlim_t{1} << 30, before_.rlim_max};
    if (kIsMeasurable) setrlimit(RLIMIT_DATA, &limit);
  }
  ~DataLimit() { setrlimit(RLIMIT_DATA, &before_); }
  DataLimit(const DataLimit&) = delete;
  DataLimit& operator=(const DataLimit&) = delete;

 private:
  rlimit before_{};
};

class HostileMemory : public HostileSite {
 protected:
  // Every kind of request in turn.
  void Ask(HostileGrammar& grammar, int count) {
    for (int number = 0; number < count; ++number) {
      switch (number % 6) {
        case 0:
          SearchFor(grammar.Text(), "search-device-port-name", "DeviceName=#\r\nPortName=*\r\n");
          break;
        case 1:
          SearchFor(grammar.Text(), "search-device-port-alias", "DeviceName=*\r\nPortName=#\r\n");
          break;
        case 2:
          SearchFor(grammar.Text(), "search-mac-ip", "MacIpName=.#");
          break;
        case 3:
          SearchFor(grammar.Text(), "search-device-disk",
                    "DeviceName=#\r\nDiskName=*\r\nOrderBy=usedbytes-asc");
          break;
        case 4:
          SearchFor(grammar.Text(), "search-device-disk",
                    "DeviceName=*\r\nDiskName=*\r\nOrderBy=#");
          break;
        default:
          SendHarmless(Site::Request("DeviceId=" + grammar.Text()), "DeviceId");
      }
    }
  }

  void AskForMuch() {
    for (const std::string& text : GreedyTexts()) {
      SearchFor(text, "search-device-port-name", "DeviceName=#\r\nPortName=*\r\n");
      SearchFor(text, "search-device-disk", "DeviceName=#\r\nDiskName=*\r\nOrderBy=usedbytes-asc");
    }
  }
};

TEST_F(HostileMemory, ThousandsOfSearchesLeaveNothingBehind) {
  HostileGrammar grammar(13);
  Ask(grammar, 2'000 / static_cast<int>(kEach));
  const long early = PrivateMemory();
  Ask(grammar, 1'000 / static_cast<int>(kEach));
  const long late = PrivateMemory();
  if (kIsMeasurable) {
    EXPECT_LE(late, early + 2 * 1024) << "KB";
  }
  ExpectNothingHasChanged();
}

// The engine has a bound for its own memory, a request and its page are small, and what a text
// becomes in the program is a small multiple of it.
TEST_F(HostileMemory, GreedySearchesTakeLittleAndGiveItBack) {
  const DataLimit limit;
  ForgetPeak();
  const long before = Peak();
  AskForMuch();
  const long early = PrivateMemory();
  for (int round = 0; round < 3; ++round) AskForMuch();
  if (kIsMeasurable) {
    EXPECT_LE(Peak(), before + 128 * 1024) << "KB";
    EXPECT_LE(PrivateMemory(), early + 4 * 1024) << "KB";
  }
  ExpectNothingHasChanged();
}

}  // namespace
}  // namespace quillon
