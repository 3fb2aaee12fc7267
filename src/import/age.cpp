// Ages in days.
#include "import/age.h"

namespace quillon {

bool IsOlderThan(const Value& date, int days, DateTime now) {
  return date.type() == Value::Type::kDate && DaysBetween(date.AsDate(), now) > days;
}

}  // namespace quillon
