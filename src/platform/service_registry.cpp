// Registration by systemctl, whose unit file we write. A step that fails takes back those
// before it.
#include "platform/service_registry.h"

#include <pwd.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <utility>

#include "platform/child_process.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/unit_text.h"

namespace quillon {
namespace {

constexpr const char* kUser = "quillonweb";  // that the unit names
constexpr std::string_view kPlaceholder = "@AppPath@";

// "Quillon Web" is the unit quillon-web.service.
std::string UnitName(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(), [](char character) {
    if (character == ' ') return '-';
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A'))
                                                : character;
  });
  return name + ".service";
}

// The directory as it stands between the quotes of a unit file.
std::string QuotedInUnit(const std::string& directory) {
  for (const char character : directory) {
    const bool isControl = static_cast<unsigned char>(character) < ' ' || character == '\x7F';
    if (isControl || character == '"' || character == '\'' || character == '\\') {
      throw Failure("systemd starts no program in a directory with quotes, backslashes or " +
                    std::string("control characters in its name: ") + directory);
    }
  }
  return EscapedInUnit(directory);
}

std::string UnitFor(const std::string& directory) {
  const std::string quoted = QuotedInUnit(directory);
  std::string unit(kQuillonWebUnit);
  for (std::size_t at = unit.find(kPlaceholder); at != std::string::npos;
       at = unit.find(kPlaceholder, at + quoted.size())) {
    unit.replace(at, kPlaceholder.size(), quoted);
  }
  return unit;
}

// Readable for everybody, as units are, also where root keeps his own files to himself: whoever
// looks into the service reads it, and systemd warns of another mode.
void WriteUnit(const std::string& path, const std::string& unit) {
  constexpr mode_t kUnitMode = 0644;
  ReplaceFile(path, unit, OldFile::kStays);
  if (chmod(path.c_str(), kUnitMode) == 0) return;
  throw FileFailure("cannot change the mode of " + path + ": " + std::strerror(errno));
}

void Systemctl(const std::string& verb, const std::string& argument) {
  RunProgram({"systemctl", verb, argument});
}

void ReloadUnits() {
  RunProgram({"systemctl", "daemon-reload"});
}

// Asks for nothing but an answer, so that a machine without systemd is left untouched.
void RequireSystemd() {
  Systemctl("show", "--property=Version");
}

void EnsureUser() {
  if (getpwnam(kUser) != nullptr) return;
  RunProgram({"useradd", "--system", "--user-group", "--no-create-home", "--home-dir", "/",
              "--shell", "/usr/sbin/nologin", "--comment", "Quillon Web", kUser});
}

// A step back must not hide the failure that made it necessary.
template <typename Step>
void TryStep(Step&& step) {
  try {
    step();
  } catch (const Failure&) {
    // The step before it has failed already, and says why.
  }
}

void PutBack(const std::string& path, const std::optional<std::string>& oldUnit) {
  if (oldUnit) return WriteUnit(path, *oldUnit);
  DeleteFile(path);
}

}  // namespace

std::string EscapedInUnit(std::string_view path) {
  std::string escaped;
  for (const char character : path) {
    escaped += character;
    if (character == '%') escaped += character;
  }
  return escaped;
}

ServiceRegistry::ServiceRegistry(std::string unitFolder) : unitFolder_(std::move(unitFolder)) {}

void ServiceRegistry::InstallService(const std::string& name, const std::string& directory) const {
  const std::string unitName = UnitName(name);
  const std::string path = unitFolder_ + "/" + unitName;
  const std::string unit = UnitFor(directory);
  RequireSystemd();
  std::optional<std::string> oldUnit;
  if (FileExists(path)) oldUnit = ReadFileBytes(path);
  WriteUnit(path, unit);
  try {
    ReloadUnits();
    Systemctl("enable", unitName);
    EnsureUser();
  } catch (const Failure&) {
    if (!oldUnit) TryStep([&] { Systemctl("disable", unitName); });
    TryStep([&] { PutBack(path, oldUnit); });
    TryStep(ReloadUnits);
    throw;
  }
}

void ServiceRegistry::UninstallService(const std::string& name) const {
  const std::string unitName = UnitName(name);
  const std::string path = unitFolder_ + "/" + unitName;
  if (!FileExists(path)) throw Failure("the service is not registered: there is no " + path);
  Systemctl("disable", unitName);
  try {
    DeleteFile(path);
  } catch (const Failure&) {
    TryStep([&] { Systemctl("enable", unitName); });
    throw;
  }
  ReloadUnits();
}

}  // namespace quillon
