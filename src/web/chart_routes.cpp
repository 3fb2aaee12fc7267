// The chart routes. What they need rides in the URL: nothing is kept between two requests.
#include "web/chart_routes.h"

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/number_text.h"
#include "queries/port_name.h"
#include "queries/switch_hist45.h"
#include "render/chart_blocks.h"
#include "render/chart_names.h"
#include "render/page_frame.h"
#include "web/page_cache.h"
#include "web/page_closing.h"
#include "web/stored_page.h"
#include "web/text_search.h"

namespace quillon {
namespace {

constexpr std::string_view kPortWord = "hist45-";
constexpr std::string_view kDiskWord = "histdisk45-";
constexpr std::string_view kDiskOfSearchWord = "histdisksearch45-";

// The text of a URL between two positions.
std::string Between(const std::string& httpQuery, long start, long end) {
  return std::string(Middle(httpQuery, start, end - start));
}

// Position behind the first occurrence of `word`, which the route has found.
long Behind(const std::string& httpQuery, std::string_view word) {
  return Position(httpQuery, word) + static_cast<long>(word.size());
}

// The charts from the cache. A URL that names no page asks for nothing there.
bool TakeStoredChart(WebContext& context, const std::string& chartFile, Request& request) {
  return !request.cacheFile.empty() &&
         TakeStored(context, request.id, chartFile, request.chartHtml, request.chartFromCache);
}

// The page that the charts stand under. It is not looked for: one that is not in the cache is an
// empty text, and leaves an empty file behind.
void TakeTable(WebContext& context, Request& request) {
  ReadFromCache(context.diagnostics, context.pageMemory, request.id, request.cacheFile,
                request.pageHtml);
  request.tableFromCache = true;
}

void BuildPortCharts(WebContext& context, std::int32_t recNo, std::int32_t ifIndex,
                     Request& request) {
  std::string device;
  std::string port;
  SqlPortNameLookup(context.queries, recNo, ifIndex, device, port);
  SqHist45SwitchControl(context.queries, request.id, recNo, ifIndex, device, port, false);
  PortChartBlocks(context.render, request.id, request.chartHtml);
}

// Puts the charts under what the page begins with, and closes it.
void CloseWithChart(WebContext& context, Request& request) {
  request.pageHtml += request.chartHtml;
  ClosePage(context, request);
}

void RouteDisk(WebContext& context, std::string_view word, Request& request) {
  const std::string& url = request.httpQuery;
  const long start = Behind(url, word);
  const long recNoEnd = Position(url, "-", start);
  if (recNoEnd == 0) return;
  const std::int32_t recNo = TextToLong(Between(url, start, recNoEnd));
  const long diskEnd = Position(url, "-disk-", recNoEnd + 1);
  if (diskEnd == 0) return;
  const std::string disk = Between(url, recNoEnd + 1, diskEnd);

  TakeStoredChart(context, StorageChartsFile(recNo, disk), request);
  if (!request.cacheFile.empty()) TakeTable(context, request);
  CloseWithChart(context, request);
}

}  // namespace

void RoutePortCharts(WebContext& context, Request& request) {
  const std::string& url = request.httpQuery;
  const long start = Behind(url, kPortWord);
  const long recNoEnd = Position(url, "-", start);
  if (recNoEnd == 0) return;
  const std::int32_t recNo = TextToLong(Between(url, start, recNoEnd));
  long ifIndexEnd = Position(url, "-", recNoEnd + 1);
  if (ifIndexEnd == 0) ifIndexEnd = Position(url, ".htm", recNoEnd + 1);
  if (ifIndexEnd == 0) return;
  const std::int32_t ifIndex = TextToLong(Between(url, recNoEnd + 1, ifIndexEnd));

  const std::string chartFile = PortChartsFile(recNo, ifIndex);
  if (!TakeStoredChart(context, chartFile, request)) {
    BuildPortCharts(context, recNo, ifIndex, request);
    if (!request.cacheFile.empty()) {
      SaveToCache(context.diagnostics, request.id, chartFile, request.chartHtml);
    }
  }
  if (request.cacheFile.empty()) {
    TopHeader_MailReport(context.render, request.pageHtml);
  } else {
    TakeTable(context, request);
  }
  CloseWithChart(context, request);
}

void RouteDiskChart(WebContext& context, Request& request) {
  RouteDisk(context, kDiskWord, request);
}

void RouteDiskChartOfSearch(WebContext& context, Request& request) {
  RouteDisk(context, kDiskOfSearchWord, request);
}

}  // namespace quillon
