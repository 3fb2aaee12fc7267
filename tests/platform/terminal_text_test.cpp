// What a terminal gets of a text.
#include "platform/terminal_text.h"

#include <gtest/gtest.h>

#include <string>

namespace quillon {
namespace {

TEST(TerminalText, HasNothingThatATerminalWouldObey) {
  struct Case {
    std::string name;
    std::string shown;
  };
  const Case cases[] = {
      {"Gi0/1", "Gi0/1"},
      {"\u00C5ngstr\u00F6m \u041C\u043E\u0441\u043A\u0432\u0430 \u4E2D \U0001F600",
       "\u00C5ngstr\u00F6m \u041C\u043E\u0441\u043A\u0432\u0430 \u4E2D \U0001F600"},
      {"\x1B[2Jgone", "?[2Jgone"},
      {"a\nb\tc\rd", "a?b?c?d"},
      {std::string("a\0b", 3), "a?b"},
      {"a\x7F", "a?"},
      {"a\u009B31m", "a?31m"},  // the one-character form of ESC [
      {"a\x9B"
       "31m",
       "a?31m"},                                            // the same where a terminal reads bytes
      {"a\xC0\x9B", "a?"},                                  // ESC written with too many bytes
      {"\xC1\x81 \xE0\x80\xAF \xF0\x8F\xBF\xBF", "? ? ?"},  // the same of others
      {"\u202Etxt.exe", "?txt.exe"},                        // writes backwards
      {"\u2066x\u2069 \u200F", "?x? ?"},
      {"\u2028", "?"},
      {"\u061C", "?"},
      {"Z\xFCrich", "Z?rich"},
      {"cut \xE4\xB8", "cut ??"},
      {"\xED\xA0\x80 \xED\xBF\xBF", "? ?"},  // halves of characters
      {"\xF8\x88\x80\x80\x80", "??"},
      {"\xF4\x90\x80\x80", "?"},  // behind the last character
  };
  for (const Case& row : cases) {
    EXPECT_EQ(TerminalText(row.name), row.shown);
  }
}

TEST(TerminalText, KeepsTheFirstAndTheLastCharacterOfEachLength) {
  for (const std::string character :
       {" ", "~", "\u00A0", "\u07FF", "\u0800", "\u0905", "\uFFFD", "\U00010000", "\U0010FFFF"}) {
    EXPECT_EQ(TerminalText(character), character);
  }
}

TEST(TerminalText, KeepsTheLinesOfATextThatHasSome) {
  EXPECT_EQ(TerminalLines("a\x1B\n\nb\r\n"), "a?\n\nb");
  EXPECT_EQ(TerminalLines("no \t end"), "no ? end");
  EXPECT_EQ(TerminalLines(""), "");
}

}  // namespace
}  // namespace quillon
