// The one scheduler: all that happens without a request happens here.
#pragma once

#include "service/service_context.h"

namespace quillon {

// The hour of the day, 0 to 23.
std::int16_t HourNow(const ServiceContext& context);

// Runs on each tick after the start tick, and does its work on the first one of a new hour:
// the settings anew, the import, and after an import the pages and the mails; at a change of
// day the debug folder is cleaned. A tick that arrives while a job is running is dropped.
void HourlyPass(ServiceContext& context);

}  // namespace quillon
