// Letters by the C library's table of letters.
#include "platform/text_folding.h"

#include <clocale>
#include <cwctype>

namespace quillon {
namespace {

// Letters are folded by the table of the C.UTF-8 locale, which is part of every Debian.
locale_t FoldingLocale() {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

// What a byte that begins no character becomes: a value that no character has.
constexpr char32_t kLoneByte = 0xDC00;

// The next character of a UTF-8 text, or a lone byte, which is moved over.
char32_t NextCharacter(std::string_view text, std::size_t& position) {
  const auto first = static_cast<unsigned char>(text[position++]);
  if (first < 0x80) return first;
  const std::size_t following = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC0 ? 1 : 0;
  if (following == 0 || position + following > text.size()) return kLoneByte + first;
  char32_t character = first & (0x3Fu >> following);
  for (std::size_t i = 0; i < following; ++i) {
    const auto next = static_cast<unsigned char>(text[position + i]);
    if ((next & 0xC0) != 0x80) return kLoneByte + first;
    character = (character << 6) | (next & 0x3Fu);
  }
  position += following;
  return character;
}

char32_t Fold(char32_t character) {
  const locale_t locale = FoldingLocale();
  if (locale == nullptr) return character;  // no locale, no letters beyond ASCII
  return static_cast<char32_t>(towlower_l(static_cast<wint_t>(character), locale));
}

char32_t Upper(char32_t character) {
  if (character < 0x80) {
    return character >= U'a' && character <= U'z' ? character - (U'a' - U'A') : character;
  }
  const locale_t locale = FoldingLocale();
  if (locale == nullptr) return character;
  return static_cast<char32_t>(towupper_l(static_cast<wint_t>(character), locale));
}

// The bytes of a character.
std::string Utf8(char32_t character) {
  if (character < 0x80) return {static_cast<char>(character)};
  int following = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
  const char32_t mark = 0xFF00u >> (following + 1) & 0xFFu;  // as many ones as there are bytes
  std::string bytes = {static_cast<char>(mark | character >> 6 * following)};
  while (following-- > 0) {
    bytes += static_cast<char>(0x80u | (character >> 6 * following & 0x3Fu));
  }
  return bytes;
}

}  // namespace

char32_t NextFoldedBeyondAscii(std::string_view text, std::size_t& position) {
  return Fold(NextCharacter(text, position));
}

std::u32string Folded(std::string_view text) {
  std::u32string folded;
  folded.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    folded += NextFolded(text, position);
  }
  return folded;
}

int CompareFolded(std::string_view left, std::string_view right) {
  std::size_t l = 0;
  std::size_t r = 0;
  while (l < left.size() && r < right.size()) {
    const char32_t a = NextFolded(left, l);
    const char32_t b = NextFolded(right, r);
    if (a != b) return a < b ? -1 : 1;
  }
  if (l == left.size() && r == right.size()) return 0;
  return l == left.size() ? -1 : 1;
}

std::string Capitalized(std::string_view text) {
  if (text.empty()) return "";
  std::size_t rest = 0;
  const char32_t first = NextCharacter(text, rest);
  const char32_t upper = Upper(first);
  if (upper == first) return std::string(text);
  return Utf8(upper).append(text.substr(rest));
}

void LoadFolding() {
  FoldingLocale();
}

}  // namespace quillon
