// Reading the sequences of the mouse: "[<button;column;rowM" when a button goes down, and the same
// with "m" when it goes up; of terminals that know no other, "[M" and three bytes.
#include "quillonctl/form/mouse.h"

#include <slang.h>

#include <cstdio>
#include <string>
#include <string_view>

namespace quillon {
namespace {

constexpr int kPatience = 1;          // tenths of a second until the next byte of a sequence
constexpr std::size_t kLongest = 32;  // bytes of a sequence; whatever is longer is none
constexpr int kLeftButton = 0;
constexpr int kByteBase = 32;  // added to each number that is sent as a byte

// The next byte of the sequence, 0 where nothing comes.
char NextByte() {
  return SLang_input_pending(kPatience) > 0 ? static_cast<char>(SLang_getkey()) : '\0';
}

bool EndsSequence(char byte) {
  return byte >= '@' && byte <= '~';
}

// The sequence behind "[", with its last byte.
std::string ReadSequence() {
  std::string sequence;
  char byte = NextByte();
  while (byte != '\0' && sequence.size() < kLongest) {
    sequence += byte;
    if (EndsSequence(byte)) break;
    byte = NextByte();
  }
  return sequence;
}

std::optional<Place> ClickInDecimal(const std::string& sequence) {
  int button = 0;
  Place place;
  char end = '\0';
  const int found =
      std::sscanf(sequence.c_str(), "<%4d;%4d;%4d%c", &button, &place.column, &place.row, &end);
  if (found != 4 || end != 'M' || button != kLeftButton) return std::nullopt;
  return Place{place.column - 1, place.row - 1};
}

std::optional<Place> ClickInBytes() {
  const int button = static_cast<unsigned char>(NextByte()) - kByteBase;
  const int column = static_cast<unsigned char>(NextByte()) - kByteBase;
  const int row = static_cast<unsigned char>(NextByte()) - kByteBase;
  if (button != kLeftButton) return std::nullopt;
  return Place{column - 1, row - 1};
}

}  // namespace

EscapeInput ReadBehindEscape() {
  if (SLang_input_pending(0) <= 0) return {true, std::nullopt};
  // Of an escape with another byte (Alt and a key) nothing is left over.
  if (NextByte() != '[') return {};
  const std::string sequence = ReadSequence();
  return {false, sequence == "M" ? ClickInBytes() : ClickInDecimal(sequence)};
}

}  // namespace quillon
