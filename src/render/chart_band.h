// The header band of all 45-day charts.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "render/band_block.h"

namespace quillon {

// Title and legend of a chart, as its caller chooses them.
struct ChartWords {
  std::string_view title;
  std::string_view left;
  std::string_view right;
};

// Appends the band: what the chart is of, its title, and the legend in the colours of its bars. The
// chart follows directly, without a break.
void ChartBand(std::initializer_list<BandRow> rows, const ChartWords& words, std::string& page);

}  // namespace quillon
