// status: what the service does.
#pragma once

#include <string>

#include "quillonctl/output.h"

namespace quillon {

// Prints what the service does, or that it does not run, and what the databases tell of it. 1 where
// it does not run.
int ShowStatus(const std::string& directory, OutputForm form);

}  // namespace quillon
