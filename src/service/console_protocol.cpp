// Lines and their words.
#include "service/console_protocol.h"

namespace quillon::console {
namespace {

constexpr char kSeparator = '\t';

bool Separates(char character) {
  return character == kSeparator || character == '\n' || character == '\r';
}

}  // namespace

std::string Line(const std::vector<std::string_view>& words) {
  std::string line;
  for (const std::string_view word : words) {
    for (const char character : word) line += Separates(character) ? ' ' : character;
    line += kSeparator;
  }
  if (!line.empty()) line.pop_back();
  return line;
}

std::vector<std::string> Words(std::string_view line) {
  std::vector<std::string> words;
  while (true) {
    const std::size_t end = line.find(kSeparator);
    words.emplace_back(line.substr(0, end));
    if (end == std::string_view::npos) return words;
    line.remove_prefix(end + 1);
  }
}

}  // namespace quillon::console
