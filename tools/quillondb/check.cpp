// The check of the directory; the databases are judged in check_database.cpp.
#include "quillondb/check.h"

#include <filesystem>
#include <optional>

#include "import/schema/databases.h"
#include "import/schema/sqlite_file.h"
#include "platform/failure.h"
#include "quillondb/check_database.h"
#include "quillondb/installation.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

bool IsDirectory(const fs::path& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored);
}

void CheckFolders(const fs::path& directory, std::vector<std::string>& findings) {
  for (const char* folder : kFolders) {
    if (!IsDirectory(directory / folder)) {
      findings.push_back(std::string(folder) + ": the folder is missing");
    }
  }
}

// The directory of the management product; nothing where the settings cannot be read, which the
// check of the database tells.
std::optional<std::string> SnmpcDir(const fs::path& directory) {
  try {
    const SqliteFile settings = SqliteFile::Open(directory / "Quillon.mdb");
    SqliteStatement row = settings.Prepare("SELECT SnmpcDir FROM Settings_General");
    if (!row.Step()) return std::nullopt;
    return row.Text(0);
  } catch (const DatabaseFailure&) {
    return std::nullopt;
  }
}

void CheckMorvaneIni(const fs::path& directory, std::vector<std::string>& findings) {
  const std::optional<std::string> home = SnmpcDir(directory);
  if (!home) return;
  if (home->empty()) {
    findings.emplace_back(
        "Quillon.mdb: SnmpcDir in Settings_General is empty; it has to be the"
        " directory of Morvane.ini");
    return;
  }
  const fs::path path = fs::path(*home) / kMorvaneIni;
  std::error_code ignored;
  if (!fs::is_regular_file(path, ignored)) {
    findings.push_back(path.string() + " is missing; the service ends at once without it");
  }
}

}  // namespace

std::vector<std::string> CheckInstallation(const std::string& directory) {
  if (!IsDirectory(directory)) return {directory + " is no directory"};
  std::vector<std::string> findings;
  for (const Database& database : kDatabases) {
    CheckDatabase(directory, database.fileName, findings);
  }
  CheckFolders(directory, findings);
  CheckMorvaneIni(directory, findings);
  return findings;
}

}  // namespace quillon
