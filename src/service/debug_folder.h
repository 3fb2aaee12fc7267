// Cleaning the debug folder.
#pragma once

#include "service/diagnostics.h"

namespace quillon {

// Deletes the debug files of \Debug\, at each start of the service. The event file stays.
void ClearDebugDir(const Diagnostics& diagnostics);

}  // namespace quillon
