// The report day, real or replayed.
#include "service/report_day.h"

#include "platform/failure.h"

namespace quillon {

DateTime ReportDay(const Settings& settings, const Clock& clock) {
  if (!settings.RepDateOverride) return clock.Now();
  const auto day = ParseDateTime(settings.txtRepDate);
  if (!day) throw ConversionFailure("not a date: \"" + settings.txtRepDate + "\"");
  return *day;
}

}  // namespace quillon
