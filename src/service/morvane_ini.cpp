// Reading the ini file: sections do not matter, a later line overrides an earlier one.
#include "service/morvane_ini.h"

#include <algorithm>

#include "platform/failure.h"
#include "platform/files.h"
#include "platform/number_text.h"
#include "platform/text_lines.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

std::int16_t ToPort(const std::string& text) {
  const std::string key = "ServerTrapPort in Morvane.ini is ";
  try {
    const auto number = ParseNumber(text);
    if (!number) throw ConversionFailure(key + "no number: \"" + text + "\"");
    return NumberToInteger16(*number);
  } catch (const OverflowFailure&) {  // which does not know whose number it is
    throw OverflowFailure(key + "out of range: " + text);
  }
}

void TakeSetting(std::string_view line, Settings& settings) {
  const IniSetting setting = IniSettingIn(line);
  if (setting.key == "ServerIpAddr") settings.ServerIpAddr = setting.value;
  if (setting.key == "ServerTrapPort") settings.ServerTrapPort = ToPort(setting.value);
}

}  // namespace

std::string MorvaneIniPath(const Settings& settings) {
  std::string path = settings.MorvaneDir + "\\Morvane.ini";
  std::replace(path.begin(), path.end(), '\\', '/');
  return path.starts_with('/') ? path : settings.AppPath + "/" + path;
}

IniSetting IniSettingIn(std::string_view line) {
  const std::size_t equals = line.find('=');
  if (line.starts_with(';') || line.starts_with('[') || equals == std::string_view::npos) return {};
  return {Trimmed(line.substr(0, equals)), Trimmed(line.substr(equals + 1))};
}

void ReadMorvaneIni(ServiceContext& context) {
  ErrorExit(context.diagnostics, "modQuillonWeb", "ReadMorvaneIni", [&] {
    context.settings.ServerIpAddr = "127.0.0.1";
    context.settings.ServerTrapPort = 162;
    const std::string path = MorvaneIniPath(context.settings);
    if (!FileExists(path)) return;
    const std::string text = ReadFileBytes(path);
    for (std::string_view rest = text; !rest.empty();) {
      TakeSetting(TakeLine(rest), context.settings);
    }
  });
}

}  // namespace quillon
