// Numbers that look like chance and are the same in every run and on every machine.
#pragma once

#include <cstdint>
#include <initializer_list>

namespace quillon {

class DemoRandom {
 public:
  // The same keys give the same numbers, so a figure can be had for any port and day without
  // those before it.
  explicit DemoRandom(std::initializer_list<std::int64_t> keys);

  // From 0 up to, and without, 1.
  double Unit();

  // Both ends included.
  double Between(double low, double high);
  int Whole(int low, int high);

  // True in that share of all calls.
  bool Chance(double share);

 private:
  std::uint64_t Next();

  std::uint64_t state_ = 0;
};

}  // namespace quillon
