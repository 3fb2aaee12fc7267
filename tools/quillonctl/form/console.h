// console: the operator's form on the terminal.
#pragma once

#include <string>

namespace quillon {

// Shows the form until the operator leaves it. 1, with the reason on standard error, where there is
// no terminal for it. However it ends, the terminal is as it was.
int RunConsole(const std::string& directory);

}  // namespace quillon
