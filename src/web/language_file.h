// The format of Language.ini: lines of number, tabs, label, tabs and text.
#pragma once

#include <string>
#include <string_view>

#include "service/language_words.h"

namespace quillon {

// Stores the words of the file's text. Raises IndexFailure at the line of a number
// outside 1 to 100; the words in front of it are stored then.
void ParseLanguageFile(std::string_view text, LangWords& words);

}  // namespace quillon
