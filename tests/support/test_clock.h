// A clock that is set by hand. Waits cost nothing: they only move it on.
#pragma once

#include <string>

#include "platform/clock.h"

namespace quillon {

class TestClock : public Clock {
 public:
  explicit TestClock(DateTime now = MakeDateTime({2024, 5, 2, 12, 0, 0})) : now_(now) {}

  DateTime Now() const override { return now_; }
  std::int64_t TickMs() const override { return tick_; }
  void Sleep(std::chrono::milliseconds duration) override {
    Advance(duration);
    slept_ += duration;
  }

  void Set(DateTime now) { now_ = now; }
  // "2024-05-02 12:00:00".
  void Set(const std::string& now) { Set(ParseDateTime(now).value()); }
  void SetTick(std::int64_t tick) { tick_ = tick; }
  void Advance(std::chrono::milliseconds duration) {
    now_ += duration;
    tick_ += duration.count();
  }

  // Sum of all waits so far.
  std::chrono::milliseconds slept() const { return slept_; }

 private:
  DateTime now_;
  std::int64_t tick_ = 1'000'000;
  std::chrono::milliseconds slept_{0};
};

}  // namespace quillon
