// The chart routes: the 45-day charts of a port, a disk or a server's memory under the page from
// which the link was followed.
#pragma once

#include "web/request.h"
#include "web/web_context.h"

namespace quillon {

// hist45-<recNo>-<ifIndex>-<page>, or without a page: the charts from the cache or built. Where the
// URL names no page they stand on one of their own, which is not stored.
void RoutePortCharts(WebContext& context, Request& request);

// histdisk45-<recNo>-<disk>-<page> and histdisksearch45-...: from the cache alone.
void RouteDiskChart(WebContext& context, Request& request);
void RouteDiskChartOfSearch(WebContext& context, Request& request);

}  // namespace quillon
