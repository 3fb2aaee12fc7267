// The unit is known by the program that it starts.
#include "quillondb/check/unit.h"

#include <fmt/format.h>

#include <filesystem>

#include "platform/files.h"
#include "quillondb/check/findings.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

constexpr const char* kUnitName = "quillon-web.service";

// What ProtectHome and PrivateTmp of the unit hide.
constexpr const char* kHiddenFolders[] = {"/home", "/root", "/run/user", "/tmp", "/var/tmp"};

std::string TextOf(const std::vector<std::string>& folders) {
  for (const std::string& folder : folders) {
    const std::string path = folder + "/" + kUnitName;
    if (FileExists(path)) return ReadFileBytes(path);
  }
  return "";
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
InstalledUnit::InstalledUnit(const std::string& directory, const std::vector<std::string>& folders)
    : text_(TextOf(folders)) {
  if (!Grants("ExecStart=:\"" + ProgramOf(directory) + "\"")) text_.clear();
}

std::string InstalledUnit::HiddenBy(const std::string& path) const {
  const std::string whole = Canonical(path);
  for (const char* folder : kHiddenFolders) {
    if (isThere() && whole.starts_with(std::string(folder) + "/")) return folder;
  }
  return "";
}

void CheckUnit(const std::string& directory, const InstalledUnit& unit, const ServiceUser& user,
               std::vector<std::string>& findings) {
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
