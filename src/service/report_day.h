// The one place where a report asks for its day.
#pragma once

#include "platform/clock.h"
#include "service/settings.h"

namespace quillon {

// The present date and time; the console's report date where RepDateOverride is set.
DateTime ReportDay(const Settings& settings, const Clock& clock);

}  // namespace quillon
