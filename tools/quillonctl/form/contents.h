// What the form shows, apart from where: it outlives the window, which is made anew for each size
// of the terminal.
#pragma once

#include <string>

#include "service/console_form.h"
#include "service/settings.h"

namespace quillon {

// The controls that the operator can move to, in the order of the keys.
enum class Control {
  kDebugMode,
  kDateFormat,
  kColorTheme,
  kApplyChanges,
  kEnabled,
  kAddress,
  kPort,
  kCharSet,
  kRead,
  kSave,
  kExit,
  kImport,
  kAutoCreate,
  kMailCreate,
  kSetRepDate,
  kRepDate
};

struct Contents {
  ConsoleForm form;
  std::string txtRepDate = Settings().txtRepDate;
  std::string message;  // lines
  Control current = Control::kDebugMode;
};

}  // namespace quillon
