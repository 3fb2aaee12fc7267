// What a piece of code writes to standard error.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace quillon {

template <typename Code>
std::string StandardErrorOf(const Code& code) {
  testing::internal::CaptureStderr();
  try {
    code();
  } catch (...) {
    testing::internal::GetCapturedStderr();
    throw;
  }
  return testing::internal::GetCapturedStderr();
}

// True of one line with something on it, and its end.
inline bool IsOneLine(const std::string& text) {
  return text.size() > 1 && text.back() == '\n' && std::count(text.begin(), text.end(), '\n') == 1;
}

}  // namespace quillon
