// The one error exit of all procedures.
#pragma once

#include <exception>
#include <string>
#include <string_view>

#include "service/diagnostics.h"

namespace quillon {

// What an event tells of a failure: its description in the charset of the pages, as all
// lines of the event file are, or the beginning of a long one. Descriptions of databases come in
// UTF-8.
std::string FailureText(const Settings& settings, const std::exception& failure);

// Runs `body`; true where it came to its end. A failure in it is reported as an application
// event of type 1 under the names given, and goes no further. What the body opened is closed
// before the event is raised, so no lock is held through its half second. `beforeEvent`
// takes the failure and returns the event's text, for the few procedures whose exit does more
// than report; what has to follow the event is done by whoever gets false.
template <typename Body, typename BeforeEvent>
bool ErrorExit(const Diagnostics& diagnostics, std::string_view module, std::string_view procedure,
               Body&& body, BeforeEvent&& beforeEvent) {
  std::string text;
  try {
    body();
    return true;
  } catch (const std::exception& failure) {
    text = beforeEvent(failure);
  }
  AppEvent(diagnostics, module, procedure, text, EventType::kFailure);
  return false;
}

template <typename Body>
bool ErrorExit(const Diagnostics& diagnostics, std::string_view module, std::string_view procedure,
               Body&& body) {
  return ErrorExit(diagnostics, module, procedure, body, [&](const std::exception& failure) {
    return FailureText(diagnostics.settings, failure);
  });
}

}  // namespace quillon
