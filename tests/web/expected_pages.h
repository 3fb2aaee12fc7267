// What the web server is expected to send: the head is written out here, the frame of a
// page comes from the procedures that have tests of their own.
#pragma once

#include <string>
#include <string_view>

#include "render/page_frame.h"

namespace quillon {

inline std::string Response(std::string_view contentType, std::string_view body) {
  std::string text = "HTTP/1.0 200 OK\r\n";
  text.append("Content-Type: ").append(contentType).append("\r\n");
  text.append("Server: Hollin-QWS/1.0\r\n");
  text.append("Connection: keep-alive\r\n");
  text.append("Content-Length: ").append(std::to_string(body.size())).append("\r\n\r\n");
  return text.append(body);
}

// The answer to every request that no report knows.
inline std::string DefaultResponse(const RenderContext& render) {
  std::string page;
  TopHeader_Begin(render, kReportPageWidth, "none", page);
  TopHeader_End(render, page);
  Page_End(render, page);
  return Response("text/html", page);
}

// The answer that is made of a stored page.
inline std::string ClosedResponse(const RenderContext& render, std::string page) {
  Page_Footer(render, page);
  Page_End(render, page);
  return Response("text/html", page);
}

}  // namespace quillon
