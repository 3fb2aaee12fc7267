// A password, which nobody else on the machine may see: not on the screen, not in a command line.
#pragma once

#include <string>

namespace quillon {

// Asks for it on the terminal, without an echo; where standard input is none, takes its first line.
// The terminal has its echo again afterwards, also where a signal ends the program meanwhile. Fails
// where there is no line, or one that is longer than any password.
std::string AskPassword();

}  // namespace quillon
