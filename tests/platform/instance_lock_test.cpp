// The lock of an installation directory.
#include "platform/instance_lock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>

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

// Who asks for the holder has the lock himself meanwhile, and spoils no start by it.
TEST(InstanceLock, WaitsForAHolderOfAMoment) {
  const Installation home;
  auto holder = std::make_unique<InstanceLock>(home.path());
  std::thread end([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    holder.reset();
  });
  EXPECT_TRUE(InstanceLock(home.path()).held());
  end.join();
}

TEST(InstanceLock, DirectoryThatIsNotThereIsAFailureAndNoHolder) {
  EXPECT_THROW(InstanceLock("/nowhere/at/all"), FileFailure);
}

}  // namespace
}  // namespace quillon
