// What names standard input and output in place of a file.
#pragma once

#include <string_view>

namespace quillon {

inline constexpr std::string_view kStandardStream = "-";

}  // namespace quillon
