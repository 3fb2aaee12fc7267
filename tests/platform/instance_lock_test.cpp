// The lock of an installation directory.
#include "platform/instance_lock.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "support/installation.h"

namespace quillon {
namespace {

TEST(InstanceLock, IsHeldOnceInADirectoryAndFreeAgainAfterwards) {
  const Installation one;
  const Installation other;
  {
    const InstanceLock first(one.path());
    EXPECT_TRUE(first.held());
    EXPECT_FALSE(InstanceLock(one.path()).held());
    EXPECT_TRUE(InstanceLock(other.path()).held());
  }
  EXPECT_TRUE(InstanceLock(one.path()).held());
}

TEST(InstanceLock, DirectoryThatIsNotThereIsAFailureAndNoHolder) {
  EXPECT_THROW(InstanceLock("/nowhere/at/all"), FileFailure);
}

}  // namespace
}  // namespace quillon
