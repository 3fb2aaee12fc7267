// timer1, the clockwork of the started service.
#pragma once

#include <chrono>

#include "service/service_context.h"

namespace quillon {

// Interval and limit of the start belong together: of the ticks every 30 seconds exactly one
// falls below 50 seconds, so the sockets open once.
inline constexpr std::chrono::seconds kTimerInterval{30};

// A tick: the one below 50 seconds after the start opens the sockets, each later one is an
// hourly pass where that is due. A failure is reported, and not tried again within the hour.
void timer1_Timer(ServiceContext& context);

}  // namespace quillon
