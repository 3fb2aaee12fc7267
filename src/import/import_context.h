// All that the daily import may touch: it reads Reports.mdb, writes History.mdb, the display
// texts of the report period and a debug file, and pauses on the loop.
#pragma once

#include "platform/event_loop.h"
#include "service/diagnostics.h"
#include "service/report_period.h"
#include "service/settings.h"

namespace quillon {

struct ImportContext {
  const Diagnostics& diagnostics;
  const Settings& settings;
  const Clock& clock;
  EventLoop& loop;
  ReportPeriod& period;
};

}  // namespace quillon
