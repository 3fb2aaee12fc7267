// The pauses of the import's loops, in which the site goes on answering.
#pragma once

#include <cstdint>

#include "import/write_group.h"
#include "platform/event_loop.h"

namespace quillon {

// Counts the rows of a loop and pauses after more than 100 of them.
class RowPauses {
 public:
  static constexpr int kRows = 101;             // between two pauses
  static constexpr std::int16_t kPauseMs = 10;  // of an ordinary loop

  // A loop that only reads.
  explicit RowPauses(EventLoop& loop) : loop_(loop) {}
  // A loop that writes: the group is committed before each pause.
  RowPauses(EventLoop& loop, WriteGroup& writes, std::int16_t pauseMs = kPauseMs)
      : loop_(loop), writes_(&writes), pauseMs_(pauseMs) {}

  // Called behind each row; true where a pause has been made.
  bool RowDone() {
    if (++rows_ < kRows) return false;
    if (writes_ != nullptr) writes_->Commit();
    loop_.DelayMs(pauseMs_);
    rows_ = 0;
    return true;
  }

 private:
  EventLoop& loop_;
  WriteGroup* writes_ = nullptr;
  std::int16_t pauseMs_ = kPauseMs;
  int rows_ = 0;
};

}  // namespace quillon
