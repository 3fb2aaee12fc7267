// Answers by their heads.
#include "whole_answers.h"

#include <charconv>
#include <string>

#include "targets.h"

namespace quillon::fuzz {
namespace {

constexpr std::string_view kBegin = "HTTP/1.0 200 OK\r\nContent-Type: ";
constexpr std::string_view kLength = "\r\nContent-Length: ";
constexpr std::string_view kHeadEnd = "\r\n\r\n";

std::size_t LengthIn(std::string_view head) {
  const std::size_t place = head.find(kLength);
  Require(place != std::string_view::npos, "a head without a length");
  head.remove_prefix(place + kLength.size());
  std::size_t length = 0;
  const auto [end, error] = std::from_chars(head.data(), head.data() + head.size(), length);
  Require(error == std::errc() && end == head.data() + head.size(), "a length that is no number");
  return length;
}

void RequirePage(std::string_view head, std::string_view body) {
  if (body.empty() || !head.starts_with(std::string(kBegin) + "text/html")) return;
  Require(body.ends_with("</body>\r\n</html>"), "a page without its end");
}

}  // namespace

std::size_t WholeAnswers(std::string_view bytes) {
  std::size_t whole = 0;
  while (true) {
    const std::string_view rest = bytes.substr(whole);
    Require(rest.starts_with(kBegin.substr(0, rest.size())),
            "no answer: " + std::string(rest.substr(0, 100)));
    const std::size_t headEnd = rest.find(kHeadEnd);
    if (headEnd == std::string_view::npos) return whole;
    const std::string_view head = rest.substr(0, headEnd);
    const std::size_t length = LengthIn(head);
    const std::size_t start = headEnd + kHeadEnd.size();
    if (rest.size() - start < length) return whole;
    RequirePage(head, rest.substr(start, length));
    whole += start + length;
  }
}

}  // namespace quillon::fuzz
