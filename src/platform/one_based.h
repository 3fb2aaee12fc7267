// Arrays that count from 1, as the report records do: slots 1 to 20, days 1 to 45, words 1 to 100,
// and the rows of a table, whose number may change. A position outside raises IndexFailure, so that
// a bad connection id or word number ends at the error exit of whoever used it.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "platform/failure.h"

namespace quillon {

// Where the position, 1 to `size`, is in an array that counts from 0.
inline std::size_t CheckedPosition(long position, int size) {
  if (position < 1 || position > size) {
    throw IndexFailure("position " + std::to_string(position) + " is outside 1 to " +
                       std::to_string(size));
  }
  return static_cast<std::size_t>(position - 1);
}

// An array of positions 1 to N.
template <typename T, std::size_t N>
class OneBased {
 public:
  static constexpr int kSize = static_cast<int>(N);

  T& operator[](long position) { return items_[CheckedPosition(position, kSize)]; }
  const T& operator[](long position) const { return items_[CheckedPosition(position, kSize)]; }

  auto begin() { return items_.begin(); }
  auto end() { return items_.end(); }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

  void Fill(const T& value) { items_.fill(value); }

 private:
  std::array<T, N> items_{};
};

template <typename T, std::size_t N>
using Rows = OneBased<T, N>;  // rows of a fixed number

template <typename T>
using Days = OneBased<T, 45>;  // days of a chart: 1 is the oldest, 45 is yesterday

template <typename T>
using Slots = OneBased<T, 20>;  // one entry for each connection id

// The rows of a table: the ten of a page, until a caller wants another number of them. A query
// fills as many as there are.
template <typename T>
class TableRows {
 public:
  static constexpr int kPageRows = 10;

  int size() const { return static_cast<int>(rows_.size()); }
  // The rows that stay keep their values, those that come have none. References to rows end.
  void SetSize(int rows) { rows_.resize(static_cast<std::size_t>(rows)); }

  T& operator[](long position) { return rows_[CheckedPosition(position, size())]; }
  const T& operator[](long position) const { return rows_[CheckedPosition(position, size())]; }

  auto begin() { return rows_.begin(); }
  auto end() { return rows_.end(); }
  auto begin() const { return rows_.begin(); }
  auto end() const { return rows_.end(); }

 private:
  std::vector<T> rows_ = std::vector<T>(kPageRows);
};

}  // namespace quillon
