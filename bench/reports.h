// What queries and rendering of the reports touch, for the programs that time them by themselves.
#pragma once

#include <utility>

#include "platform/event_loop.h"
#include "queries/query_context.h"
#include "render/render_context.h"
#include "support/reporting.h"

namespace quillon {

struct Reports {
  // The clock outlives this.
  explicit Reports(Clock& clock, Settings ofSite = {})
      : settings(std::move(ofSite)),
        loop(clock),
        reporting(settings, clock),
        queries{reporting.diagnostics(), settings, clock, loop, words, period, records} {}

  Settings settings;
  EventLoop loop;
  LangWords words;
  CalendarNames calendar;
  ReportPeriod period;
  ReportRecords records;
  Reporting reporting;
  QueryContext queries;
  RenderContext render{reporting.diagnostics(), settings, words, calendar, period, records};
};

}  // namespace quillon
