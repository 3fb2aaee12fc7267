// How old a row of the history is.
#pragma once

#include "platform/database.h"
#include "platform/date_time.h"

namespace quillon {

// True where the field holds a date that lies more than that many days back, counted by the
// midnights between. A null and other texts are of no age.
bool IsOlderThan(const Value& date, int days, DateTime now);

}  // namespace quillon
