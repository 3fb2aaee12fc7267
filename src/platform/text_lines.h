// Lines: reading a text line by line, and making one line of a text.
#pragma once

#include <string>
#include <string_view>

namespace quillon {

// The first line of `rest`, which loses it and its line end: CR, LF or CR LF.
std::string_view TakeLine(std::string_view& rest);

// The text without the blanks around it.
std::string_view TrimmedView(std::string_view text);

// The text with a blank for each control character: nothing in it can end a line.
std::string OneLine(std::string text);

}  // namespace quillon
