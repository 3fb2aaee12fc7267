// The steps of a restore: refusals, the end of one that was killed, a copy in a folder of the
// directory, the exchange.
#include "quillondb/backup/restore.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <list>
#include <optional>
#include <utility>
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

// A file of the backup. It is opened once, and what was judged is what is copied, whatever its name
// is given to meanwhile.
struct BackedUpFile {
  ManifestEntry entry;
  SourceFile file;
};
using BackedUpFiles = std::list<BackedUpFile>;

// The installation directory, which goes again, with the folders that an installation has, where it
// was made for a restore that failed. Those above it stay.
class Home {
 public:
  explicit Home(const fs::path& path) : path_(path), isNew_(!IsThere(path)) { MakeHome(path); }
  ~Home() {
    if (isNew_) RemoveEmpty();
  }
  Home(const Home&) = delete;
  Home& operator=(const Home&) = delete;

  const fs::path& path() const { return path_; }

  void Keep() { isNew_ = false; }

 private:
  // A folder that holds something stays.
  void RemoveEmpty() const {
    std::error_code ignored;
    std::for_each(kFolders.rbegin(), kFolders.rend(),
                  [&](const char* folder) { fs::remove(path_ / folder, ignored); });
    fs::remove(path_, ignored);
  }

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

// Whether the installation's owner can put links into the backup, which would lead root to what is
// not his.
bool IsOwners(const std::string& source, const std::string& directory) {
  std::error_code ignored;
  if (LeadsInside(source, directory)) return true;
  return fs::is_directory(source, ignored) && OwnerOf(source).user == OwnerOf(directory).user;
}

BackedUpFiles OpenVerified(const std::string& source, const OwnerRights& owner) {
  const CallersRights caller(owner);
  BackedUpFiles files;
  for (ManifestEntry& entry : ReadManifest(source)) {
    SourceFile file = SourceFile::Open(source + "/" + entry.file);
    RequireSame(file, entry);
    files.push_back({std::move(entry), std::move(file)});
  }
  return files;
}

void RefuseOverwriting(const fs::path& home, const BackedUpFiles& files) {
  for (const BackedUpFile& backedUp : files) {
    for (const std::string& file : WithItsSideFiles(backedUp.entry.file)) {
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
  void Take(const BackedUpFile& source) const {
    constexpr mode_t kSiteFileMode = 0644;
    const std::string& name = source.entry.file;
    const std::string copy = (folder_ / name).string();
    MakeParentFolder(copy);
    CopyFile(source.file, copy, IsOfSite(name) ? kSiteFileMode : kPrivateFileMode);
    RequireSame(SourceFile::Open(copy), source.entry);
    const Database* const database = FindDatabase(name);
    if (database != nullptr) RequireWholeCopy(copy, *database, "take another backup");
  }

 private:
  fs::path folder_;
};

// The names of the copies.
std::vector<std::string> TakeAll(const NewFiles& copies, const BackedUpFiles& files,
                                 const Tell& tell) {
  std::vector<std::string> names;
  for (const BackedUpFile& file : files) {
    copies.Take(file);
    tell(file.entry.file + ": verified");
    names.push_back(file.entry.file);
  }
  return names;
}

}  // namespace

std::string RestoreInstallation(const std::string& source, const std::string& directory,
                                bool replace, const Tell& tell) {
  RefuseSame(source, directory);
  Home made(directory);
  const fs::path& home = made.path();
  if (IsOwners(source, directory)) BecomeOwner(directory);
  const OwnerRights owner(directory);
  const InstanceLock lock(directory);
  RequireHeld(lock, directory);
  RefuseInUse(home);
  EndKilledRestore(home, replace, tell);
  BackedUpFiles files = OpenVerified(source, owner);
  if (!replace) RefuseOverwriting(home, files);
  std::erase_if(files, [&](const BackedUpFile& file) { return Stays(home, file.entry, tell); });
  MakeFolders(home);
  const NewFiles copies(home);
  const std::vector<std::string> names = TakeAll(copies, files, tell);
  RefuseInUse(home);
  PutInPlace(home, copies.folder(), names);
  made.Keep();
  std::error_code ignored;  // what is left of it is deleted by the next restore
  fs::remove_all(home / kEndedFolder, ignored);
  return fmt::format("Restored {} files of {} in {}; 'quillondb check {}' tells whether all fits",
                     names.size(), source, directory, directory);
}

}  // namespace quillon
