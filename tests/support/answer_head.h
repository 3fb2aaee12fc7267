// The head of an HTTP answer, as far as a client needs it to know where the answer ends.
#pragma once

#include <charconv>
#include <cstddef>
#include <string_view>

namespace quillon {

// How many bytes the answer has in all that begins with these; 0 while its head is not whole, or
// where it tells no length.
inline std::size_t WholeAnswerSize(std::string_view received) {
  constexpr std::string_view kLength = "Content-Length: ";
  constexpr std::string_view kHeadEnd = "\r\n\r\n";
  const std::size_t end = received.find(kHeadEnd);
  const std::size_t length = received.find(kLength);
  if (end == std::string_view::npos || length > end) return 0;
  std::size_t body = 0;
  std::from_chars(received.data() + length + kLength.size(), received.data() + end, body);
  return end + kHeadEnd.size() + body;
}

// Whether all of it is there; more may follow.
inline bool HoldsWholeAnswer(std::string_view received) {
  const std::size_t size = WholeAnswerSize(received);
  return size > 0 && received.size() >= size;
}

}  // namespace quillon
