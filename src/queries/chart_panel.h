// What all 45-day reports do with their panels: words, missing days, axis tops, bars.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "queries/query_context.h"
#include "queries/records/panel_words.h"

namespace quillon {

// The panels of one record, in the order of its steps.
using Panels = std::span<Panel* const>;

// The height of a bar without a figure, and until the axis top is known.
inline constexpr std::string_view kSmallestBar = "1";

// Sets the three words, and starts the axis top at 2, so that a chart without figures has one.
void BeginPanel(const QueryContext& context, const PanelWords& words, Panel& panel);

// A day without data: dashes and the smallest bars.
void SetMissing(Panel& panel, int position);

// The smallest bars, which a day with data has until the axis tops are known.
void SetSmallestBars(Panel& panel, int position);

// Raises the axis tops to larger figures of that day: the text of a figure as it is, though what is
// compared are whole numbers. Then waits 10 ms, in which events run: no report blocks the site.
void RaiseAxisTopsAndWait(const QueryContext& context, Panels panels, int position);
// The same of all days.
void RaiseAxisTopsAndWait(const QueryContext& context, Panels panels);

// The axis tops as round numbers.
void RoundAxisTops(const QueryContext& context, Panels panels);

// The height of a figure's bar: whole percent of the axis top, "1" for 0 and for what is no number.
// OverflowFailure where the axis top is 0, as a failed rounding leaves it, or far too small.
std::string BarHeight(const std::string& figure, const std::string& axisTop);

// Both bars of a day; of all days, panel by panel within a day.
void SetBars(Panel& panel, int position);
void SetBars(Panels panels);

// The labels of the axes, in place of their tops: volumes and sizes, or counts.
void LabelVolumeAxes(const QueryContext& context, Panels panels);
void LabelCountAxes(const QueryContext& context, Panels panels);

}  // namespace quillon
