// Numbers on a command line.
#pragma once

#include <charconv>
#include <optional>
#include <string_view>

namespace quillon {

// Nothing where the text is anything but a number from 0 on.
inline std::optional<int> NumberIn(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isNumber = error == std::errc() && end == text.data() + text.size() && number >= 0;
  return isNumber ? std::optional(number) : std::nullopt;
}

}  // namespace quillon
