// How the tools end: as the service does, or because they were called wrongly.
#pragma once

#include "service/exit_status.h"

namespace quillon {

inline constexpr int kExitWrongUsage = 2;

}  // namespace quillon
