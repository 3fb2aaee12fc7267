// The day under which an import files what it copies.
#pragma once

#include "platform/database.h"
#include "platform/date_time.h"

namespace quillon {

// 23 hours before `now`: the day before, which the figures cover, for whatever runs before 23:00.
DateTime HistoryDay(DateTime now);

// True where the field holds a date that lies more than that many days back, counted by the
// midnights between. A null and other texts are of no age.
bool IsOlderThan(const Value& date, int days, DateTime now);

}  // namespace quillon
