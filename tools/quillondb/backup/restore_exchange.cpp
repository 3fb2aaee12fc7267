// Old files away, new files in place, the end; each step is one rename.
#include "quillondb/backup/restore_exchange.h"

#include <utility>

#include "import/schema/databases.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "quillondb/backup/files.h"
#include "quillondb/backup/restore_leftovers.h"
#include "quillondb/folders.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

// Renames that are taken back, the last one first, unless all of them were made.
class Exchange {
 public:
  explicit Exchange(const fs::path& home) : home_(home), old_(home / kOldFolder) {
    MakeFolder(old_, kPrivateFolderMode);
  }
  ~Exchange() {
    if (!ended_) TakeBack();
  }
  Exchange(const Exchange&) = delete;
  Exchange& operator=(const Exchange&) = delete;

  void PutAway(const std::string& file) {
    if (!IsThere(home_ / file)) return;
    MakeParentFolder((old_ / file).string());
    Move(home_ / file, old_ / file);
  }

  void PutNew(const fs::path& newFolder, const std::string& file) {
    Move(newFolder / file, home_ / file);
  }

  // From here on the new files stay, whether that is on the disk or not: after a power cut the
  // folder of the old ones has its first name again at the worst.
  void End() {
    SyncCopiedFolders(old_.string());
    SyncCopiedFolders(home_.string());
    Rename(old_, home_ / kEndedFolder);
    ended_ = true;
    try {
      SyncFile(home_.string());
    } catch (const FileFailure&) {
      return;
    }
  }

 private:
  struct Made {
    fs::path from;
    fs::path to;
  };

  void Move(const fs::path& from, const fs::path& to) {
    Rename(from, to);
    moves_.push_back({from, to});
  }

  // Where one of them fails as well, the folder of the old files stays, and 'quillondb check'
  // tells.
  void TakeBack() {
    std::error_code failure;
    for (auto move = moves_.rbegin(); move != moves_.rend() && !failure; ++move) {
      fs::rename(move->to, move->from, failure);
    }
    if (!failure) fs::remove_all(old_, failure);
  }

  fs::path home_;
  fs::path old_;
  std::vector<Made> moves_;
  bool ended_ = false;
};

}  // namespace

std::vector<std::string> WithItsSideFiles(const std::string& file) {
  return FindDatabase(file) != nullptr ? WithSideFiles(file) : std::vector<std::string>{file};
}

std::vector<std::string> ExchangedFiles() {
  std::vector<std::string> files;
  for (const Database& database : kDatabases) {
    for (std::string& file : WithSideFiles(std::string(database.fileName))) {
      files.push_back(std::move(file));
    }
  }
  files.insert(files.end(), kCopiedFiles.begin(), kCopiedFiles.end());
  return files;
}

void Rename(const fs::path& from, const fs::path& to) {
  std::error_code failure;
  fs::rename(from, to, failure);
  if (failure) {
    throw FileFailure("cannot move " + from.string() + " to " + to.string() + ": " +
                      failure.message());
  }
}

void PutInPlace(const fs::path& home, const fs::path& newFolder,
                const std::vector<std::string>& files) {
  Exchange exchange(home);
  for (const std::string& name : files) {
    for (const std::string& file : WithItsSideFiles(name)) exchange.PutAway(file);
  }
  for (const std::string& file : files) exchange.PutNew(newFolder, file);
  exchange.End();
}

}  // namespace quillon
