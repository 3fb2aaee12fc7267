// UTF-8 texts without regard to case, for all letters and not only those of ASCII; and the upper
// case of a first letter.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillon {

// The characters of a text in lower case. A byte that begins no character stands for
// itself, so nothing is ever skipped.
std::u32string Folded(std::string_view text);

inline bool IsAscii(unsigned char byte) {
  return byte < 0x80;
}

inline char32_t FoldedAscii(unsigned char byte) {
  return byte >= 'A' && byte <= 'Z' ? byte + char32_t{'a' - 'A'} : char32_t{byte};
}

// The character of a text at `position`, in lower case; it is moved over.
char32_t NextFoldedBeyondAscii(std::string_view text, std::size_t& position);
inline char32_t NextFolded(std::string_view text, std::size_t& position) {
  const auto byte = static_cast<unsigned char>(text[position]);
  if (!IsAscii(byte)) return NextFoldedBeyondAscii(text, position);
  ++position;
  return FoldedAscii(byte);
}

// Texts compared by their folded characters: below 0, 0 or above 0.
int CompareFolded(std::string_view left, std::string_view right);

// The text with its first character in upper case.
std::string Capitalized(std::string_view text);

// Loads the table of letters, so that no later call has to.
void LoadFolding();

}  // namespace quillon
