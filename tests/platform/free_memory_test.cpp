// Memory that was freed goes back to the machine.
#include "platform/free_memory.h"

#include <gtest/gtest.h>

#include "support/sanitized.h"
#include "support/scattered_memory.h"

namespace quillon {
namespace {

TEST(FreeMemory, BlocksThatAreFreeBetweenOthersGoBackToTheMachine) {
  if (kSanitized) GTEST_SKIP() << "another allocator";
  const ScatteredMemory memory;
  const long before = ScatteredMemory::OfProcess();
  ReturnFreeMemory();
  EXPECT_LT(ScatteredMemory::OfProcess(), before - ScatteredMemory::kFreeKilobytes / 2);
}

}  // namespace
}  // namespace quillon
