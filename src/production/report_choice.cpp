// The words of a choice.
#include "production/report_choice.h"

namespace quillon {
namespace {

bool Holds(std::string_view text, std::string_view word) {
  return text.find(word) != std::string_view::npos;
}

constexpr std::string_view kAccessWord = "Access";
constexpr std::string_view kTrunkWord = "Trunk";  // or anything else
constexpr std::string_view kSummaryWord = "Summary";
// One for each metric, in the order of the metrics.
constexpr std::string_view kMetricWords[] = {"InVolume",    "OutVolume", "InBroadcast",
                                             "InMulticast", "InErrors",  "OutErrors"};
static_assert(std::size(kMetricWords) == std::size(kSwitchMetrics));

}  // namespace

std::string ReportChoice::File() const {
  return metric == nullptr ? SwitchSummaryFile(kind) : SwitchTop10File(kind, *metric);
}

std::string ReportChoice::Name() const {
  const std::string_view word =
      metric == nullptr ? kSummaryWord : kMetricWords[metric - kSwitchMetrics];
  return std::string(kind.isTrunk ? kTrunkWord : kAccessWord).append(" ").append(word);
}

std::optional<ReportChoice> ParseReportChoice(std::string_view text) {
  const SwitchPortKind& kind = Holds(text, kAccessWord) ? kAccessPorts : kTrunkPorts;
  if (Holds(text, kSummaryWord)) return ReportChoice{kind, nullptr};
  for (std::size_t i = 0; i < std::size(kMetricWords); ++i) {
    if (Holds(text, kMetricWords[i])) return ReportChoice{kind, &kSwitchMetrics[i]};
  }
  return std::nullopt;
}

}  // namespace quillon
