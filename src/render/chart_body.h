// The chart engine: a bar chart of 45 days out of nested tables, with a popup for each day. Prints
// the texts of a panel and computes nothing.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "render/render_context.h"

namespace quillon {

// A chart that a report can show, by the name that its caller gives.
template <typename Record>
struct ChartKind {
  std::string_view name;
  Panel Record::*panel;
  int popupBase;  // popup ids count from here: the charts of one page must not share any
};

// The parts of a chart that differ from report to report.
struct Chart {
  const Panel& panel;
  int popupBase;
  std::optional<std::string_view> numWord;  // legend of the number of storages, where it is shown
  // The day at a position; asked for when its line comes.
  std::function<DateTime(int position)> dateOf;
};

// Appends the chart: the axis with its labels, two bars a day, the row of day numbers.
void ChartBody(const RenderContext& context, const Chart& chart, std::string& page);

// The chart of the kind of that name; for another name a chart of an empty panel, whose popup ids
// count from 0.
template <typename Record>
Chart ChartOf(std::span<const ChartKind<Record>> kinds, std::string_view name,
              const SlotRecords<Record>& records, long slot, const Days<DateTime> Record::*dates,
              std::optional<std::string_view> numWord = {}) {
  static const Panel kNoPanel;
  const auto dateOf = [&records, slot, dates](int position) {
    return (records[slot].*dates)[position];
  };
  for (const ChartKind<Record>& kind : kinds) {
    if (kind.name == name) return {records[slot].*kind.panel, kind.popupBase, numWord, dateOf};
  }
  return {kNoPanel, 0, numWord, dateOf};
}

}  // namespace quillon
