// The steps of a restore: refusals, the end of one that was killed, a copy in a folder of the
// directory, the exchange.
#include "quillondb/backup/restore.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <vector>

#include "import/schema/databases.h"
#include "installation_owner.h"
#include "platform/failure.h"
#include "platform/instance_lock.h"
#include "quillondb/backup/database.h"
#include "quillondb/backup/digest.h"
#include "quillondb/backup/manifest.h"
#include "quillondb/backup/restore_exchange.h"
#include "quillondb/database_use.h"
#include "quillondb/folders.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

using Entries = std::vector<ManifestEntry>;

// The installation directory, which goes again where it was made for a restore that failed.
class Home {
 public:
  explicit Home(const fs::path& path) : path_(path), isNew_(!IsThere(path)) { MakeHome(path); }
  ~Home() {
    std::error_code ignored;  // it holds something then
    if (isNew_) fs::remove(path_, ignored);
  }
  Home(const Home&) = delete;
  Home& operator=(const Home&) = delete;

  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
  bool isNew_;
};

void RefuseSame(const std::string& source, const std::string& directory) {
  std::error_code ignored;
  if (!fs::equivalent(source, directory, ignored)) return;
  throw FileFailure(source + " is the backup itself; name the directory of an installation, too");
}

void RequireHeld(const InstanceLock& lock, const std::string& directory) {
  if (lock.held()) return;
  throw FileFailure("the service, or another restore, runs in " + directory +
                    "; stop the service ('systemctl stop quillon-web'), and restore again");
}

// The service holds the directory itself, but the management product or a tool may write, too: into
// a file that has no name any more.
void RefuseInUse(const fs::path& home) {
  for (const Database& database : kDatabases) {
    const std::string path = (home / database.fileName).string();
    if (!IsDatabaseInUse(path)) continue;
    throw DatabaseFailure(path + " is in use by another program; end it, and restore again");
  }
}

Entries ReadVerified(const std::string& source, const OwnerRights& owner) {
  const CallersRights caller(owner);
  Entries entries = ReadManifest(source);
  for (const ManifestEntry& entry : entries) RequireSame(source, entry);
  return entries;
}

void RefuseOverwriting(const fs::path& home, const Entries& entries) {
  for (const ManifestEntry& entry : entries) {
    for (const std::string& file : WithItsSideFiles(entry.file)) {
      if (!IsThere(home / file)) continue;
      throw FileFailure((home / file).string() +
                        " is there already; 'quillondb restore --replace' puts the backup in its"
                        " place");
    }
  }
}

// ---- links that stay ----

bool IsOfSite(const std::string& file) {
  return file.starts_with("WebReports/");
}

bool LeadsToSame(const fs::path& link, const ManifestEntry& entry) {
  try {
    const std::optional<SourceFile> target = SourceFile::OpenIfThere(link.string());
    return target && Sha256Of(*target) == entry.sha256;
  } catch (const FileFailure&) {
    return false;
  }
}

// An installation of a package has links to its configuration. One that leads to the backup's bytes
// goes on leading there; another one would show what the backup does not.
bool Stays(const fs::path& home, const ManifestEntry& entry, const Tell& tell) {
  const fs::path link = home / entry.file;
  std::error_code ignored;
  if (!IsOfSite(entry.file) || !fs::is_symlink(fs::symlink_status(link, ignored))) return false;
  const bool stays = LeadsToSame(link, entry);
  const std::string target = fs::read_symlink(link, ignored).string();
  tell(stays ? fmt::format("{}: stays a link to {}, which is the same", entry.file, target)
             : fmt::format("{}: a file in the place of the link to {}", entry.file, target));
  return stays;
}

// ---- the copy ----

// The new files in a folder of the directory, which goes at the end, whatever it still holds.
class NewFiles {
 public:
  explicit NewFiles(const fs::path& home) : folder_(home / kNewFolder) {
    MakeFolder(folder_, kPrivateFolderMode);
  }
  ~NewFiles() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  NewFiles(const NewFiles&) = delete;
  NewFiles& operator=(const NewFiles&) = delete;

  const fs::path& folder() const { return folder_; }

  // A copy of the backup's file that is what the manifest tells, on the disk.
  void Take(const SourceFile& source, const ManifestEntry& entry) const {
    constexpr mode_t kSiteFileMode = 0644;
    const std::string copy = (folder_ / entry.file).string();
    MakeParentFolder(copy);
    CopyFile(source, copy, IsOfSite(entry.file) ? kSiteFileMode : kPrivateFileMode);
    RequireSame(folder_.string(), entry);
    const auto database = std::ranges::find(kDatabases, entry.file, &Database::fileName);
    if (database != kDatabases.end()) RequireWholeCopy(copy, *database, "take another backup");
  }

 private:
  fs::path folder_;
};

SourceFile OpenAsCaller(const std::string& path, const OwnerRights& owner) {
  const CallersRights caller(owner);
  return SourceFile::Open(path);
}

// The names of the copies.
std::vector<std::string> TakeAll(const NewFiles& files, const std::string& source,
                                 const Entries& entries, const OwnerRights& owner,
                                 const Tell& tell) {
  std::vector<std::string> names;
  for (const ManifestEntry& entry : entries) {
    files.Take(OpenAsCaller(source + "/" + entry.file, owner), entry);
    tell(entry.file + ": verified");
    names.push_back(entry.file);
  }
  return names;
}

}  // namespace

std::string RestoreInstallation(const std::string& source, const std::string& directory,
                                bool replace, const Tell& tell) {
  RefuseSame(source, directory);
  const Home made(directory);
  const fs::path& home = made.path();
  const OwnerRights owner(directory);
  const InstanceLock lock(directory);
  RequireHeld(lock, directory);
  RefuseInUse(home);
  EndKilledRestore(home, replace, tell);
  Entries entries = ReadVerified(source, owner);
  if (!replace) RefuseOverwriting(home, entries);
  std::erase_if(entries, [&](const ManifestEntry& entry) { return Stays(home, entry, tell); });
  MakeFolders(home);
  const NewFiles files(home);
  const std::vector<std::string> names = TakeAll(files, source, entries, owner, tell);
  RefuseInUse(home);
  PutInPlace(home, files.folder(), names);
  std::error_code ignored;  // what is left of it is deleted by the next restore
  fs::remove_all(home / kEndedFolder, ignored);
  return fmt::format("Restored {} files of {} in {}; 'quillondb check {}' tells whether all fits",
                     names.size(), source, directory, directory);
}

}  // namespace quillon
