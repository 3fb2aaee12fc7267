// The fixed matter of the site below \WebReports\: words, help text and icon are read
// at the start of the service, the stylesheet at each request. A missing file is no
// failure; one that cannot be read is reported and keeps what was there.
#pragma once

#include <string>

#include "service/diagnostics.h"
#include "service/language_words.h"

namespace quillon {

// Fills the words from \WebReports\Language.ini: lines of number, tabs, label, tabs and
// text. All words are "n/a" before. A number outside 1 to 100 ends the reading at its
// line and is reported; the words read so far stay.
void ReadLangWord(const Diagnostics& diagnostics, LangWords& words);

// Reads \WebReports\HelpText.txt.
void ReadHelpText(const Diagnostics& diagnostics, LangWords& words);

// Reads the bytes of \WebReports\Favicon.ico.
void ReadFavIcon(const Diagnostics& diagnostics, std::string& favIconData);

// Reads \WebReports\qws.css into the text, anew for each request, so that a new theme
// takes effect at once.
void ReadCssText(const Diagnostics& diagnostics, std::string& text);

}  // namespace quillon
