// Escaped lines, with links.
#include "mail/mail_html.h"

#include "platform/text_lines.h"

namespace quillon {
namespace {

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

// The texts that are mailed have their addresses in lines of their own.
std::string HtmlLine(std::string_view line) {
  std::string text = Escaped(line);
  if (!line.starts_with("http://") && !line.starts_with("https://")) return text;
  return "<a href=\"" + text + "\">" + text + "</a>";
}

}  // namespace

std::string MailHtml(std::string_view text) {
  std::string html = "<!DOCTYPE html>\n<html>\n<body>\n";
  while (!text.empty()) {
    const std::size_t before = text.size();
    const std::string_view line = TakeLine(text);
    const bool hasEnd = line.size() + text.size() < before;
    html.append(HtmlLine(line)).append(hasEnd ? "<br>\n" : "\n");
  }
  return html + "</body>\n</html>\n";
}

}  // namespace quillon
