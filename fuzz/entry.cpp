// The way from the fuzzer into one target, whose name the build gives. How long an input takes is
// counted in the processor's time: on a busy machine the clock on the wall says nothing of it.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>

#include "targets.h"

namespace {

using namespace quillon::fuzz;

constexpr std::clock_t kLongestRun = CLOCKS_PER_SEC;

constexpr const Target* kTarget =
    std::find_if(kTargets.begin(), kTargets.end(),
                 [](const Target& target) { return target.name == QUILLON_FUZZ_TARGET; });
static_assert(kTarget != kTargets.end(), "no such target");

// The longest run so far, which it tells at the end of the process, and where that is too long.
class Longest {
 public:
  ~Longest() { Tell(); }

  void Take(std::clock_t run) {
    longest_ = std::max(longest_, run);
    if (run <= kLongestRun) return;
    Tell();
    Require(false, "an input that takes too long");
  }

 private:
  void Tell() const { std::fprintf(stderr, "slowest input: %ld us\n", longest_); }

  static_assert(CLOCKS_PER_SEC == 1'000'000);
  std::clock_t longest_ = 0;
};

}  // namespace

// The first run builds what all of them share.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  kTarget->run("");
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Longest longest;
  const std::clock_t before = std::clock();
  kTarget->run({reinterpret_cast<const char*>(data), size});
  longest.Take(std::clock() - before);
  return 0;
}
