// Figures of a day with their rates in smaller units of time, as lists and charts show them.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "queries/query_context.h"

namespace quillon {

// Numbers of the unit words in the language file.
inline constexpr int kPerDay = 38;
inline constexpr int kPerMinute = 39;
inline constexpr int kPerSecond = 40;

// "  (<rate> <unit>)": the mean rate of a day's volume in megabytes, with the digits by `pattern`;
// nothing for a small volume. `smallest` is the volume that the last test, for being small, looks
// at: the volume itself, or the one of the other direction.
std::string VolumeRate(const QueryContext& context, double megabytes, double smallest,
                       std::string_view pattern);

// A rate that a count shows when it is above what one of the smaller unit makes.
struct CountRate {
  double perUnit;  // how many of the smaller unit of time make one of the count's
  int unit;        // word of the rate's unit
  std::string_view pattern;
};

// What a count is of.
struct CountUnits {
  int unit;                          // word of the count's own unit
  std::span<const CountRate> rates;  // the first one that applies is shown
};

// Packets a minute and errors a day of one port.
inline constexpr CountRate kPortPacketRates[] = {{60, kPerSecond, "### ##0"}};
inline constexpr CountRate kPortErrorRates[] = {{1440, kPerMinute, "### ##0"}};
inline constexpr CountUnits kPortPackets = {kPerMinute, kPortPacketRates};
inline constexpr CountUnits kPortErrors = {kPerDay, kPortErrorRates};

// "<count> <unit>", and behind `gap` the rate in brackets. The count is the text of a number;
// another text stands as it is before the unit, without a rate.
std::string CountText(const QueryContext& context, const std::string& count,
                      const CountUnits& units, std::string_view gap);

}  // namespace quillon
