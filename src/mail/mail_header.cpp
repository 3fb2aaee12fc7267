// Encoded words. GMime, which writes the rest of a mail, makes one word of a text without blanks,
// however long; they may have 75 characters.
#include "mail/mail_header.h"

#include <glib.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "platform/text_lines.h"

namespace quillon {
namespace {

// 52 characters in base64, 12 around them, and the longest name of a field in front: a line with an
// encoded word may have 76.
constexpr std::size_t kBytesOfAWord = 39;

struct Free {
  void operator()(gchar* text) const { g_free(text); }
};
using GText = std::unique_ptr<gchar, Free>;

bool IsPlain(std::string_view text) {
  const bool isAscii =
      std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
  return isAscii && text.find("=?") == std::string_view::npos;
}

// As much of the text as fits into a word, and ends with a whole character.
std::size_t LengthOfWord(std::string_view text) {
  if (text.size() <= kBytesOfAWord) return text.size();
  std::size_t length = kBytesOfAWord;
  while ((text[length] & 0xC0) == 0x80) --length;
  return length;
}

std::string Word(std::string_view text) {
  const GText encoded(g_base64_encode(reinterpret_cast<const guchar*>(text.data()), text.size()));
  return std::string("=?UTF-8?B?") + encoded.get() + "?=";
}

}  // namespace

std::string HeaderText(const std::string& text) {
  const std::string line = OneLine(text);
  const GText valid(g_utf8_make_valid(line.data(), static_cast<gssize>(line.size())));
  std::string_view rest = valid.get();
  if (IsPlain(rest)) return std::string(rest);
  std::string words;
  while (!rest.empty()) {
    const std::size_t length = LengthOfWord(rest);
    words.append(words.empty() ? "" : " ").append(Word(rest.substr(0, length)));
    rest.remove_prefix(length);
  }
  return words;
}

std::string FieldOfWords(const std::string& name, const std::string& words) {
  std::string field = name + ": ";
  for (const char c : words) field += c == ' ' ? "\r\n " : std::string(1, c);
  return field + "\r\n";
}

}  // namespace quillon
