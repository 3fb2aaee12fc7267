// The text of a mail as HTML.
#pragma once

#include <string>
#include <string_view>

namespace quillon {

// A document with the lines of the text, in which addresses of the web can be clicked on.
std::string MailHtml(std::string_view text);

}  // namespace quillon
