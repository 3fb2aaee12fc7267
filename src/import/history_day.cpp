// Days and ages.
#include "import/history_day.h"

namespace quillon {

DateTime HistoryDay(DateTime now) {
  return now - std::chrono::hours(23);
}

bool IsOlderThan(const Value& date, int days, DateTime now) {
  return date.type() == Value::Type::kDate && DaysBetween(date.AsDate(), now) > days;
}

}  // namespace quillon
