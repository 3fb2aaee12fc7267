// The unit is known by the program that it starts.
#include "quillondb/check/unit.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <filesystem>

#include "platform/failure.h"
#include "platform/files.h"
#include "platform/text_lines.h"
#include "quillondb/check/findings.h"
#include "service/morvane_ini.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

constexpr const char* kUnitName = "quillon-web.service";

// What an option of the unit hides.
struct HiddenFolder {
  const char* path;
  std::string_view option;
};

constexpr HiddenFolder kHiddenFolders[] = {{"/home", "ProtectHome"},
                                           {"/root", "ProtectHome"},
                                           {"/run/user", "ProtectHome"},
                                           {"/tmp", "PrivateTmp"},
                                           {"/var/tmp", "PrivateTmp"}};

// Values of these options by which nothing is hidden.
constexpr std::string_view kHideNothing[] = {"no", "false", "off", "0", "read-only"};

// In the order in which they count.
std::vector<std::string> FilesOf(const std::string& folder) {
  std::vector<std::string> paths;
  std::error_code failure;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, failure)) {
    if (entry.path().extension() == ".conf") paths.push_back(entry.path().string());
  }
  if (failure && failure != std::errc::no_such_file_or_directory) {
    throw FileFailure("cannot list " + folder + ": " + failure.message());
  }
  std::ranges::sort(paths);
  return paths;
}

// The first of the folders is the administrator's, where his additions lie.
std::string TextOf(const std::vector<std::string>& folders) {
  const auto folder = std::ranges::find_if(folders, [](const std::string& candidate) {
    return FileExists(candidate + "/" + kUnitName);
  });
  if (folder == folders.end()) return "";
  std::string text = ReadFileBytes(*folder + "/" + kUnitName);
  for (const std::string& path : FilesOf(folders.front() + "/" + kUnitName + ".d")) {
    if (FileExists(path)) text += "\n" + ReadFileBytes(path);
  }
  return text;
}

std::string Canonical(const std::string& path) {
  std::error_code ignored;
  return fs::weakly_canonical(path, ignored).string();
}

std::string ProgramOf(const std::string& directory) {
  return (fs::path(Canonical(directory)) / "quillonweb").string();
}

}  // namespace

// A unit for another directory is none.
InstalledUnit::InstalledUnit(const std::string& directory,
                             const std::vector<std::string>& folders) {
  try {
    text_ = TextOf(folders);
  } catch (const std::exception& failure) {
    failure_ = failure.what();
  }
  if (!Starts(ProgramOf(directory))) text_.clear();
}

bool InstalledUnit::Grants(const std::string& right) const {
  return std::ranges::any_of(Values("AmbientCapabilities"), [&](const std::string& value) {
    return value.find(right) != std::string::npos;
  });
}

std::string InstalledUnit::HiddenBy(const std::string& path) const {
  const std::string whole = Canonical(path);
  for (const HiddenFolder& folder : kHiddenFolders) {
    const std::string start = std::string(folder.path) + "/";
    if (whole.starts_with(start) && Hides(folder.option)) return folder.path;
  }
  return "";
}

std::vector<std::string> InstalledUnit::Values(std::string_view option) const {
  std::vector<std::string> values;
  for (std::string_view rest = text_; !rest.empty();) {
    const IniSetting line = IniSettingIn(TakeLine(rest));
    if (line.key != option) continue;
    if (line.value.empty()) {
      values.clear();
    } else {
      values.push_back(line.value);
    }
  }
  return values;
}

bool InstalledUnit::Hides(std::string_view option) const {
  const std::vector<std::string> values = Values(option);
  return !values.empty() &&
         std::ranges::find(kHideNothing, values.back()) == std::end(kHideNothing);
}

bool InstalledUnit::Starts(const std::string& program) const {
  const std::vector<std::string> values = Values("ExecStart");
  const std::string value = ":\"" + EscapedInUnit(program) + "\"";
  return std::ranges::find(values, value) != values.end();
}

void CheckUnit(const std::string& directory, const InstalledUnit& unit, const ServiceUser& user,
               std::vector<std::string>& findings) {
  if (!unit.failure().empty()) {
    findings.push_back(
        fmt::format("{}; what the unit does is not known then, so let all users read it: run"
                    " 'chmod -R a+rX {}/{}*'",
                    unit.failure(), ServiceRegistry::kUnitFolder, kUnitName));
  }
  if (!unit.isThere()) return;
  const std::string program = ProgramOf(directory);
  if (const std::string folder = unit.HiddenBy(directory); !folder.empty()) {
    findings.push_back(fmt::format(
        "{}: the unit hides what lies in {} from the service, so it does not start; move the"
        " directory, to /opt say, and run 'quillonweb -install' there",
        directory, folder));
  }
  if (!FileExists(program)) {
    findings.push_back(program +
                       ": the program that the unit starts is missing; copy it there from where"
                       " it was built or packaged");
  } else if (!user.May(kMayRun, program)) {
    findings.push_back(
        fmt::format("{}: {}, whom the service runs as, may not run it; run"
                    " 'chmod 755 {}'",
                    program, user.name(), ShellWord(program)));
  }
}

}  // namespace quillon
