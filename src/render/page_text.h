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

// A link over which the popup of that id is open. The attribute href stands twice, as ever.
inline std::string PopupLink(std::string_view popupId, std::string_view text) {
  std::string link;
  Append(link, "<a href=# onMouseOver=", QuoteChar, "popupShow('", popupId, "')", QuoteChar,
         " href=# onMouseOut=", QuoteChar, "popupHide('", popupId, "')", QuoteChar, ">", text,
         "</a>");
  return link;
}

}  // namespace quillon
