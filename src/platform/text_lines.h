// Reading a text line by line.
#pragma once

#include <string_view>

namespace quillon {

// The first line of `rest`, which loses it and its line end: CR, LF or CR LF.
std::string_view TakeLine(std::string_view& rest);

}  // namespace quillon
