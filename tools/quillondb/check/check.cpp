// The check of the directory, a part after the other. One that fails is a finding and hides nothing
// of the others; what takes long comes last.
#include "quillondb/check/check.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <optional>
#include <set>
#include <vector>

#include "import/schema/databases.h"
#include "installation_owner.h"
#include "platform/clock.h"
#include "platform/failure.h"
#include "platform/terminal_text.h"
#include "quillondb/backup/restore.h"
#include "quillondb/check/access.h"
#include "quillondb/check/brief.h"
#include "quillondb/check/database.h"
#include "quillondb/check/files.h"
#include "quillondb/check/findings.h"
#include "quillondb/check/marks.h"
#include "quillondb/check/morvane_ini.h"
#include "quillondb/check/opening.h"
#include "quillondb/check/sockets.h"
#include "quillondb/check/system.h"
#include "quillondb/check/tables.h"
#include "quillondb/check/unit.h"
#include "quillondb/check/words.h"
#include "service/settings.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

// A larger database is read whole in seconds, for which a start should not wait.
constexpr std::uintmax_t kMostAtAStart = 100'000'000;
constexpr std::uintmax_t kAnySize = std::numeric_limits<std::uintmax_t>::max();

// Tells what the parts find. Two of them can come upon the same, which is told once.
class Telling {
 public:
  explicit Telling(const TellFinding& tell) : tell_(tell) {}

  // Runs a part; true where it has found nothing.
  template <typename Part>
  bool Run(Part&& part) {
    FindingLines findings;
    try {
      part(findings);
    } catch (const DatabaseFailure& failure) {
      findings.push_back(FailureFinding(failure.what()));
    } catch (const std::exception& failure) {
      findings.emplace_back(failure.what());
    }
    for (const std::string& finding : findings) Tell(TerminalText(finding));
    return findings.empty();
  }

  bool hasTold() const { return !told_.empty(); }

 private:
  void Tell(const std::string& finding) {
    if (told_.insert(finding).second) tell_(finding);
  }

  const TellFinding& tell_;
  std::set<std::string> told_;
};

void CheckSurroundings(const std::string& directory, const SqliteFile& settings,
                       const SocketUser& by, Telling& telling) {
  std::string address = Settings().ServerIpAddr;
  telling.Run([&](FindingLines& findings) {
    address = CheckMorvaneIni(directory, settings, by.unit, by.user, findings);
  });
  telling.Run(
      [&](FindingLines& findings) { CheckSockets(directory, settings, address, by, findings); });
}

// The database where it can be read; null else, which is told.
const SqliteFile* CheckedTables(const std::string& directory, const OpenDatabases& databases,
                                std::string_view name, Telling& telling) {
  const SqliteFile* const file = databases.Find(name);
  if (file == nullptr) return nullptr;
  bool canBeRead = false;
  telling.Run([&](FindingLines& findings) {
    canBeRead =
        CheckTables(*file, *FindDatabase(name), fs::canonical(directory).string(), findings);
  });
  return canBeRead ? file : nullptr;
}

void CheckOpened(const std::string& directory, const OpenDatabases& databases, const SocketUser& by,
                 Telling& telling) {
  const auto check = [&](const char* name) {
    return CheckedTables(directory, databases, name, telling);
  };
  if (const SqliteFile* const settings = check("Quillon.mdb")) {
    CheckSurroundings(directory, *settings, by, telling);
  }
  if (const SqliteFile* const history = check("History.mdb")) {
    telling.Run(
        [&](FindingLines& findings) { CheckMarks(*history, SystemClock().Now(), findings); });
  }
  check("Reports.mdb");
}

// What is read of the database, the newest of which may stand in its log yet.
std::uintmax_t SizeOf(const fs::path& path) {
  std::uintmax_t bytes = 0;
  for (const char* ending : {"", "-wal"}) {
    std::error_code failure;
    const std::uintmax_t size = fs::file_size(path.string() + ending, failure);
    if (!failure) bytes += size;
  }
  return bytes;
}

void CheckWhole(const fs::path& directory, const OpenDatabases& databases, std::uintmax_t mostBytes,
                Telling& telling) {
  for (const Database& database : kDatabases) {
    const SqliteFile* const file = databases.Find(database.fileName);
    if (file == nullptr || SizeOf(directory / database.fileName) > mostBytes) continue;
    telling.Run([&](FindingLines& findings) {
      FindingLines damage;
      CheckIntegrity(*file, std::string(database.fileName) + ": ", damage);
      for (const std::string& line : damage) findings.push_back(line + std::string(kRestore));
    });
  }
}

void CheckParts(const std::string& directory, const ServiceUser& user, std::uintmax_t mostBytes,
                Telling& telling) {
  const OwnerRights rights(directory);
  const InstalledUnit unit(directory);
  TakeZoneOf(unit);
  telling.Run([&](FindingLines& findings) { CheckDisk(directory, findings); });
  const bool isSettled =
      telling.Run([&](FindingLines& findings) { CheckRestore(directory, findings); });
  telling.Run([&](FindingLines& findings) { CheckAccess(directory, user, findings); });
  telling.Run([&](FindingLines& findings) { CheckFiles(directory, user.name(), findings); });
  telling.Run([&](FindingLines& findings) { CheckWords(directory, user, findings); });
  telling.Run([&](FindingLines& findings) { CheckUnit(directory, unit, user, findings); });
  if (RunsInAUnit()) telling.Run(CheckLocale);
  std::optional<OpenDatabases> databases;
  telling.Run([&](FindingLines& findings) {
    const auto missing = isSettled ? MissingFiles::kAreFindings : MissingFiles::kAreExpected;
    databases.emplace(directory, missing, user, findings);
  });
  if (!databases) return;
  CheckOpened(directory, *databases, {user, unit, rights}, telling);
  CheckWhole(directory, *databases, mostBytes, telling);
}

bool Check(const std::string& directory, std::uintmax_t mostBytes, const TellFinding& tell) {
  Telling telling(tell);
  std::error_code failure;
  const bool isDirectory = fs::is_directory(directory, failure);
  if (!isDirectory && failure != std::errc::permission_denied) {
    telling.Run(
        [&](FindingLines& findings) { findings.push_back(directory + " is no directory"); });
    return false;
  }
  if (!telling.Run([&](FindingLines& findings) { CheckCaller(directory, findings); })) return false;
  const ServiceUser user(directory);
  if (!telling.Run([&](FindingLines& findings) { CheckWayTo(directory, user, findings); })) {
    return false;
  }
  telling.Run([&](FindingLines&) { CheckParts(directory, user, mostBytes, telling); });
  return !telling.hasTold();
}

}  // namespace

bool CheckInstallation(const std::string& directory, const TellFinding& tell) {
  return Check(directory, kAnySize, tell);
}

bool CheckInBrief(const std::string& directory, const TellFinding& tell) {
  BriefTeller teller(tell);
  const bool isWhole =
      Check(directory, kMostAtAStart, [&](const std::string& finding) { teller.Take(finding); });
  teller.End();
  return isWhole;
}

}  // namespace quillon
