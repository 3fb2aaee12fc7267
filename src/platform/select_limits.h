// What the selects of a handle may ask of the engine: time, and a number of words.
#pragma once

#include <chrono>
#include <optional>
#include <string_view>

struct sqlite3;

namespace quillon {

// Words of a select outside of comments; what stands in quotes or brackets is one. The time to plan
// a select grows much faster than its words, and planning cannot be stopped: so they are counted
// before it. The longest list of a report has twenty.
int CountWords(std::string_view select);
inline constexpr int kMaxWords = 100;

// Counts the work of all selects that run under it, and stops the engine once it is beyond 2 s.
class SelectLimits {
 public:
  explicit SelectLimits(sqlite3* handle) : handle_(handle) {}
  SelectLimits(const SelectLimits&) = delete;
  SelectLimits& operator=(const SelectLimits&) = delete;

  // One stretch of work, one at a time. The engine looks at the time between its own steps while
  // this lives.
  class Stretch {
   public:
    explicit Stretch(SelectLimits& limit);
    ~Stretch();
    Stretch(const Stretch&) = delete;
    Stretch& operator=(const Stretch&) = delete;

   private:
    SelectLimits& limit_;
  };

  // Gives the next select the whole time, whatever others have worked.
  void Restart() { worked_ = {}; }

  // True in a stretch, once the time is over.
  bool IsOver() const;

  // For what may take long within one step: true once the time is over, and then the select ends
  // behind the step. The engine has dozens of such steps on end in a long condition, and looks at
  // the time behind the last one.
  bool StopIfOver() const;

 private:
  using Clock = std::chrono::steady_clock;

  sqlite3* handle_;
  Clock::duration worked_{};
  std::optional<Clock::time_point> start_;  // of the stretch that is running
};

}  // namespace quillon
