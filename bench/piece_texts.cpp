// Text pieces that run many times a page: volumes, digit patterns, and the match that a
// search makes for each row of a table.
#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/like_pattern.h"
#include "platform/number_text.h"
#include "render/value_scaling.h"
#include "support/reporting.h"

namespace {

using namespace quillon;

void ConvertVolume(benchmark::State& state, bool longForm) {
  SystemClock clock;
  const Settings settings;
  const Reporting reporting(settings, clock);
  for (auto _ : state) {
    std::string value = "1234567";
    ConvHCBytes(reporting.diagnostics(), value, longForm);
    benchmark::DoNotOptimize(value);
  }
}

void ApplyPattern(benchmark::State& state, std::string_view number, std::string_view pattern) {
  for (auto _ : state) benchmark::DoNotOptimize(DigitPattern(number, pattern));
}

void Match(benchmark::State& state, std::string_view pattern) {
  constexpr std::string_view kText = "GigabitEthernet0/24, Room 3.117, socket 2";
  for (auto _ : state) benchmark::DoNotOptimize(LikePattern(pattern).Matches(kText));
}

BENCHMARK_CAPTURE(ConvertVolume, short_form, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ConvertVolume, long_form, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ApplyPattern, grouped, "2000000", "### ### ##0")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ApplyPattern, plain, "1234.5", "0")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Match, percents, "%room%socket%")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Match, list, "gigabit%[0-9]/2[!0-3]%")->Unit(benchmark::kMicrosecond);

}  // namespace
