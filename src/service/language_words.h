// The words of the site and the text of its help popup, as the language file and the
// help file of the installation give them (web/language_file.h reads them).
#pragma once

#include <string>

#include "platform/one_based.h"

namespace quillon {

struct LangWords {
  // What a number shows that the language file lacks.
  static constexpr const char* kMissing = "n/a";

  LangWords() { LangWord.Fill(kMissing); }

  OneBased<std::string, 100> LangWord;  // words by number, bytes of the pages' charset
  std::string HelpText;                 // ready-made HTML, empty until it is read
};

}  // namespace quillon
