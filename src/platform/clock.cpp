// The clock of the machine.
#include "platform/clock.h"

#include <sys/prctl.h>

#include <ctime>
#include <thread>

namespace quillon {

// By default the system adds up to 50 microseconds to a sleep, to wake up less often. A wait
// is made of many short sleeps, and half a second came out 5 ms too long.
SystemClock::SystemClock() {
  constexpr unsigned long kSlackNanoseconds = 1;
  prctl(PR_SET_TIMERSLACK, kSlackNanoseconds, 0UL, 0UL, 0UL);
}

DateTime SystemClock::Now() const {
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  std::tm local{};
  localtime_r(&seconds, &local);
  const auto sinceEpoch =
      std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch());
  return MakeDateTime({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                       local.tm_min, local.tm_sec, static_cast<int>(sinceEpoch.count() % 1000)});
}

std::int64_t SystemClock::TickMs() const {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

void SystemClock::Sleep(std::chrono::milliseconds duration) {
  std::this_thread::sleep_for(duration);
}

}  // namespace quillon
