// The module under which the report mails report their failures.
#pragma once

#include <string_view>

namespace quillon {

inline constexpr std::string_view kMailModule = "modMail";

}  // namespace quillon
