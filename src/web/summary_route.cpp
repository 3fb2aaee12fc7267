// The summary route.
#include "web/summary_route.h"

#include "queries/switch_lists.h"
#include "queries/switch_summary.h"
#include "render/chart_blocks.h"
#include "render/page_frame.h"
#include "web/page_cache.h"
#include "web/page_closing.h"
#include "web/stored_page.h"
#include "web/text_search.h"

namespace quillon {
namespace {

void BuildSummary(WebContext& context, Request& request) {
  for (const SwitchPortKind& kind : kSwitchPortKinds) {
    if (!Holds(request.httpQuery, kind.summaryReport)) continue;
    SqHist45dSwitchSum(context.queries, request.id, kind.isTrunk);
    TopHeader_Begin(context.render, kReportPageWidth, kind.summaryReport, request.pageHtml);
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
