// A piece of work in a process of its own, for a library that a damaged file can crash, hang or
// make greedy: whatever becomes of it, this process gets a failure at worst.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace quillon {

using SendBytes = std::function<void(std::string_view bytes)>;
using ReadingWork = std::function<void(const SendBytes& send)>;
using BytesHandler = std::function<void(std::string_view bytes)>;

struct ReadingLimits {
  // How long the process may be silent. Between two rows lie microseconds, on a slow disk of the
  // network perhaps seconds.
  std::chrono::milliseconds longestSilence{60'000};

  // Tells lines on standard error that mean no damage.
  bool (*isHarmless)(std::string_view line) = [](std::string_view) { return false; };
};

// Runs the work in a child and hands over here each piece of bytes that it sends. What the work
// throws is thrown here as a ReadingFailure of the same text; so is what the work wrote to
// standard error, an end that is no end, and silence. The child is gone when this returns.
void RunReadingProcess(const ReadingWork& work, const BytesHandler& handler,
                       const ReadingLimits& limits = {});

}  // namespace quillon
