// Lines of a text.
#include "platform/text_lines.h"

#include <algorithm>

namespace quillon {

std::string_view TakeLine(std::string_view& rest) {
  const std::size_t end = rest.find_first_of("\r\n");
  const std::string_view line = rest.substr(0, end);
  if (end == std::string_view::npos) {
    rest = {};
    return line;
  }
  const std::size_t ending = rest.substr(end).starts_with("\r\n") ? 2 : 1;
  rest.remove_prefix(end + ending);
  return line;
}

std::string_view TrimmedView(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string OneLine(std::string text) {
  const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
  std::replace_if(text.begin(), text.end(), isControl, ' ');
  return text;
}

}  // namespace quillon
