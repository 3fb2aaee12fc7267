// The summary route.
#include "web/summary_route.h"

#include <string_view>

#include "queries/switch_summary.h"
#include "render/chart_blocks.h"
#include "render/page_frame.h"
#include "web/page_cache.h"
#include "web/page_closing.h"
#include "web/stored_page.h"
#include "web/text_search.h"

namespace quillon {
namespace {

// A summary by its report key, which is also the word in the URL.
struct Summary {
  std::string_view reportKey;
  bool isTrunk;
};

constexpr Summary kSummaries[] = {
    {"switch-access-port-summary", false},
    {"switch-trunk-port-summary", true},
};

void BuildSummary(WebContext& context, Request& request) {
  for (const Summary& summary : kSummaries) {
    if (!Holds(request.httpQuery, summary.reportKey)) continue;
    SqHist45dSwitchSum(context.queries, request.id, summary.isTrunk);
    TopHeader_Begin(context.render, kReportPageWidth, summary.reportKey, request.pageHtml);
    break;
  }
  TopHeader_End(context.render, request.pageHtml);
  SwitchSummaryBlocks(context.render, request.id, request.pageHtml);
  if (request.cacheFile.empty()) return;
  SaveToCache(context.diagnostics, request.id, request.cacheFile, request.pageHtml);
}

}  // namespace

void RouteSwitchSummary(WebContext& context, Request& request) {
  if (!TakeStored(context, request.id, request.cacheFile, request.pageHtml,
                  request.chartFromCache)) {
    BuildSummary(context, request);
  }
  ClosePage(context, request);
}

}  // namespace quillon
