// The lists and summaries of switch ports: two kinds of ports, six metrics. Their names stand in
// URLs, in the names of stored pages and in report keys.
#pragma once

#include <string>
#include <string_view>

namespace quillon {

struct SwitchPortKind {
  std::string_view name;         // in the names of the pages
  std::string_view top10Report;  // report keys
  std::string_view summaryReport;
  bool isTrunk;
};

inline constexpr SwitchPortKind kAccessPorts = {"access", "switch-access-port-top10",
                                                "switch-access-port-summary", false};
inline constexpr SwitchPortKind kTrunkPorts = {"trunk", "switch-trunk-port-top10",
                                               "switch-trunk-port-summary", true};
inline constexpr SwitchPortKind kSwitchPortKinds[] = {kAccessPorts, kTrunkPorts};

struct SwitchMetric {
  std::string_view name;       // in the names of the pages
  std::string_view sortField;  // of VLAN: the list has the largest first
};

inline constexpr SwitchMetric kSwitchMetrics[] = {
    {"involume", "InHCOctetsMb24H"},      {"outvolume", "OutHCOctetsMb24H"},
    {"inbroadcast", "InBroadCastPpm24H"}, {"inmulticast", "InMultiCastPpm24H"},
    {"inerrors", "InErrorsTot24H"},       {"outerrors", "OutErrorsTot24H"},
};

// The names of the stored pages.
inline std::string SwitchTop10File(const SwitchPortKind& kind, const SwitchMetric& metric) {
  return std::string(kind.top10Report).append("-").append(metric.name).append(".htm");
}
inline std::string SwitchSummaryFile(const SwitchPortKind& kind) {
  return std::string(kind.summaryReport).append(".htm");
}

}  // namespace quillon
