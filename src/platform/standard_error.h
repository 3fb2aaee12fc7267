// Lines on standard error: for what no event tells, since it is not the service's own failure.
#pragma once

#include <string_view>

namespace quillon {

// One line, whatever stands in the text, and nothing that a terminal would take for a command.
void TellStandardError(std::string_view line);

}  // namespace quillon
