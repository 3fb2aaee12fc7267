// SplitMix64: small, quick, and spelt out here because the engines' distributions of the
// standard library differ from one library to the next.
#include "quillondb/demo/random.h"

namespace quillon {

DemoRandom::DemoRandom(std::initializer_list<std::int64_t> keys) {
  for (const std::int64_t key : keys) {
    state_ ^= static_cast<std::uint64_t>(key);
    state_ = Next();
  }
}

std::uint64_t DemoRandom::Next() {
  state_ += 0x9E3779B97F4A7C15;
  std::uint64_t mixed = state_;
  mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9;
  mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
  return mixed ^ (mixed >> 31);
}

double DemoRandom::Unit() {
  constexpr double kStep = 1.0 / 9007199254740992.0;  // 2 to the power of -53
  return static_cast<double>(Next() >> 11) * kStep;
}

double DemoRandom::Between(double low, double high) {
  return low + (high - low) * Unit();
}

int DemoRandom::Whole(int low, int high) {
  return low + static_cast<int>(Unit() * static_cast<double>(high - low + 1));
}

bool DemoRandom::Chance(double share) {
  return Unit() < share;
}

}  // namespace quillon
