// Only names that a restore moves are put back, whatever else lies in the folder.
#include "quillondb/backup/restore_leftovers.h"

#include "import/schema/databases.h"
#include "platform/failure.h"
#include "quillondb/backup/restore_exchange.h"
#include "quillondb/folders.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

struct Leftover {
  const char* folder;
  const char* finding;
};

constexpr Leftover kLeftovers[] = {
    {kOldFolder,
     "a restore was killed before its end, so files of two states lie here; restore again with"
     " --replace, which puts the old ones back first"},
    {kNewFolder,
     "a restore runs, or was killed and left its copies with the mail password in them; where none"
     " runs, delete the folder"},
    {kEndedFolder,
     "a restore was killed behind its end and left the files that it replaced, the mail password in"
     " them; where none runs, delete the folder"},
};

void RequireFolder(const fs::path& path) {
  std::error_code ignored;
  if (!IsThere(path) || fs::is_directory(fs::symlink_status(path, ignored))) return;
  throw FileFailure(path.string() +
                    " is not a folder that a restore has made; delete it, and restore again");
}

void RefusePuttingBack(const fs::path& home) {
  if (!IsThere(home / kOldFolder)) return;
  throw FileFailure((home / kOldFolder).string() +
                    " holds the old files of a restore that was killed;"
                    " 'quillondb restore --replace' puts them back before it begins, and where"
                    " the installation has been used since and is to stay, delete that folder");
}

void RemoveFolder(const fs::path& folder) {
  std::error_code failure;
  fs::remove_all(folder, failure);
  if (failure) throw FileFailure("cannot delete " + folder.string() + ": " + failure.message());
}

// Left beside an old file they would be taken for its own.
void DropSideFiles(const fs::path& database) {
  for (const char* ending : kSideFiles) {
    const std::string file = database.string() + ending;
    std::error_code failure;
    fs::remove(file, failure);
    if (failure) throw FileFailure("cannot delete " + file + ": " + failure.message());
  }
}

// A database comes before its side files: a kill between them lets the next run go on. What lies
// beside an old database's place is a new one's where that is there, and else the old one's yet.
void PutOldFilesBack(const fs::path& home) {
  const fs::path old = home / kOldFolder;
  for (const Database& database : kDatabases) {
    const std::string name(database.fileName);
    if (IsThere(old / name) && IsThere(home / name)) DropSideFiles(home / name);
  }
  for (const std::string& file : ExchangedFiles()) {
    if (IsThere(old / file)) Rename(old / file, home / file);
  }
}

}  // namespace

void EndKilledRestore(const fs::path& home, bool replace, const Tell& tell) {
  for (const Leftover& leftover : kLeftovers) RequireFolder(home / leftover.folder);
  if (!replace) RefusePuttingBack(home);
  if (IsThere(home / kOldFolder)) {
    tell("An earlier restore was killed: its old files are put back first");
    PutOldFilesBack(home);
  }
  for (const Leftover& leftover : kLeftovers) RemoveFolder(home / leftover.folder);
}

void CheckRestore(const std::string& directory, std::vector<std::string>& findings) {
  for (const Leftover& leftover : kLeftovers) {
    if (!IsThere(fs::path(directory) / leftover.folder)) continue;
    findings.push_back(std::string(leftover.folder) + ": " + leftover.finding);
  }
}

}  // namespace quillon
