// Whether the tests run with the sanitizers, which change what some of them look at.
#pragma once

namespace quillon {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif

}  // namespace quillon
