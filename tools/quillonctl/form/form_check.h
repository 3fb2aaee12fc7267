// Judging what was put into the form, before any of it is written or sent.
#pragma once

#include <optional>
#include <string>

#include "quillonctl/form/contents.h"

namespace quillon {

struct FormComplaint {
  Control control;  // the field that is wrong
  std::string text;
};

// The first complaint about what "Save to DB" would write, and about the date of "Set Rep Date".
std::optional<FormComplaint> SettingsComplaint(const Contents& contents);
std::optional<FormComplaint> DateComplaint(const Contents& contents);

}  // namespace quillon
