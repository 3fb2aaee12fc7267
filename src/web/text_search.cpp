// Substring work with positions from 1.
#include "web/text_search.h"

#include "platform/failure.h"

namespace quillon {

long Position(std::string_view text, std::string_view wanted, long start) {
  const std::size_t found = text.find(wanted, static_cast<std::size_t>(start - 1));
  return found == std::string_view::npos ? 0 : static_cast<long>(found) + 1;
}

bool Holds(std::string_view text, std::string_view wanted) {
  return text.find(wanted) != std::string_view::npos;
}

std::string_view Middle(std::string_view text, long position, long length) {
  if (length < 0 || position < 1) {
    throw TextFailure("the request holds its words in no order that a report has");
  }
  const auto start = static_cast<std::size_t>(position - 1);
  return start >= text.size() ? std::string_view()
                              : text.substr(start, static_cast<std::size_t>(length));
}

}  // namespace quillon
