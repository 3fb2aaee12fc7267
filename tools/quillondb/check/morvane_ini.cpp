// The file of the management product, read as the service reads it.
#include "quillondb/check/morvane_ini.h"

#include <fmt/format.h>

#include <filesystem>
#include <limits>
#include <optional>

#include "platform/files.h"
#include "platform/number_text.h"
#include "platform/text_lines.h"
#include "quillondb/check/files.h"
#include "service/morvane_ini.h"
#include "service/settings.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

// The directory of the management product; nothing for a row that is missing or a null, which are
// found with the tables.
std::optional<std::string> SnmpcDir(const SqliteFile& settings) {
  SqliteStatement row = settings.Prepare("SELECT SnmpcDir FROM Settings_General");
  if (!row.Step() || row.IsNull(0)) return std::nullopt;
  return row.Text(0);
}

// The file where the service would look for it: its directory is the one of its program, with
// all links resolved.
std::string PathOf(const fs::path& directory, const std::string& snmpcDir) {
  std::error_code ignored;
  Settings settings;
  settings.AppPath = fs::canonical(directory, ignored).string();
  settings.MorvaneDir = snmpcDir;
  return MorvaneIniPath(settings);
}

// Ports above are legal, but the service keeps the port in 16 bits with a sign.
bool IsTrapPort(const std::string& text) {
  const std::optional<double> number = ParseNumber(text);
  return number && RoundHalfEven(*number) >= 1 &&
         RoundHalfEven(*number) <= std::numeric_limits<std::int16_t>::max();
}

// A port that is no number ends the service's reading, so that lines behind it do not count.
std::string ReadAddress(const std::string& path, std::vector<std::string>& findings) {
  std::string address = Settings().ServerIpAddr;
  const std::string text = ReadFileBytes(path);
  for (std::string_view rest = text; !rest.empty();) {
    const IniSetting line = IniSettingIn(TakeLine(rest));
    if (line.key == "ServerIpAddr") address = line.value;
    if (line.key != "ServerTrapPort" || IsTrapPort(line.value)) continue;
    findings.push_back(
        fmt::format("{}: ServerTrapPort is '{}', so no traps arrive, and what stands"
                    " behind it may not be read; write a port from 1 to 32767",
                    path, line.value));
    break;
  }
  return address;
}

// True where the service gets the file.
bool IsWithinReach(const std::string& path, const InstalledUnit& unit, const ServiceUser& user,
                   std::vector<std::string>& findings) {
  if (const std::string folder = unit.HiddenBy(path); !folder.empty()) {
    findings.push_back(
        fmt::format("{}: the unit hides what lies in {} from the service, which ends at once;"
                    " move it elsewhere, and set SnmpcDir in Settings_General to its directory",
                    path, folder));
    return false;
  }
  if (!FileExists(path)) {
    findings.push_back(path + (PathExists(path) ? " is no file" : " is missing") +
                       "; the service ends at once without it, so set SnmpcDir in"
                       " Settings_General to the directory of the management product's");
    return false;
  }
  const std::size_t before = findings.size();
  CheckReadable(path, user, findings);
  return findings.size() == before && IsShort(path, path, findings);
}

}  // namespace

std::string CheckMorvaneIni(const std::string& directory, const SqliteFile& settings,
                            const InstalledUnit& unit, const ServiceUser& user,
                            std::vector<std::string>& findings) {
  std::string usual = Settings().ServerIpAddr;
  const std::optional<std::string> home = SnmpcDir(settings);
  if (!home) return usual;
  if (home->empty()) {
    findings.emplace_back(
        "Quillon.mdb: SnmpcDir in Settings_General is empty; it has to be the"
        " directory of Morvane.ini");
    return usual;
  }
  const std::string path = PathOf(directory, *home);
  return IsWithinReach(path, unit, user, findings) ? ReadAddress(path, findings) : usual;
}

}  // namespace quillon
