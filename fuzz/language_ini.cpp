// Language.ini: whatever stands there, a word is one line without blanks around it.
#include "platform/failure.h"
#include "platform/text_lines.h"
#include "targets.h"
#include "web/language_file.h"

namespace quillon::fuzz {

void FuzzLanguageIni(std::string_view bytes) {
  LangWords words;
  try {
    ParseLanguageFile(bytes, words);
  } catch (const Failure&) {
    // Of a number that no word has: what stands in front of it counts.
  }
  for (int number = 1; number <= words.LangWord.kSize; ++number) {
    const std::string& word = words.LangWord[number];
    Require(word.find_first_of("\r\n") == std::string::npos, "a word of two lines");
    Require(TrimmedView(word) == word, "a word with blanks around it");
  }
}

}  // namespace quillon::fuzz
