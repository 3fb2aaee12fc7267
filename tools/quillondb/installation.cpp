// The steps of a new installation.
#include "quillondb/installation.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "import/schema/creation.h"
#include "import/schema/databases.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "quillondb/folders.h"
#include "render/stylesheet.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

// Where the traps go: the management product on this machine, at its usual port.
constexpr const char* kMorvaneIniText =
    "ServerIpAddr=127.0.0.1\r\n"
    "ServerTrapPort=162\r\n";

// A file that is there belongs to the operator and stays.
void WriteIfMissing(const fs::path& path, std::string_view text) {
  if (!PathExists(path.string())) ReplaceFile(path.string(), text, OldFile::kStays);
}

}  // namespace

// Another installation is refused before anything is added to it. The databases come last, so
// that a run that failed before them can simply be repeated.
void CreateInstallation(const std::string& directory) {
  const fs::path home(directory);
  RefuseExistingDatabases(directory);
  MakeHome(home);
  MakeFolders(home);
  WriteIfMissing(home / kMorvaneIni, kMorvaneIniText);
  WriteIfMissing(home / "WebReports" / "qws.css", StylesheetText(FindTheme(kDefaultTheme)));
  CreateDatabases(directory);
}

void SetListenerPort(const std::string& directory, int port) {
  RequireDatabases(directory);
  SqliteFile::Open(directory + "/Quillon.mdb")
      .Prepare("UPDATE Settings_WebServer SET TcpPort = ?")
      .Run(port);
}

bool HasNoDatabase(const std::string& directory) {
  return std::ranges::none_of(kDatabases, [&](const Database& database) {
    const fs::path path = fs::path(directory) / database.fileName;
    return std::ranges::any_of(WithSideFiles(path.string()), IsThere);
  });
}

void RequireDatabases(const std::string& directory) {
  for (const Database& database : kDatabases) {
    const fs::path path = fs::path(directory) / database.fileName;
    std::error_code failure;
    const fs::file_status status = fs::status(path, failure);
    if (fs::is_regular_file(status)) continue;
    if (!fs::status_known(status)) {
      throw FileFailure(path.string() + ": " + failure.message() +
                        "; call this program as the installation's owner, or as root");
    }
    throw FileFailure(path.string() + " is missing; " +
                      (HasNoDatabase(directory) ? "'quillondb create' makes an installation"
                                                : "restore a backup ('quillondb restore')"));
  }
}

}  // namespace quillon
