// The one clock: wall time, a millisecond tick, and the sleep of the pumping wait.
// Tests put a clock of their own in its place, in which waits cost nothing.
#pragma once

#include <cstdint>

#include "platform/date_time.h"

namespace quillon {

class Clock {
 public:
  virtual ~Clock() = default;

  // What the wall clock of the server shows.
  virtual DateTime Now() const = 0;

  // Milliseconds of a steady clock whose zero means nothing; differences do.
  virtual std::int64_t TickMs() const = 0;

  // Stops the thread for that long. Only the event loop's DelayMs calls it.
  virtual void Sleep(std::chrono::milliseconds duration) = 0;
};

class SystemClock : public Clock {
 public:
  // Makes the sleeps of this thread end as near to their time as the system can.
  SystemClock();

  DateTime Now() const override;
  std::int64_t TickMs() const override;
  void Sleep(std::chrono::milliseconds duration) override;
};

}  // namespace quillon
