// The exit statuses of the process.
#pragma once

namespace quillon {

inline constexpr int kExitDone = 0;
inline constexpr int kExitFailed = 1;  // refused, or failed

}  // namespace quillon
