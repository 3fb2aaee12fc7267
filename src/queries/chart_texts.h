// The figures of a chart as texts for display. Only numbers change: "-" and other texts stay.
#pragma once

#include <string>
#include <string_view>

#include "queries/chart_panel.h"
#include "queries/rates.h"

namespace quillon {

// A day's volume in megabytes, with its mean rate by `ratePattern`.
void ShowVolume(const QueryContext& context, std::string_view ratePattern, std::string& figure);

// A count of a day or a minute, with its rate on a line of its own.
void ShowCount(const QueryContext& context, const CountUnits& units, std::string& figure);

// The sizes of all days, and the used share of each whole one, taken before they become texts.
void ShowStorages(const QueryContext& context, Panels panels);

}  // namespace quillon
