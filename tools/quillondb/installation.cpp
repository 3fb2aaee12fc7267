// The steps of a new installation.
#include "quillondb/installation.h"

#include <filesystem>
#include <fstream>

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

void CreateFolders(const fs::path& directory) {
  fs::create_directories(directory);
  for (const char* folder : kFolders) fs::create_directory(directory / folder);
}

void WriteMorvaneIni(const fs::path& path) {
  if (fs::exists(path)) return;
  std::ofstream file(path, std::ios::binary);
  file << kMorvaneIniText;
  file.close();
  if (!file) throw FileFailure("cannot write " + path.string());
}

// The first stylesheet; from then on the operator's console writes it.
void WriteStylesheet(const fs::path& path) {
  if (fs::exists(path)) return;
  ReplaceFile(path.string(), StylesheetText(FindTheme(kDefaultTheme)), OldFile::kStays);
}

}  // namespace

// The databases come last: they alone refuse to be made twice, so a run that failed before
// them can simply be repeated.
void CreateInstallation(const std::string& directory) {
  CreateFolders(directory);
  WriteMorvaneIni(fs::path(directory) / kMorvaneIni);
  WriteStylesheet(fs::path(directory) / "WebReports" / "qws.css");
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
