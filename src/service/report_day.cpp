// The report day, real or replayed, and the day before it.
#include "service/report_day.h"

#include <chrono>

#include "platform/failure.h"

namespace quillon {

DateTime ReportDay(const Settings& settings, const Clock& clock) {
  if (!settings.RepDateOverride) return clock.Now();
  const auto day = ParseDateTime(settings.txtRepDate);
  if (!day) throw ConversionFailure("not a date: \"" + settings.txtRepDate + "\"");
  return *day;
}

DateTime HistoryDay(DateTime now) {
  return now - std::chrono::hours(23);
}

}  // namespace quillon
