// The demonstration: a plausible network in the databases of an installation.
#pragma once

#include <string>

#include "platform/date_time.h"

namespace quillon {

// Fills the created databases with 30 switches, 15 servers and their history, relative to the day
// of `now`, as they stand just before that day's import; the settings stay. The same day gives
// the same rows. Databases that hold statistics are refused, or emptied first with `replace`.
// Returns a line that tells what there is now. On a failure the file being written keeps what it
// held.
std::string FillDemo(const std::string& directory, bool replace, DateTime now);

}  // namespace quillon
