// read, save and apply-changes: the settings of the console's form. They need no service.
#pragma once

#include <string>

#include "quillonctl/setting_fields.h"

namespace quillon {

int ReadSettings(const std::string& directory, OutputForm form);

// What the change does not name stays. Refused where a value is wrong, or where one that is not
// named is missing in the settings.
int SaveSettings(const std::string& directory, const SettingChange& change, OutputForm form);

int ApplyTheme(const std::string& directory, const std::string& theme, OutputForm form);

}  // namespace quillon
