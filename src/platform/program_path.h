// Where the running program lies.
#pragma once

#include <string>

namespace quillon {

// Directory of the executable, links resolved, without a slash at its end. FileFailure
// where the system does not tell.
std::string ProgramDirectory();

}  // namespace quillon
