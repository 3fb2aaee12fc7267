// Judged by lstat: a link could lead anywhere.
#include "quillondb/side_files.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "platform/failure.h"

namespace quillon {
namespace {

bool IsThere(const std::string& path, struct stat& status) {
  if (lstat(path.c_str(), &status) == 0) return true;
  if (errno == ENOENT || errno == ENOTDIR) return false;
  throw DatabaseFailure(path + ": " + std::strerror(errno));
}

void RequireOrdinaryIfThere(const std::string& path) {
  struct stat status {};
  if (!IsThere(path, status) || S_ISREG(status.st_mode)) return;
  throw DatabaseFailure(path +
                        " is no ordinary file, so the database is not opened; move it away, and "
                        "restore a backup ('quillondb restore --replace')");
}

// Databases in write-ahead mode, as all of ours, have none.
void RefuseJournal(const std::string& database) {
  const std::string path = database + "-journal";
  struct stat status {};
  if (!IsThere(path, status)) return;
  throw DatabaseFailure(
      path +
      " is no file of the service's: another program writes into the database, or "
      "was killed while it did; end that program, and where the file stays, "
      "restore a backup ('quillondb restore --replace')");
}

}  // namespace

std::vector<std::string> WithSideFiles(const std::string& database) {
  std::vector<std::string> paths = {database};
  for (const char* ending : kSideFiles) paths.push_back(database + ending);
  return paths;
}

void RequireOrdinarySideFiles(const std::string& database) {
  for (const std::string& path : WithSideFiles(database)) RequireOrdinaryIfThere(path);
  RefuseJournal(database);
}

}  // namespace quillon
