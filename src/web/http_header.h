// The head of every response.
#pragma once

#include <string>
#include <string_view>

namespace quillon {

// Prefixes the five head lines and an empty line to the text, which becomes the whole
// response: status 200 always, Content-Length in bytes.
void HTTP_Header(std::string_view contentType, std::string& text);

}  // namespace quillon
