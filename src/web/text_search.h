// Substring work on requests: case-sensitive, positions from 1, 0 for not found, as the
// rules of the URLs are written. There is no parser.
#pragma once

#include <string>
#include <string_view>

namespace quillon {

// Position of `wanted` in `text` from position `start` on; 0 where it is not.
long Position(std::string_view text, std::string_view wanted, long start = 1);

bool Holds(std::string_view text, std::string_view wanted);

// `length` characters from `position` on, as many as there are. TextFailure for a
// negative length and a position below 1.
std::string_view Middle(std::string_view text, long position, long length);

}  // namespace quillon
