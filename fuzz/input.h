// The bytes of an input, taken piece by piece from the front.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace quillon::fuzz {

class Input {
 public:
  explicit Input(std::string_view bytes) : rest_(bytes) {}

  bool IsEmpty() const { return rest_.empty(); }

  // 0 where nothing is left.
  unsigned Byte() {
    const std::string_view first = Take(1);
    return first.empty() ? 0 : static_cast<unsigned char>(first.front());
  }

  // So many bytes, or what is left.
  std::string_view Take(std::size_t count) {
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(taken.size());
    return taken;
  }

  // What stands in front of the separator, or what is left; the separator is taken off.
  std::string_view TakeUpTo(char separator) {
    const std::string_view taken = Take(std::min(rest_.find(separator), rest_.size()));
    Take(1);
    return taken;
  }

  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

}  // namespace quillon::fuzz
