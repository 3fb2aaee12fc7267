// The route table and the default page.
#include "web/route_table.h"

#include "render/page_frame.h"
#include "web/chart_routes.h"
#include "web/http_header.h"
#include "web/search_routes.h"
#include "web/static_routes.h"
#include "web/summary_route.h"
#include "web/text_search.h"
#include "web/top10_routes.h"

namespace quillon {
namespace {

enum class Where { kHttpQuery, kText };  // the first line, or all of the request

struct Route {
  std::string_view words;
  Where where;
  void (*run)(WebContext& context, Request& request);
};

// The order is meaning: the first hit ends the search, and a chart's URL holds the name
// of the table that it belongs to, so the charts stand in front.
constexpr Route kRoutes[] = {
    {"hist45-", Where::kHttpQuery, RoutePortCharts},
    {"hist45d-switch-", Where::kHttpQuery, RouteSwitchSummary},
    {"-port-summary", Where::kHttpQuery, RouteSwitchSummary},
    {"switch-access-port-top10", Where::kHttpQuery, RouteSwitchTop10Access},
    {"switch-trunk-port-top10", Where::kHttpQuery, RouteSwitchTop10Trunk},
    {"GET /select?report=search-device-port-name", Where::kText, RoutePortNameForm},
    {"GET /select?report=search-device-port-alias", Where::kText, RoutePortAliasForm},
    {"GET /select?report=search-mac-ip", Where::kText, RouteMacIpForm},
    {"POST /search-mac-ip", Where::kText, RouteMacIpSearch},
    {"POST /search-device-port-name", Where::kText, RoutePortNameSearch},
    {"POST /search-device-port-alias", Where::kText, RoutePortAliasSearch},
    {"histdisk45-", Where::kHttpQuery, RouteDiskChart},
    {"histdisksearch45-", Where::kHttpQuery, RouteDiskChartOfSearch},
    {"disk-physical-top10", Where::kHttpQuery, RouteCachedPage},
    {"disk-virtual-top10", Where::kHttpQuery, RouteCachedPage},
    {"disk-windows-top10", Where::kHttpQuery, RouteCachedPage},
    {"disk-unix-top10", Where::kHttpQuery, RouteCachedPage},
    {"disk-mem-summary", Where::kHttpQuery, RouteCachedPage},
    {"GET /select?report=search-device-disk", Where::kText, RouteDiskForm},
    {"POST /search-device-disk", Where::kText, RouteDiskSearch},
    {"GET /qws.css", Where::kText, RouteStylesheet},
    {"GET /favicon.ico", Where::kText, RouteFavIcon},
};

// Every unknown URL, and the root: the selector and nothing more, without a footer.
void RouteDefaultPage(WebContext& context, Request& request) {
  TopHeader_Begin(context.render, kReportPageWidth, "none", request.pageHtml);
  TopHeader_End(context.render, request.pageHtml);
  Page_End(context.render, request.pageHtml);
  HTTP_Header("text/html", request.pageHtml);
}

}  // namespace

void Dispatch(WebContext& context, Request& request) {
  for (const Route& route : kRoutes) {
    const std::string& text = route.where == Where::kText ? request.Text : request.httpQuery;
    if (Holds(text, route.words)) return route.run(context, request);
  }
  RouteDefaultPage(context, request);
}

}  // namespace quillon
