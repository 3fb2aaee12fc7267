// Fixed arrays that count from 1, as the report records do: slots 1 to 20, table
// rows 1 to 10, days 1 to 45, words 1 to 100.
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "platform/failure.h"

namespace quillon {

// An array of positions 1 to N. A position outside raises IndexFailure, so that a
// bad connection id or word number ends at the error exit of whoever used it.
template <typename T, std::size_t N>
class OneBased {
 public:
  static constexpr int kSize = static_cast<int>(N);

  T& operator[](long position) { return items_[Checked(position)]; }
  const T& operator[](long position) const { return items_[Checked(position)]; }

  auto begin() { return items_.begin(); }
  auto end() { return items_.end(); }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

  void Fill(const T& value) { items_.fill(value); }

 private:
  static std::size_t Checked(long position) {
    if (position < 1 || position > kSize) {
      throw IndexFailure("position " + std::to_string(position) + " is outside 1 to " +
                         std::to_string(kSize));
    }
    return static_cast<std::size_t>(position - 1);
  }

  std::array<T, N> items_{};
};

template <typename T, std::size_t N>
using Rows = OneBased<T, N>;  // rows of a table

template <typename T>
using Days = OneBased<T, 45>;  // days of a chart: 1 is the oldest, 45 is yesterday

template <typename T>
using Slots = OneBased<T, 20>;  // one entry for each connection id

}  // namespace quillon
