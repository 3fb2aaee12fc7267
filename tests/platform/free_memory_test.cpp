// Memory that was freed goes back to the machine.
#include "platform/free_memory.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace quillon {
namespace {

// Memory that belongs to this process alone and is no file's, in kB.
long OwnMemory() {
  std::ifstream status("/proc/self/status");
  std::string word;
  while (status >> word) {
    if (word == "RssAnon:") break;
  }
  long kilobytes = 0;
  status >> kilobytes;
  return kilobytes;
}

TEST(FreeMemory, BlocksThatAreFreeBetweenOthersGoBackToTheMachine) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "another allocator";
#endif
  constexpr std::size_t kBlocks = 2000;
  constexpr std::size_t kSize = 16384;  // too small for a mapping of its own
  std::vector<std::unique_ptr<std::string>> blocks;
  std::vector<std::unique_ptr<std::string>> between;
  for (std::size_t number = 0; number < kBlocks; ++number) {
    blocks.push_back(std::make_unique<std::string>(kSize, 'x'));
    between.push_back(std::make_unique<std::string>(100, 'y'));
  }
  blocks.clear();
  const long before = OwnMemory();
  ReturnFreeMemory();
  EXPECT_LT(OwnMemory(), before - 16 * 1024);
}

}  // namespace
}  // namespace quillon
