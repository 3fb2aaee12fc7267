// The top-10 routes.
#include "web/top10_routes.h"

#include "queries/switch_top10.h"
#include "render/page_frame.h"
#include "render/switch_tables.h"
#include "web/page_cache.h"
#include "web/page_closing.h"
#include "web/stored_page.h"
#include "web/text_search.h"

namespace quillon {
namespace {

struct PortKind {
  std::string_view name;       // in the names of the pages
  std::string_view reportKey;  // also the word of the route
  bool isTrunk;
};

constexpr PortKind kAccess = {"access", "switch-access-port-top10", false};
constexpr PortKind kTrunk = {"trunk", "switch-trunk-port-top10", true};

// The metric of a URL and the field that its list is sorted by.
struct Metric {
  std::string_view name;
  std::string_view sortField;
};

constexpr Metric kMetrics[] = {
    {"involume", "InHCOctetsMb24H"},      {"outvolume", "OutHCOctetsMb24H"},
    {"inbroadcast", "InBroadCastPpm24H"}, {"inmulticast", "InMultiCastPpm24H"},
    {"inerrors", "InErrorsTot24H"},       {"outerrors", "OutErrorsTot24H"},
};
constexpr std::string_view kOtherSortField = "InErrorsTot24H";  // for a word of no metric

std::string_view SortField(const std::string& httpQuery, const PortKind& kind) {
  for (const Metric& metric : kMetrics) {
    const std::string words = std::string(kind.reportKey) + "-" + std::string(metric.name);
    if (Holds(httpQuery, words)) return metric.sortField;
  }
  return kOtherSortField;
}

bool TakeStoredTable(WebContext& context, Request& request) {
  return TakeStored(context, request.id, request.cacheFile, request.pageHtml,
                    request.tableFromCache);
}

void BuildSwitchTable(WebContext& context, const PortKind& kind, Request& request) {
  SqlTop10SwitchStats(context.queries, request.id, SortField(request.httpQuery, kind),
                      kind.isTrunk);
  TopHeader_Begin(context.render, kReportPageWidth, kind.reportKey, request.pageHtml);
  TopHeader_End(context.render, request.pageHtml);
  TableHeader_Switch(context.render, request.id, request.pageHtml);
  TableData_Switch(context.render, request.id, kind.name, request.cacheFile, request.pageHtml);
  if (request.cacheFile.empty()) return;
  SaveToCache(context.diagnostics, request.id, request.cacheFile, request.pageHtml);
}

void RouteSwitchTop10(WebContext& context, const PortKind& kind, Request& request) {
  if (!TakeStoredTable(context, request)) BuildSwitchTable(context, kind, request);
  ClosePage(context, request);
}

}  // namespace

void RouteSwitchTop10Access(WebContext& context, Request& request) {
  RouteSwitchTop10(context, kAccess, request);
}

void RouteSwitchTop10Trunk(WebContext& context, Request& request) {
  RouteSwitchTop10(context, kTrunk, request);
}

void RouteCachedPage(WebContext& context, Request& request) {
  if (TakeStoredTable(context, request)) ClosePage(context, request);
}

}  // namespace quillon
