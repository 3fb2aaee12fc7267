// Times one search inside a fresh process: the first call, which pays for everything that a process
// meets for the first time, and some later ones. Waits are counted and not slept, so that what is
// left is its work.
//
//   search_query DIRECTORY mac ADDRESS
//   search_query DIRECTORY port DEVICE PORT     by the names of ports
//   search_query DIRECTORY alias DEVICE PORT    by their aliases
//   search_query DIRECTORY disk DEVICE DISK ORDER
//
// With --no-hit behind them the search has to find nothing.
//
// Prints "call <microseconds>" for each call, "total <number>" of what the table tells in brackets,
// "port <recNo> <ifIndex>" for each port in it, and "peak <KB>", the most private memory of the
// process. Fails where anything was reported, and where the table has no row.
#include <fmt/core.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <limits>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "in_process.h"
#include "queries/disk_search.h"
#include "queries/mac_search.h"
#include "queries/port_search.h"
#include "reports.h"

namespace {

using namespace quillon;

constexpr ConnectionId kSlot = 1;
constexpr int kCalls = 4;

using Texts = std::vector<std::string>;

struct Kind {
  std::string_view name;
  std::size_t texts;  // that it searches for
  void (*search)(QueryContext& queries, Texts& texts);
};

constexpr Kind kKinds[] = {
    {"mac", 1,
     [](QueryContext& queries, Texts& texts) { SqlSearchMacIp(queries, kSlot, texts[0]); }},
    {"port", 2,
     [](QueryContext& queries, Texts& texts) {
       SqlSearchDevicePort(queries, kSlot, texts[0], texts[1], "IfDescr");
     }},
    {"alias", 2,
     [](QueryContext& queries, Texts& texts) {
       SqlSearchDevicePort(queries, kSlot, texts[0], texts[1], "IfAlias");
     }},
    {"disk", 3,
     [](QueryContext& queries, Texts& texts) {
       SqlSearchDeviceDisk(queries, kSlot, texts[0], texts[1], texts[2]);
     }},
};

struct Options {
  std::string directory;
  const Kind* kind = nullptr;
  Texts texts;
  bool noHit = false;
};

class Search {
 public:
  explicit Search(const Options& options)
      : options_(options), reports_(clock_, SettingsOf(options.directory)) {}

  Microseconds Run() {
    for (SwitchTableRow& row : Ports().rows) row.recNo = 0;
    for (DiskTableRow& row : Disks().rows) row.recNo = 0;
    Texts texts = options_.texts;  // a search may rewrite them
    const auto work = TimeOf([&] { options_.kind->search(reports_.queries, texts); });
    ExpectNoEvent(reports_.settings);
    const bool isEmpty = Ports().rows[1].recNo == 0 && Disks().rows[1].recNo == 0;
    if (isEmpty != options_.noHit) {
      throw std::runtime_error(isEmpty ? "nothing was found" : "something was found");
    }
    return work;
  }

  // The number in brackets of the count line, "10 (214)".
  std::string Total() {
    const std::string line = Ports().TableCriteria + Disks().TableCriteria;
    const std::size_t start = line.find('(');
    const std::size_t end = line.find(')');
    if (start == std::string::npos || end == std::string::npos) {
      throw std::runtime_error("there is no count in \"" + line + "\"");
    }
    return line.substr(start + 1, end - start - 1);
  }

  SwitchTableRecord& Ports() { return reports_.records.SwitchTableRep[kSlot]; }

 private:
  DiskTableRecord& Disks() { return reports_.records.DiskTableRep[kSlot]; }

  const Options& options_;
  SleeplessClock clock_;
  Reports reports_;
};

// What a line of the process's status tells, "VmHWM:     9212 kB".
std::int64_t StatusKilobytes(std::string_view name) {
  std::ifstream file("/proc/self/status");
  std::string word;
  while (file >> word) {
    std::int64_t kilobytes = 0;
    if (word == name && file >> kilobytes) return kilobytes;
    file.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
  }
  throw std::runtime_error("the process's status has no " + std::string(name));
}

// The most that was resident at once, less the files in it, which only become more.
std::int64_t PeakPrivateKilobytes() {
  return StatusKilobytes("VmHWM:") - StatusKilobytes("RssFile:") - StatusKilobytes("RssShmem:");
}

// False where the arguments are none.
bool ReadOptions(std::span<char*> arguments, Options& options) {
  if (!arguments.empty() && std::string_view(arguments.back()) == "--no-hit") {
    options.noHit = true;
    arguments = arguments.first(arguments.size() - 1);
  }
  if (arguments.size() < 2) return false;
  options.directory = arguments[0];
  options.kind = std::ranges::find(kKinds, std::string_view(arguments[1]), &Kind::name);
  options.texts.assign(arguments.begin() + 2, arguments.end());
  return options.kind != std::end(kKinds) && options.texts.size() == options.kind->texts;
}

void Run(const Options& options) {
  Search search(options);
  for (int call = 0; call < kCalls; ++call) fmt::print("call {:.1f}\n", search.Run().count());
  fmt::print("total {}\n", search.Total());
  for (const SwitchTableRow& row : search.Ports().rows) {
    if (row.recNo != 0) fmt::print("port {} {}\n", row.recNo, row.ifIndex);
  }
  fmt::print("peak {}\n", PeakPrivateKilobytes());
}

}  // namespace

int main(int argumentCount, char** arguments) {
  Options options;
  if (!ReadOptions({arguments + 1, static_cast<std::size_t>(argumentCount - 1)}, options)) {
    fmt::print(stderr,
               "usage: search_query DIRECTORY mac ADDRESS [--no-hit]\n"
               "       search_query DIRECTORY port|alias DEVICE PORT [--no-hit]\n"
               "       search_query DIRECTORY disk DEVICE DISK ORDER [--no-hit]\n");
    return 2;
  }
  try {
    Run(options);
  } catch (const std::exception& failure) {
    fmt::print(stderr, "search_query: {}\n", failure.what());
    return 1;
  }
  return 0;
}
