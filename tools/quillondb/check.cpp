// The check of the directory; the databases are judged in check_database.cpp.
#include "quillondb/check.h"

#include <filesystem>
#include <optional>

#include "import/schema/databases.h"
#include "import/schema/sqlite_file.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "quillondb/check_database.h"
#include "quillondb/installation.h"
#include "service/morvane_ini.h"
#include "service/settings.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

// A file that the site shows, and what becomes of the pages without it.
struct WebFile {
  const char* path;
  const char* hint;
};

constexpr WebFile kWebFiles[] = {
    {"WebReports/Language.ini",
     R"(every word of the pages shows as "n/a"; copy the file from share/WebReports)"},
    {"WebReports/HelpText.txt", "the help is empty; copy the file from share/WebReports"},
    {"WebReports/Favicon.ico", "browsers show no icon; copy the file from share/WebReports"},
    {"WebReports/qws.css", "pages have no colours; choose a theme in the operator's console"},
};

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

void CheckWebFiles(const fs::path& directory, std::vector<std::string>& findings) {
  for (const WebFile& file : kWebFiles) {
    if (FileExists((directory / file.path).string())) continue;
    findings.push_back(std::string(file.path) + ": the file is missing, so " + file.hint);
  }
}

// The directory of the management product; nothing where the settings cannot be read or hold a
// null, which the check of the database tells.
std::optional<std::string> SnmpcDir(const fs::path& directory) {
  try {
    const SqliteFile settings = SqliteFile::Open(directory / "Quillon.mdb");
    SqliteStatement row = settings.Prepare("SELECT SnmpcDir FROM Settings_General");
    if (!row.Step() || row.IsNull(0)) return std::nullopt;
    return row.Text(0);
  } catch (const DatabaseFailure&) {
    return std::nullopt;
  }
}

// The file where the service would look for it: its directory is the one of its program, with
// all links resolved.
std::string MorvaneIniOf(const fs::path& directory, const std::string& snmpcDir) {
  std::error_code ignored;
  Settings settings;
  settings.AppPath = fs::canonical(directory, ignored).string();
  settings.MorvaneDir = snmpcDir;
  return MorvaneIniPath(settings);
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
  const std::string path = MorvaneIniOf(directory, *home);
  if (!FileExists(path)) {
    findings.push_back(path + " is missing; the service ends at once without it");
  }
}

}  // namespace

std::vector<std::string> CheckInstallation(const std::string& directory) {
  if (!IsDirectory(directory)) return {directory + " is no directory"};
  std::vector<std::string> findings;
  for (const Database& database : kDatabases) {
    CheckDatabase(directory, database, findings);
  }
  CheckFolders(directory, findings);
  CheckWebFiles(directory, findings);
  CheckMorvaneIni(directory, findings);
  return findings;
}

}  // namespace quillon
