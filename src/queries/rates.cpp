// Rates of volumes and counts.
#include "queries/rates.h"

#include "platform/number_text.h"

namespace quillon {
namespace {

constexpr int kMegabit = 41;
constexpr int kKilobit = 44;
constexpr int kGigabit = 45;

// "(<value> <unit>)", the value as a whole number.
std::string Bracket(double value, std::string_view pattern, const std::string& unit) {
  return "(" + Trimmed(DigitPattern(RoundHalfEven(value), pattern)) + " " + unit + ")";
}

}  // namespace

// 10,800 megabytes a day are one megabit a second.
std::string VolumeRate(const QueryContext& context, double megabytes, double smallest,
                       std::string_view pattern) {
  constexpr std::string_view kGap = "  ";
  constexpr double kSecondsPerDay = 86400;
  constexpr double kGigabitVolume = 108'000'000;
  constexpr double kMegabitVolume = 10'800;
  constexpr double kLeastVolume = 10;
  const auto rate = [&](double value, int unit) {
    return std::string(kGap) + Bracket(value, pattern, context.LangWord(unit));
  };
  if (megabytes > kGigabitVolume) return rate(megabytes / 10'800'000, kGigabit);
  if (megabytes > kMegabitVolume) return rate(megabytes * 8 / kSecondsPerDay, kMegabit);
  if (smallest > kLeastVolume) return rate(megabytes * 8 * 1000 / kSecondsPerDay, kKilobit);
  return "";
}

std::string CountText(const QueryContext& context, const std::string& count,
                      const CountUnits& units, std::string_view gap) {
  std::string text =
      Trimmed(DigitPattern(count, "### ### ##0")) + " " + context.LangWord(units.unit);
  const auto number = ParseNumber(count);
  if (!number) return text;
  for (const CountRate& rate : units.rates) {
    if (*number <= rate.perUnit) continue;
    text.append(gap).append(
        Bracket(*number / rate.perUnit, rate.pattern, context.LangWord(rate.unit)));
    break;
  }
  return text;
}

}  // namespace quillon
