// The fields of the console's form that Save to DB writes, by their tables.
#pragma once

#include "quillonctl/setting_fields.h"

namespace quillon {

inline constexpr const char* kGeneralTable = "Settings_General";
inline constexpr const char* kWebServerTable = "Settings_WebServer";

const SettingFieldList& GeneralFields();
const SettingFieldList& WebServerFields();

}  // namespace quillon
