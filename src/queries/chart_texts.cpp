// Display texts of charts.
#include "queries/chart_texts.h"

#include "platform/number_text.h"
#include "render/value_scaling.h"

namespace quillon {
namespace {

// " (41%)"; nothing where one of the two is no number, and of a whole that is none.
std::string UsedShare(const std::string& whole, const std::string& used) {
  const auto total = ParseNumber(whole);
  const auto part = ParseNumber(used);
  if (!total || !part || *total <= 0) return "";
  return " (" + Trimmed(DigitPattern(*part / *total * 100, "#0")) + "%)";
}

void ShowStorage(const QueryContext& context, Panel& panel, int position) {
  panel.Proc[position] = UsedShare(panel.Left[position], panel.Right[position]);
  for (Days<std::string>* series : {&panel.Left, &panel.Right}) {
    std::string& size = (*series)[position];
    if (IsNumeric(size)) ConvHCBytes(context.diagnostics, size, true);
  }
}

}  // namespace

void ShowVolume(const QueryContext& context, std::string_view ratePattern, std::string& figure) {
  const auto megabytes = ParseNumber(figure);
  if (!megabytes) return;
  ConvHCBytes(context.diagnostics, figure, true);
  figure += VolumeRate(context, *megabytes, *megabytes, ratePattern);
}

void ShowCount(const QueryContext& context, const CountUnits& units, std::string& figure) {
  if (IsNumeric(figure)) figure = CountText(context, figure, units, "<br>");
}

void ShowStorages(const QueryContext& context, Panels panels) {
  for (int position = 1; position <= Days<std::string>::kSize; ++position) {
    for (Panel* panel : panels) ShowStorage(context, *panel, position);
  }
}

}  // namespace quillon
