// Findings as one text.
#include "quillondb/csv/findings.h"

#include <fmt/format.h>

#include "platform/failure.h"
#include "platform/terminal_text.h"

namespace quillon {

Findings::Findings(std::string_view subject) : subject_(subject) {}

void Findings::Add(std::string_view place, std::string_view what) {
  if (isFull()) return;
  lines_.push_back(TerminalText(fmt::format("{}, {}: {}", subject_, place, what)));
  if (isFull()) lines_.back() = "... and more";
}

void Findings::Refuse(std::string_view headline) const {
  if (empty()) return;
  std::string text = TerminalText(headline);
  for (const std::string& line : lines_) text += "\n" + line;
  throw ConversionFailure(text);
}

}  // namespace quillon
