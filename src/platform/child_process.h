// Running another program to its end.
#pragma once

#include <string>
#include <vector>

namespace quillon {

// Runs the program, which is looked for on the PATH, with its arguments as they are: no shell
// reads them. What it says goes where the caller's own words go, but its standard output goes
// nowhere. Failure where it cannot be run or does not end with the status 0.
void RunProgram(const std::vector<std::string>& programAndArguments);

}  // namespace quillon
