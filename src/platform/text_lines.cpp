// Lines of a text.
#include "platform/text_lines.h"

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

}  // namespace quillon
