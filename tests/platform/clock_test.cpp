// The clock of the machine: its zone, its tick, its sleep.
#include "platform/clock.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <ctime>
#include <string>

#include "support/environment.h"

namespace quillon {
namespace {

using std::chrono::milliseconds;

// What the C library's calendar says of that second, in the zone of this process.
std::string LocalText(std::time_t second) {
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", std::localtime(&second));
  return text.data();
}

void ExpectTimeOfTheZone() {
  using std::chrono::system_clock;  // std::time is some milliseconds late
  const SystemClock clock;
  const std::time_t before = system_clock::to_time_t(system_clock::now());
  const std::string now = DateTimeText(clock.Now());
  const std::time_t after = system_clock::to_time_t(system_clock::now());
  EXPECT_GE(now, LocalText(before));
  EXPECT_LE(now, LocalText(after));
}

TEST(SystemClock, TellsTheTimeOfTheMachinesZone) {
  {
    const Environment environment({"TZ"});
    environment.Set("TZ", "Etc/GMT-5");
    tzset();
    ExpectTimeOfTheZone();
  }
  tzset();
}

TEST(SystemClock, TickGoesOnByTheSleep) {
  SystemClock clock;
  const DateTime before = clock.Now();
  const std::int64_t tick = clock.TickMs();
  clock.Sleep(milliseconds(20));
  EXPECT_GE(clock.TickMs() - tick, 20);
  EXPECT_LT(clock.TickMs() - tick, 2000);
  EXPECT_NE(clock.Now(), before);
}

}  // namespace
}  // namespace quillon
