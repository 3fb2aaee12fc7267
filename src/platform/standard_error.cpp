// The line goes out at once, whatever becomes of the process.
#include "platform/standard_error.h"

#include <cstdio>
#include <string>

#include "platform/terminal_text.h"
#include "platform/text_lines.h"

namespace quillon {

void TellStandardError(std::string_view line) {
  const std::string text = TerminalText(OneLine(std::string(line))) + '\n';
  std::fwrite(text.data(), 1, text.size(), stderr);
}

}  // namespace quillon
