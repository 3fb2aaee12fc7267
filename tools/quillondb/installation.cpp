// The steps of a new installation.
#include "quillondb/installation.h"

#include <filesystem>
#include <string_view>

#include "import/schema/creation.h"
#include "import/schema/databases.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "render/stylesheet.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

// Where the traps go: the management product on this machine, at its usual port.
constexpr const char* kMorvaneIniText =
    "ServerIpAddr=127.0.0.1\r\n"
    "ServerTrapPort=162\r\n";

// A database and what can stand beside it; none of them may be there before a new one.
constexpr const char* kDatabaseEndings[] = {"", "-wal", "-shm", "-journal"};

void RefuseExisting(const fs::path& path) {
  std::error_code ignored;
  if (!fs::exists(fs::symlink_status(path, ignored))) return;
  throw FileFailure(path.string() + " exists already and is not overwritten; move it away first");
}

void RefuseExistingDatabases(const fs::path& directory) {
  for (const Database& database : kDatabases) {
    for (const char* ending : kDatabaseEndings) {
      RefuseExisting(directory / (std::string(database.fileName) + ending));
    }
  }
}

void MakeFolder(const fs::path& path) {
  std::error_code failure;
  fs::create_directories(path, failure);
  if (failure) throw FileFailure(path.string() + ": cannot be made: " + failure.message());
}

// Whoever can open the directory could hold the lock by which one service runs in it.
void MakeHome(const fs::path& directory) {
  std::error_code ignored;
  if (fs::is_directory(directory, ignored)) return;
  MakeFolder(directory);
  fs::permissions(directory, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec);
}

void MakeFolders(const fs::path& directory) {
  MakeHome(directory);
  for (const char* folder : kFolders) MakeFolder(directory / folder);
}

// A file that is there belongs to the operator and stays.
void WriteIfMissing(const fs::path& path, std::string_view text) {
  if (!PathExists(path.string())) ReplaceFile(path.string(), text, OldFile::kStays);
}

}  // namespace

// Another installation is refused before anything is added to it. The databases come last, so
// that a run that failed before them can simply be repeated.
void CreateInstallation(const std::string& directory) {
  const fs::path home(directory);
  RefuseExistingDatabases(home);
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

void RequireDatabases(const std::string& directory) {
  for (const Database& database : kDatabases) {
    const fs::path path = fs::path(directory) / database.fileName;
    std::error_code ignored;
    if (fs::is_regular_file(path, ignored)) continue;
    throw FileFailure(path.string() + " is missing; 'quillondb create' makes an installation");
  }
}

}  // namespace quillon
