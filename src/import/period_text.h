// The display text of the report period's start and end.
#pragma once

#include <string>
#include <string_view>

#include "platform/date_time.h"

namespace quillon {

// "2024-05-01&nbsp;&nbsp03:00": the date by a display pattern, and the hour of the clock, 0 to 23.
// The second blank has no semicolon, in the texts of the management product as well.
std::string PeriodText(DateTime day, std::string_view pattern, int hour);

}  // namespace quillon
