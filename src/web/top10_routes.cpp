// The top-10 routes.
#include "web/top10_routes.h"

#include "queries/switch_lists.h"
#include "queries/switch_top10.h"
#include "render/page_frame.h"
#include "render/switch_tables.h"
#include "web/page_cache.h"
#include "web/page_closing.h"
#include "web/stored_page.h"
#include "web/text_search.h"

namespace quillon {
namespace {

constexpr std::string_view kOtherSortField = "InErrorsTot24H";  // for a word of no metric

std::string_view SortField(const std::string& httpQuery, const SwitchPortKind& kind) {
  for (const SwitchMetric& metric : kSwitchMetrics) {
    const std::string words = std::string(kind.top10Report) + "-" + std::string(metric.name);
    if (Holds(httpQuery, words)) return metric.sortField;
  }
  return kOtherSortField;
}

bool TakeStoredTable(WebContext& context, Request& request) {
  return TakeStored(context, request.id, request.cacheFile, request.pageHtml,
                    request.tableFromCache);
}

void BuildSwitchTable(WebContext& context, const SwitchPortKind& kind, Request& request) {
  SqlTop10SwitchStats(context.queries, request.id, SortField(request.httpQuery, kind),
                      kind.isTrunk);
  TopHeader_Begin(context.render, kReportPageWidth, kind.top10Report, request.pageHtml);
  TopHeader_End(context.render, request.pageHtml);
  TableHeader_Switch(context.render, request.id, request.pageHtml);
  TableData_Switch(context.render, request.id, kind.name, request.cacheFile, request.pageHtml);
  if (request.cacheFile.empty()) return;
  SaveToCache(context.diagnostics, request.id, request.cacheFile, request.pageHtml);
}

void RouteSwitchTop10(WebContext& context, const SwitchPortKind& kind, Request& request) {
  if (!TakeStoredTable(context, request)) BuildSwitchTable(context, kind, request);
  ClosePage(context, request);
}

}  // namespace

void RouteSwitchTop10Access(WebContext& context, Request& request) {
  RouteSwitchTop10(context, kAccessPorts, request);
}

void RouteSwitchTop10Trunk(WebContext& context, Request& request) {
  RouteSwitchTop10(context, kTrunkPorts, request);
}

void RouteCachedPage(WebContext& context, Request& request) {
  if (TakeStoredTable(context, request)) ClosePage(context, request);
}

}  // namespace quillon
