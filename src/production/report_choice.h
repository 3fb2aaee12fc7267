// What a receiver has chosen, as a text of which only certain words count.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "queries/switch_lists.h"

namespace quillon {

struct ReportChoice {
  const SwitchPortKind& kind;
  const SwitchMetric* metric;  // null for the summary

  std::string File() const;

  // The choice as it is written: "Access InVolume", "Trunk Summary".
  std::string Name() const;
};

// Access ports where the text holds "Access", trunk ports otherwise; the report is the first of
// "Summary", "InVolume", "OutVolume", "InBroadcast", "InMulticast", "InErrors" and "OutErrors" that
// it holds. Nothing where it holds none of them. Case counts.
std::optional<ReportChoice> ParseReportChoice(std::string_view text);

}  // namespace quillon
