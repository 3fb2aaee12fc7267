// The steps of a backup: a folder under another name, the databases, the files, the manifest, the
// name.
#include "quillondb/backup/backup.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <vector>

#include "import/schema/databases.h"
#include "installation_owner.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "quillondb/backup/database.h"
#include "quillondb/backup/manifest.h"
#include "quillondb/folders.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

constexpr int kToldPercents = 10;  // between two lines

std::string WithoutSlash(const std::string& directory) {
  const fs::path path = fs::path(directory).lexically_normal();
  return path.has_filename() ? path.string() : path.parent_path().string();
}

void RefuseTarget(const std::string& target) {
  RefuseExisting(target, "name a new directory");
}

// A folder that the caller may write and not read cannot be synced by him.
void SyncNames(const std::string& folder) {
  const bool mayRead = faccessat(AT_FDCWD, folder.c_str(), R_OK, AT_EACCESS) == 0;
  if (mayRead || errno != EACCES) SyncFile(folder);
}

// A folder beside the target, of the caller's alone, that goes again unless it gets the name.
class NewFolder {
 public:
  explicit NewFolder(const std::string& target) : path_(target + "~XXXXXX") {
    if (mkdtemp(path_.data()) != nullptr) return;
    throw FileFailure("cannot create " + target + ": " + std::strerror(errno));
  }
  ~NewFolder() {
    std::error_code ignored;
    if (!named_) fs::remove_all(path_, ignored);
  }
  NewFolder(const NewFolder&) = delete;
  NewFolder& operator=(const NewFolder&) = delete;

  const std::string& path() const { return path_; }

  // The name is on the disk afterwards.
  void Name(const std::string& target) {
    RefuseTarget(target);
    std::error_code failure;
    fs::rename(path_, target, failure);
    if (failure) throw FileFailure("cannot create " + target + ": " + failure.message());
    path_ = target;
    SyncNames(fs::absolute(target).parent_path().string());
    named_ = true;
  }

 private:
  std::string path_;
  bool named_ = false;
};

// Tells each tenth of a database once.
class TenthTeller {
 public:
  TenthTeller(std::string name, const Tell& tell) : name_(std::move(name)), tell_(tell) {}

  void operator()(int percent) {
    const int tenth = percent / kToldPercents;
    if (tenth == told_) return;
    told_ = tenth;
    tell_(fmt::format("{}: {} %", name_, tenth * kToldPercents));
  }

 private:
  std::string name_;
  const Tell& tell_;
  int told_ = 0;
};

void CopyVerified(const std::string& directory, const std::string& folder, const Database& database,
                  const Tell& tell) {
  const std::string name(database.fileName);
  const std::string copy = folder + "/" + name;
  MakeFile(copy);
  TenthTeller teller(name, tell);
  CopyDatabase(directory, name, copy, [&](int percent) { teller(percent); });
  RequireWholeCopy(copy, database, "'quillondb check' tells more of the original");
  SyncFile(copy);
}

// Root reads what its owner may read, wherever a link leads.
std::optional<SourceFile> OpenAsOwner(const std::string& directory, const std::string& file) {
  const OwnerRights owner(directory);
  return SourceFile::OpenIfThere(directory + "/" + file);
}

// The history, the last of the databases, is copied first: a report that ends meanwhile is marked
// there when its rows stand in the others. The mark without the rows would import an empty day.
std::vector<std::string> CopyDatabases(const std::string& directory, const std::string& folder,
                                       const Tell& tell) {
  std::vector<std::string> copied;
  std::array<Database, kDatabases.size()> databases = kDatabases;
  std::ranges::reverse(databases);
  for (const Database& database : databases) {
    CopyVerified(directory, folder, database, tell);
    copied.emplace_back(database.fileName);
  }
  return copied;
}

std::vector<std::string> CopyAll(const std::string& directory, const std::string& folder,
                                 const Tell& tell) {
  std::vector<std::string> copied = CopyDatabases(directory, folder, tell);
  for (const std::string file : kCopiedFiles) {
    const std::optional<SourceFile> source = OpenAsOwner(directory, file);
    if (!source) continue;
    MakeParentFolder(folder + "/" + file);
    CopyFile(*source, folder + "/" + file);
    copied.push_back(file);
  }
  return copied;
}

// The manifest is written behind all that it lists.
std::uintmax_t WriteManifest(const std::string& folder, const std::vector<std::string>& files,
                             DateTime now) {
  std::vector<ManifestEntry> entries;
  std::uintmax_t bytes = 0;
  for (const std::string& file : files) {
    entries.push_back(EntryOf(folder, file));
    bytes += entries.back().size;
  }
  WriteNewFile(folder + "/" + kManifestName, ManifestText(entries, now));
  return bytes;
}

}  // namespace

std::string BackUpInstallation(const std::string& directory, const std::string& target,
                               DateTime now, const Tell& tell) {
  RequireDatabases(directory);
  const std::string place = WithoutSlash(target);
  const bool isInside = LeadsInside(place, directory);
  if (isInside) BecomeOwner(directory);
  RefuseTarget(place);
  NewFolder folder(place);
  const std::vector<std::string> files = CopyAll(directory, folder.path(), tell);
  const std::uintmax_t bytes = WriteManifest(folder.path(), files, now);
  SyncCopiedFolders(folder.path());
  folder.Name(place);
  return fmt::format("Backed up {} files of {}, {} bytes, to {}{}", files.size(), directory, bytes,
                     place, isInside ? ", inside of the installation: it goes with that" : "");
}

}  // namespace quillon
