// The line goes out at once, whatever becomes of the process.
#include "platform/standard_error.h"

#include <iostream>
#include <string>

#include "platform/terminal_text.h"
#include "platform/text_lines.h"

namespace quillon {

void TellStandardError(std::string_view line) {
  std::cerr << TerminalText(OneLine(std::string(line))) << std::endl;
}

}  // namespace quillon
