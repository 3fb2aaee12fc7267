// Application events: the one path of failures and notices. Low in the house:
// everybody may use it.
#pragma once

#include <string>
#include <string_view>

#include "service/diagnostics_context.h"

namespace quillon {

// What an application event is about; the number stands in the event file.
enum class EventType { kFailure = 1, kFailedMail = 2, kNotice = 3 };

// Tells whoever watches the job, unless a client's request raised it; then
// appends one line to \Debug\AppEventWeb.txt, whatever DebugMode says, waits 500 ms, and sends
// a trap where SendAppEvents is on and the agent is open. Events may run inside the wait. Never
// throws but LoopEnded: a failure of its own ends it silently, so without a Debug folder there
// is neither line nor wait nor trap. Line ends in the texts become blanks.
void AppEvent(const Diagnostics& diagnostics, std::string_view module, std::string_view procedure,
              std::string_view text, EventType type);

// Tells whoever watches the job how far it is.
void TellProgress(const Diagnostics& diagnostics, JobUnit unit, int number, int total);

// The time stamp of the debug logs: "YYYY-MM-DD HH:MM:SS.mmm". The milliseconds come out
// of the seconds since midnight in single precision, so they move in steps of up to 8 ms.
std::string LogTimeStamp(const Clock& clock);

}  // namespace quillon
