// A variable that tells what is on the stack.
#pragma once

#include <utility>

namespace quillon {

// Gives the variable a value while it lives and then the one before, however its scope is left.
template <typename T>
class ScopedValue {
 public:
  ScopedValue(T& variable, T value)
      : variable_(variable), before_(std::exchange(variable, std::move(value))) {}
  ~ScopedValue() { variable_ = std::move(before_); }
  ScopedValue(const ScopedValue&) = delete;
  ScopedValue& operator=(const ScopedValue&) = delete;

 private:
  T& variable_;
  T before_;
};

using ScopedFlag = ScopedValue<bool>;

}  // namespace quillon
