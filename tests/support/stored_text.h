// Texts that are stored with the tests, and the changes with which a test expects them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillon {

// A piece of a page or of the stylesheet, "mail_head.html".
std::string StoredPiece(const std::string& name);

// One table row of a piece that is made of rows, from 1.
std::string StoredRow(const std::string& piece, int number);

// The body of a whole page, "port_alone.html".
std::string StoredPage(const std::string& name);

// Where a piece stands in a text. Throws where it does not: that is a mistake of the test.
std::size_t PlaceOf(const std::string& text, std::string_view piece);

// All places of `from` replaced; it is there.
std::string Replaced(std::string text, std::string_view from, std::string_view to);

}  // namespace quillon
