// Application events: the one path of failures and notices. Low in the house:
// everybody may use it.
#pragma once

#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/event_loop.h"
#include "service/settings.h"

namespace quillon {

// What an application event is about; the number stands in the event file.
enum class EventType { kFailure = 1, kFailedMail = 2, kNotice = 3 };

// All that application events touch.
struct Diagnostics {
  const Settings& settings;
  Clock& clock;
  EventLoop& loop;
};

// Appends one line to \Debug\AppEventWeb.txt, whatever DebugMode says, and waits 500 ms.
// Events may run inside that wait. Never throws but LoopEnded: a failure of its own
// ends it silently, so without a Debug folder there is neither line nor wait.
void AppEvent(const Diagnostics& diagnostics, std::string_view module, std::string_view procedure,
              std::string_view text, EventType type);

// The time stamp of the debug logs: "YYYY-MM-DD HH:MM:SS.mmm". The milliseconds come out
// of the seconds since midnight in single precision, so they move in steps of up to 8 ms.
std::string LogTimeStamp(const Clock& clock);

}  // namespace quillon
