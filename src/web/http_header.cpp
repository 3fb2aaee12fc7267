// The response head.
#include "web/http_header.h"

#include <fmt/format.h>

namespace quillon {

void HTTP_Header(std::string_view contentType, std::string& text) {
  const std::string head = fmt::format(
      "HTTP/1.0 200 OK\r\n"
      "Content-Type: {}\r\n"
      "Server: Hollin-QWS/1.0\r\n"
      "Connection: keep-alive\r\n"
      "Content-Length: {}\r\n"
      "\r\n",
      contentType, text.size());
  text.insert(0, head);
}

}  // namespace quillon
