// Texts in the header of a mail.
#pragma once

#include <string>

namespace quillon {

// UTF-8 text as the header has it: in encoded words with a blank between them where it is not plain
// ASCII, else as it is.
// Control characters become blanks and what is no UTF-8 a replacement character, so that nothing in
// it can end a line or be taken for an encoded word.
std::string HeaderText(const std::string& text);

// A field of the header, with its line ends: each word on a line of its own.
std::string FieldOfWords(const std::string& name, const std::string& words);

}  // namespace quillon
