// What an operator is told of operations that have gone well, on the command line and in the form.
#pragma once

#include <string>

namespace quillon {

inline constexpr const char* kSavedText =
    "Saved; the service takes debug mode and date format within the hour, the rest at its next "
    "start";

inline std::string ThemeText(const std::string& theme) {
  return "The site is in the theme " + theme + " from its next page on";
}

}  // namespace quillon
