// What the site may answer, whatever it was asked.
#pragma once

#include <cstddef>
#include <string_view>

namespace quillon::fuzz {

// How many of the bytes are whole answers, one behind the other: each has the length that its head
// tells, and a page ends as pages do. Raises std::logic_error where anything else stands there; the
// beginning of an answer may.
std::size_t WholeAnswers(std::string_view bytes);

}  // namespace quillon::fuzz
