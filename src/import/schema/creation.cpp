// The files of the databases: refused where one exists, made with the mode 0600, filled in one
// transaction each, taken away again when anything fails.
#include "import/schema/creation.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

#include "import/schema/databases.h"
#include "platform/failure.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

// A mail password stands in the settings. SQLite gives its side files the mode of their file.
constexpr mode_t kFileMode = 0600;

// The files made so far, which go again unless all were made.
class NewFiles {
 public:
  NewFiles() = default;
  ~NewFiles() {
    for (const std::string& path : paths_) Remove(path);
  }
  NewFiles(const NewFiles&) = delete;
  NewFiles& operator=(const NewFiles&) = delete;

  // Makes an empty file, never over another one.
  void Make(const std::string& path) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kFileMode);
    if (descriptor < 0) throw FileFailure("cannot create " + path + ": " + std::strerror(errno));
    close(descriptor);
    paths_.push_back(path);
  }

  void Keep() { paths_.clear(); }

 private:
  static void Remove(const std::string& path) {
    for (const std::string& file : WithSideFiles(path)) unlink(file.c_str());
  }

  std::vector<std::string> paths_;
};

void RefuseExisting(const std::string& path) {
  if (!fs::exists(fs::symlink_status(path))) return;
  throw FileFailure(path + " exists already and is not overwritten; move it away first");
}

void Fill(const Database& database, const std::string& path, const std::string& directory) {
  const SqliteFile file = SqliteFile::Open(path);
  file.RunScript("PRAGMA journal_mode = WAL");
  SqliteTransaction transaction(file);
  database.build(file, directory);
  transaction.Commit();
}

// The directory as an absolute path, without "." and without a slash at the end.
std::string AbsoluteDirectory(const std::string& directory) {
  const fs::path path = fs::absolute(directory).lexically_normal();
  return path.has_filename() ? path.string() : path.parent_path().string();
}

}  // namespace

void RefuseExistingDatabases(const std::string& directory) {
  for (const Database& database : kDatabases) {
    const fs::path path = fs::path(directory) / database.fileName;
    for (const std::string& file : WithSideFiles(path.string())) RefuseExisting(file);
  }
}

void CreateDatabases(const std::string& directory) {
  const std::string home = AbsoluteDirectory(directory);
  const auto pathOf = [&](const Database& database) {
    return home + "/" + std::string(database.fileName);
  };
  RefuseExistingDatabases(home);
  NewFiles files;
  for (const Database& database : kDatabases) {
    files.Make(pathOf(database));
    Fill(database, pathOf(database), home);
  }
  files.Keep();
}

}  // namespace quillon
