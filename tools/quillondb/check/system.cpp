// Room, locale and zone.
#include "quillondb/check/system.h"

#include <fmt/format.h>
#include <sys/statvfs.h>

#include <clocale>
#include <cstdlib>
#include <ctime>

namespace quillon {
namespace {

constexpr std::uintmax_t kMegabyte = 1'000'000;

// The pages of a day, an import's write-ahead log and the history of some weeks find room in it.
constexpr std::uintmax_t kEnoughSpace = 500 * kMegabyte;

// The locale of dates that the environment names; empty where it names none.
std::string NamedLocale() {
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return "";
}

}  // namespace

std::string SpaceFinding(const std::string& directory, std::uintmax_t bytesLeft) {
  if (bytesLeft >= kEnoughSpace) return "";
  return fmt::format(
      "{}: the disk has {} MB left; make room for at least {} MB, or pages and days get"
      " lost",
      directory, bytesLeft / kMegabyte, kEnoughSpace / kMegabyte);
}

// The engine of the databases cannot even read where it cannot write.
void CheckDisk(const std::string& directory, std::vector<std::string>& findings) {
  struct statvfs disk {};
  if (statvfs(directory.c_str(), &disk) != 0) return;
  if ((disk.f_flag & ST_RDONLY) != 0) {
    findings.push_back(directory +
                       ": the disk is mounted for reading alone; see why ('dmesg'), and mount it"
                       " for writing");
  }
  const std::string finding =
      SpaceFinding(directory, static_cast<std::uintmax_t>(disk.f_bavail) * disk.f_frsize);
  if (!finding.empty()) findings.push_back(finding);
}

bool RunsInAUnit() {
  return std::getenv("INVOCATION_ID") != nullptr || std::getenv("NOTIFY_SOCKET") != nullptr;
}

void CheckLocale(std::vector<std::string>& findings) {
  const std::string name = NamedLocale();
  const locale_t locale = newlocale(LC_TIME_MASK, name.c_str(), nullptr);
  if (locale != nullptr) {
    freelocale(locale);
    return;
  }
  findings.push_back(
      fmt::format("the locale '{}' is not on this machine, so days and months have English"
                  " names; generate it ('dpkg-reconfigure locales'), and restart",
                  name));
}

void TakeZoneOf(const InstalledUnit& unit) {
  if (!unit.isThere() || RunsInAUnit()) return;
  unsetenv("TZ");
  tzset();
}

}  // namespace quillon
