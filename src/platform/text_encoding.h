// The charset of the pages against the UTF-8 of the databases. Report data is
// converted in two places only: where a query puts a value into a record, and where
// the text of a request goes into a select.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace quillon {

// Database text as bytes of the pages' charset; a character that the charset lacks
// becomes "?". A charset that is empty, "UTF-8" or unknown converts nothing.
std::string PageText(std::string_view utf8, const std::string& charSet);

// A request's bytes as database text; a byte that is no text of the charset becomes "?".
std::string DatabaseText(std::string_view bytes, const std::string& charSet);

// True for a charset that texts can be converted to.
bool IsKnownCharset(const std::string& charSet);

// The first `count` characters of a text in the charset. Those of UTF-8, which texts are in while
// no charset is known, have several bytes, and so have those of a charset with shift states.
std::string FirstCharacters(std::string_view text, std::size_t count, const std::string& charSet);

// Keeps the conversions of a charset loaded while it lives. The C library has them in files
// of its own: without this, each name beyond ASCII would open one, in the middle of a page.
class LoadedCharset {
 public:
  explicit LoadedCharset(const std::string& charSet);
  ~LoadedCharset();
  LoadedCharset(const LoadedCharset&) = delete;
  LoadedCharset& operator=(const LoadedCharset&) = delete;

 private:
  struct Conversions;
  std::unique_ptr<Conversions> conversions_;
};

}  // namespace quillon
