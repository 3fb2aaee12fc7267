// How the tools end.
#pragma once

namespace quillon {

inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongUsage = 2;

}  // namespace quillon
