// Which characters a terminal gets.
#include "platform/terminal_text.h"

#include <algorithm>
#include <iterator>

#include "platform/text_folding.h"

namespace quillon {
namespace {

// The first and the last of the characters that a terminal, or whoever reads it, would take for
// more than a letter; the last row is what the table of letters gives for a byte that is no UTF-8.
struct Range {
  char32_t first;
  char32_t last;
};

constexpr Range kUnfit[] = {
    {0x00, 0x1F},     {0x7F, 0x9F},                        // control characters
    {0x061C, 0x061C}, {0x200E, 0x200F}, {0x2066, 0x2069},  // the direction of writing
    {0x2028, 0x202E},                                      // it too, and line ends
    {0xDC00, 0xDCFF},
};

bool FitsTerminal(char32_t character) {
  return std::none_of(std::begin(kUnfit), std::end(kUnfit), [&](const Range& unfit) {
    return character >= unfit.first && character <= unfit.last;
  });
}

}  // namespace

std::string TerminalText(std::string_view text) {
  std::string fit;
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t start = position;
    const char32_t character = NextFolded(text, position);
    fit += FitsTerminal(character) ? text.substr(start, position - start) : "?";
  }
  return fit;
}

}  // namespace quillon
