// Panels of the 45-day reports.
#include "queries/chart_panel.h"

#include <cmath>

#include "platform/failure.h"
#include "platform/number_text.h"
#include "render/value_scaling.h"

namespace quillon {
namespace {

constexpr int kPauseMs = 10;

// The figure rounded to a whole number; "-" and other texts count as 0.
double WholeNumber(const std::string& figure) {
  return LeadingNumber(DigitPattern(figure, "0"));
}

void RaiseAxisTop(const std::string& figure, std::string& top) {
  if (WholeNumber(top) < WholeNumber(figure)) top = figure;
}

}  // namespace

void BeginPanel(const QueryContext& context, const PanelWords& words, Panel& panel) {
  panel.Head = context.LangWord(words.head);
  panel.NameLeft = context.LangWord(words.left);
  panel.NameRight = context.LangWord(words.right);
  panel.YaxisMax = "2";
}

void SetMissing(Panel& panel, int position) {
  panel.Left[position] = "-";
  panel.Right[position] = "-";
  SetSmallestBars(panel, position);
}

void SetSmallestBars(Panel& panel, int position) {
  panel.LeftBar[position] = kSmallestBar;
  panel.RightBar[position] = kSmallestBar;
}

void RaiseAxisTopsAndWait(const QueryContext& context, Panels panels, int position) {
  for (Panel* panel : panels) {
    RaiseAxisTop(panel->Left[position], panel->YaxisMax);
    RaiseAxisTop(panel->Right[position], panel->YaxisMax);
  }
  context.loop.DelayMs(kPauseMs);
}

void RaiseAxisTopsAndWait(const QueryContext& context, Panels panels) {
  for (int position = 1; position <= Days<std::string>::kSize; ++position) {
    RaiseAxisTopsAndWait(context, panels, position);
  }
}

void RoundAxisTops(const QueryContext& context, Panels panels) {
  for (Panel* panel : panels) {
    double ceiling = 2;
    panel->YaxisMax = NumberText(RoundToValue(context.diagnostics, panel->YaxisMax, ceiling, true));
    RoundUpYaxisMax(context.diagnostics, panel->YaxisMax);
  }
}

std::string BarHeight(const std::string& figure, const std::string& axisTop) {
  const auto number = ParseNumber(figure);
  if (!number) return std::string(kSmallestBar);
  const double top = LeadingNumber(axisTop);
  if (top == 0) throw OverflowFailure("division by zero: the axis of the chart has no top");
  const double height = RoundHalfEven(*number / top * 100);
  if (!std::isfinite(height)) throw OverflowFailure("bar of the chart out of range: " + figure);
  return height == 0 ? std::string(kSmallestBar) : NumberText(height);
}

void SetBars(Panel& panel, int position) {
  panel.LeftBar[position] = BarHeight(panel.Left[position], panel.YaxisMax);
  panel.RightBar[position] = BarHeight(panel.Right[position], panel.YaxisMax);
}

void SetBars(Panels panels) {
  for (int position = 1; position <= Days<std::string>::kSize; ++position) {
    for (Panel* panel : panels) SetBars(*panel, position);
  }
}

void LabelVolumeAxes(const QueryContext& context, Panels panels) {
  for (Panel* panel : panels) {
    FormatYaxisVol(context.diagnostics, panel->YaxisMax, panel->YaxisHalf);
  }
}

void LabelCountAxes(const QueryContext& context, Panels panels) {
  for (Panel* panel : panels) {
    FormatYaxisPkts(context.diagnostics, panel->YaxisMax, panel->YaxisHalf);
  }
}

}  // namespace quillon
