// The charset of the pages against the UTF-8 of the databases. Report data is
// converted in two places only: where a query puts a value into a record, and where
// the text of a request goes into a select.
#pragma once

#include <string>
#include <string_view>

namespace quillon {

// Database text as bytes of the pages' charset; a character that the charset lacks
// becomes "?". A charset that is empty, "UTF-8" or unknown converts nothing.
std::string PageText(std::string_view utf8, const std::string& charSet);

// A request's bytes as database text; a byte that is no text of the charset becomes "?".
std::string DatabaseText(std::string_view bytes, const std::string& charSet);

// Loads the conversions of a charset, which the C library keeps in files of its own: after
// this no page has to open one.
void LoadCharset(const std::string& charSet);

}  // namespace quillon
