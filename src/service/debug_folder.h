// Cleaning the debug folder.
#pragma once

#include "service/diagnostics.h"

namespace quillon {

// Deletes the debug files of \Debug\, at each start of the service and at each change of day.
// The event file stays.
void ClearDebugDir(const Diagnostics& diagnostics);

// Ages the event file, at each change of day: lines of fewer than 60 days ago stay. The lines
// go through AppEventWeb.bak. One that begins with no date ends the run, reported; what follows
// it stays in that file, and while it is there the next run fails at its renaming.
void ClearDebugDir_AEW(const Diagnostics& diagnostics);

}  // namespace quillon
