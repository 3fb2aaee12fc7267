// The event file, the event's trap, and the time stamp of the logs.
#include "service/diagnostics.h"

#include <fmt/format.h>

#include "platform/files.h"
#include "platform/number_text.h"
#include "service/event_trap.h"

namespace quillon {
namespace {

constexpr std::int16_t kEventWaitMs = 500;  // keeps bursts of failures apart

// Descriptions come from many sources, and some procedures are told with the name of a table; an
// event is one line, in the file and in the trap.
std::string OneLine(std::string_view text) {
  std::string line(text);
  for (char& character : line) {
    if (character == '\r' || character == '\n') character = ' ';
  }
  return line;
}

void TellEvent(const Diagnostics& diagnostics, const std::string& source, const std::string& line,
               EventType type) {
  if (diagnostics.watch == nullptr || !diagnostics.watch->event) return;
  if (diagnostics.loop.InRequest()) return;  // of a browser, beside the job
  diagnostics.watch->event(static_cast<int>(type), source, line);
}

}  // namespace

void AppEvent(const Diagnostics& diagnostics, std::string_view module, std::string_view procedure,
              std::string_view text, EventType type) {
  try {
    const std::string line = OneLine(text);
    const std::string name = OneLine(procedure);
    const std::string source = fmt::format("{}_{}", module, name);
    TellEvent(diagnostics, source, line, type);
    if (diagnostics.settings.AppPath.empty()) return;  // no folder is known yet
    AppendToFile(PathBelow(diagnostics.settings, "\\Debug\\AppEventWeb.txt"),
                 fmt::format("{}\t{}\t{}\t{}{}", DateTimeText(diagnostics.clock.Now()),
                             static_cast<int>(type), source, line, kLineEnd));
    diagnostics.loop.DelayMs(kEventWaitMs);
    if (!diagnostics.settings.SendAppEvents || !diagnostics.trapTarget.SnmpAgentOpen) return;
    SendEventTrap(diagnostics, module, name, line, static_cast<int>(type));
  } catch (const std::exception&) {
    // The event path is the last resort: what fails here has nowhere to go.
  }
}

void TellProgress(const Diagnostics& diagnostics, JobUnit unit, int number, int total) {
  if (diagnostics.watch == nullptr || !diagnostics.watch->progress) return;
  diagnostics.watch->progress(unit, number, total);
}

std::string LogTimeStamp(const Clock& clock) {
  const DateTime now = clock.Now();
  const DateTimeParts parts = PartsOf(now);
  const int wholeSeconds = (parts.hour * 60 + parts.minute) * 60 + parts.second;
  const auto sinceMidnight =
      static_cast<float>(wholeSeconds + static_cast<double>(parts.millisecond) / 1000.0);
  const std::string formatted = DigitPattern(double{sinceMidnight}, "#0.000");
  return DateTimeText(now) + "." + formatted.substr(formatted.size() - 3);
}

}  // namespace quillon
