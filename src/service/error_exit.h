// The one error exit of all procedures.
#pragma once

#include <exception>
#include <string>
#include <string_view>

#include "service/diagnostics.h"

namespace quillon {

// Runs `body`; a failure in it is reported as an application event of type 1 under the
// names given, and goes no further. What the body opened is closed before the event is
// raised, so no lock is held through its half second. `beforeEvent` takes the failure,
// for the few procedures whose exit does more than report; it may return another text
// to report in its place.
template <typename Body, typename BeforeEvent>
void ErrorExit(const Diagnostics& diagnostics, std::string_view module, std::string_view procedure,
               Body&& body, BeforeEvent&& beforeEvent) {
  std::string description;
  try {
    body();
    return;
  } catch (const std::exception& failure) {
    description = beforeEvent(failure);
  }
  AppEvent(diagnostics, module, procedure, description, EventType::kFailure);
}

template <typename Body>
void ErrorExit(const Diagnostics& diagnostics, std::string_view module, std::string_view procedure,
               Body&& body) {
  ErrorExit(diagnostics, module, procedure, body,
            [](const std::exception& failure) { return std::string(failure.what()); });
}

}  // namespace quillon
