// Morvane.ini, the file of the management product that names its server.
#pragma once

#include <string>
#include <string_view>

#include "service/service_context.h"

namespace quillon {

// Path of the file below MorvaneDir; a relative folder is one below AppPath.
std::string MorvaneIniPath(const Settings& settings);

struct IniSetting {
  std::string key;  // "" where the line holds no setting
  std::string value;
};

// The setting in a line of the file. Comments and heads of sections hold none.
IniSetting IniSettingIn(std::string_view line);

// Sets ServerIpAddr and ServerTrapPort from the file's keys of these names, from
// "127.0.0.1" and 162 where the file or a key is missing. A port that is no 16-bit
// number is reported and ends the reading at its line.
void ReadMorvaneIni(ServiceContext& context);

}  // namespace quillon
