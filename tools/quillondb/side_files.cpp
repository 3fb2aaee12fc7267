// Judged without following links: one could lead anywhere.
#include "quillondb/side_files.h"

#include <filesystem>

#include "import/schema/databases.h"
#include "platform/failure.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

fs::file_status StatusOf(const std::string& path) {
  std::error_code failure;
  const fs::file_status status = fs::symlink_status(path, failure);
  if (fs::status_known(status)) return status;
  throw DatabaseFailure(path + ": " + failure.message());
}

void RequireOrdinaryIfThere(const std::string& path) {
  const fs::file_status status = StatusOf(path);
  if (!fs::exists(status) || fs::is_regular_file(status)) return;
  throw DatabaseFailure(path +
                        " is no ordinary file, so the database is not opened; move it away, and "
                        "restore a backup ('quillondb restore --replace')");
}

// Databases in write-ahead mode, as all of ours, have none.
void RefuseJournal(const std::string& database) {
  const std::string path = database + "-journal";
  if (!fs::exists(StatusOf(path))) return;
  throw DatabaseFailure(
      path +
      " is no file of the service's: another program writes into the database, or "
      "was killed while it did; end that program, and where the file stays, "
      "restore a backup ('quillondb restore --replace')");
}

}  // namespace

void RequireOrdinarySideFiles(const std::string& database) {
  for (const std::string& path : WithSideFiles(database)) RequireOrdinaryIfThere(path);
  RefuseJournal(database);
}

}  // namespace quillon
