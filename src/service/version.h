// The version that pages, events and the programs show.
#pragma once

#include <string_view>

namespace quillon {

inline constexpr std::string_view kVersion = "9.05";

}  // namespace quillon
