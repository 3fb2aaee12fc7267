// The one place where a report asks for its day, and the day of its figures.
#pragma once

#include "platform/clock.h"
#include "service/settings.h"

namespace quillon {

// The present date and time; the console's report date where RepDateOverride is set.
DateTime ReportDay(const Settings& settings, const Clock& clock);

// The day that the newest figures cover, under which an import files what it copies: 23 hours
// before `now`, so the day before for whatever runs before 23:00.
DateTime HistoryDay(DateTime now);

}  // namespace quillon
