// New databases in memory, from the texts of the real ones.
#include "quillondb/jet/jet_target.h"

namespace quillon {
namespace {

std::string SnmpcDirOf(const std::string& directory) {
  const SqliteFile settings = SqliteFile::Open(directory + "/Quillon.mdb");
  SqliteStatement row = settings.Prepare("SELECT SnmpcDir FROM Settings_General");
  return row.Step() ? row.Text(0) : directory;
}

}  // namespace

SqliteFile NewInstallationOf(std::string_view fileName, const std::string& directory) {
  SqliteFile file = SqliteFile::InMemory();
  for (const Database& database : kDatabases) {
    if (database.fileName == fileName) database.build(file, SnmpcDirOf(directory));
  }
  return file;
}

}  // namespace quillon
