// Copies on POSIX calls. The mode is set when a file is made: later would be too late.
#include "quillondb/backup/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include "platform/failure.h"
#include "platform/files.h"
#include "quillondb/folders.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPiece = std::size_t{256} * 1024;  // of a file that is copied

[[noreturn]] void Fail(const std::string& what, const std::string& path) {
  const std::string reason = std::strerror(errno);
  throw FileFailure("cannot " + what + " " + path + ": " + reason);
}

void RequireOrdinary(const Descriptor& file, const std::string& path) {
  struct stat status {};
  if (fstat(file.get(), &status) != 0) Fail("read", path);
  if (S_ISREG(status.st_mode)) return;
  throw FileFailure(path + " is no ordinary file; move it away, and put one in its place");
}

// A file of its own, open from its making to its end: what the name is given to meanwhile is never
// written through.
class NewFile {
 public:
  NewFile(const std::string& path, mode_t mode)
      : file_(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode)),
        path_(path) {
    if (file_.get() < 0) Fail("create", path_);
  }

  void Write(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t count = write(file_.get(), bytes.data(), bytes.size());
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) Fail("write", path_);
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
  }

  // Returns when its bytes are on the disk.
  void Sync() const {
    if (fsync(file_.get()) != 0) Fail("write", path_);
  }

 private:
  Descriptor file_;
  std::string path_;
};

}  // namespace

SourceFile::SourceFile(Descriptor file, std::string path)
    : file_(std::move(file)), path_(std::move(path)) {}

std::optional<SourceFile> SourceFile::OpenIfThere(const std::string& path) {
  Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (file.get() < 0 && (errno == ENOENT || errno == ENOTDIR)) return std::nullopt;
  if (file.get() < 0) Fail("read", path);
  RequireOrdinary(file, path);
  return SourceFile(std::move(file), path);
}

SourceFile SourceFile::Open(const std::string& path) {
  std::optional<SourceFile> source = OpenIfThere(path);
  if (!source) Fail("read", path);
  return std::move(*source);
}

std::uintmax_t SourceFile::Size() const {
  struct stat status {};
  if (fstat(file_.get(), &status) != 0) Fail("read", path_);
  return static_cast<std::uintmax_t>(status.st_size);
}

// A database can be larger than the memory, so it goes in pieces.
void SourceFile::Read(const std::function<void(std::string_view piece)>& handler) const {
  std::string piece(kPiece, ' ');
  off_t place = 0;
  while (true) {
    const ssize_t count = pread(file_.get(), piece.data(), piece.size(), place);
    if (count == 0) return;
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) Fail("read", path_);
    handler(std::string_view(piece).substr(0, static_cast<std::size_t>(count)));
    place += count;
  }
}

void MakeFile(const std::string& path) {
  const NewFile file(path, kPrivateFileMode);
}

void WriteNewFile(const std::string& path, std::string_view text) {
  const NewFile file(path, kPrivateFileMode);
  file.Write(text);
  file.Sync();
}

void CopyFile(const SourceFile& from, const std::string& to, mode_t mode) {
  const NewFile file(to, mode);
  from.Read([&](std::string_view piece) { file.Write(piece); });
  file.Sync();
}

void MakeParentFolder(const std::string& path) {
  MakeFolder(fs::path(path).parent_path(), kPrivateFolderMode);
}

void SyncCopiedFolders(const std::string& directory) {
  for (const char* name : kCopiedFolders) {
    const fs::path folder = fs::path(directory) / name;
    if (IsThere(folder)) SyncFile(folder.string());
  }
}

}  // namespace quillon
