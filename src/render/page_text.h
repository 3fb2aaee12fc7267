// Building page text: one call is one line of page.
#pragma once

#include <string>
#include <string_view>

#include "platform/files.h"

namespace quillon {

// One double quote, where a page needs it inside an event handler.
inline constexpr std::string_view QuoteChar = "\"";

// Appends pieces as they stand.
template <typename... Pieces>
void Append(std::string& page, const Pieces&... pieces) {
  (page.append(std::string_view(pieces)), ...);
}

// Appends pieces and the line end.
template <typename... Pieces>
void Line(std::string& page, const Pieces&... pieces) {
  Append(page, pieces..., kLineEnd);
}

}  // namespace quillon
