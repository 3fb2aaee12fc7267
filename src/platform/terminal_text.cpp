// Which characters a terminal gets.
#include "platform/terminal_text.h"

#include <algorithm>
#include <iterator>

#include "platform/text_folding.h"
#include "platform/text_lines.h"

namespace quillon {
namespace {

// The first and the last of the characters that a terminal, or whoever reads it, would take for
// more than a letter. A byte that is no UTF-8 comes as one of the last row.
struct Range {
  char32_t first;
  char32_t last;
};

constexpr Range kUnfit[] = {
    {0x00, 0x1F},     {0x7F, 0x9F},                            // control characters
    {0x061C, 0x061C}, {0x200E, 0x200F},     {0x2066, 0x2069},  // the direction of writing
    {0x2028, 0x202E},                                          // it too, and line ends
    {0xD800, 0xDFFF}, {0x110000, 0x1FFFFF},                    // what is no character
};

bool FitsTerminal(char32_t character) {
  return std::none_of(std::begin(kUnfit), std::end(kUnfit), [&](const Range& unfit) {
    return character >= unfit.first && character <= unfit.last;
  });
}

// Whether the bytes of a character are more than it needs: a terminal that takes bytes for
// characters sees others there.
bool IsTooLong(std::string_view bytes) {
  const auto first = static_cast<unsigned char>(bytes[0]);
  if (bytes.size() == 1) return false;
  const auto second = static_cast<unsigned char>(bytes[1]);
  return first < 0xC2 || first > 0xF4 || (first == 0xE0 && second < 0xA0) ||
         (first == 0xF0 && second < 0x90);
}

}  // namespace

std::string TerminalText(std::string_view text) {
  std::string fit;
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t start = position;
    const char32_t character = NextFolded(text, position);
    const std::string_view bytes = text.substr(start, position - start);
    fit += FitsTerminal(character) && !IsTooLong(bytes) ? bytes : "?";
  }
  return fit;
}

std::string TerminalLines(std::string_view text) {
  std::string fit;
  for (const char* separator = ""; !text.empty(); separator = "\n") {
    fit += separator + TerminalText(TakeLine(text));
  }
  return fit;
}

}  // namespace quillon
