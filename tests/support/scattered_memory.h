// Memory that is free and that the allocator keeps all the same: blocks between others that are
// still in use.
#pragma once

#include <cstddef>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace quillon {

class ScatteredMemory {
 public:
  static constexpr long kFreeKilobytes = 32000;

  ScatteredMemory() {
    constexpr std::size_t kSize = 16000;  // too small for a mapping of its own
    std::vector<std::unique_ptr<std::string>> free;
    for (int number = 0; number < kFreeKilobytes / 16; ++number) {
      free.push_back(std::make_unique<std::string>(kSize, 'x'));
      inUse_.push_back(std::make_unique<std::string>(100, 'y'));
    }
  }

  // Memory that belongs to this process and is no file's, in kB.
  static long OfProcess() {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word && word != "RssAnon:") {
    }
    long kilobytes = 0;
    status >> kilobytes;
    return kilobytes;
  }

 private:
  std::vector<std::unique_ptr<std::string>> inUse_;
};

}  // namespace quillon
