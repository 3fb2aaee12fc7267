// Counting days.
#include "queries/days_back.h"

#include <chrono>

#include "service/report_day.h"

namespace quillon {

bool DaysBack::Next() {
  if (day_ == Days<DateTime>::kSize) return false;
  ++day_;
  const DateTime today = ReportDay(context_.settings, context_.clock);
  wanted_ = std::chrono::floor<std::chrono::days>(today) - std::chrono::days(day_);
  return true;
}

}  // namespace quillon
