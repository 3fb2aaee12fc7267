// Texts of other programs, on their way to a terminal.
#pragma once

#include <string>
#include <string_view>

namespace quillon {

// The text as a terminal may get it: with "?" for each character that could move its cursor, change
// its colours or the order of what it shows, and for each byte that is no UTF-8.
std::string TerminalText(std::string_view text);

// The same of each line of the text, with LF between them and none at the end.
std::string TerminalLines(std::string_view text);

}  // namespace quillon
