// Files on POSIX calls.
#include "platform/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <vector>

#include "platform/descriptor.h"
#include "platform/failure.h"
#include "platform/text_lines.h"

namespace quillon {
namespace {

constexpr mode_t kFileMode = 0644;
constexpr std::size_t kPiece = std::size_t{64} * 1024;  // of a file that is read line by line

// A name as failures quote it. Names come out of URLs and can be as long as those.
std::string Shown(std::string_view name) {
  constexpr std::size_t kLongest = 255;  // of a file name; a path shows its end
  if (name.size() <= kLongest) return std::string(name);
  return "..." + std::string(name.substr(name.size() - kLongest));
}

[[noreturn]] void Fail(const std::string& what, const std::string& path) {
  const std::string reason = std::strerror(errno);
  throw FileFailure(what + " " + Shown(path) + ": " + reason);
}

bool IsPlainName(std::string_view name) {
  constexpr std::string_view kForbidden("/\\\0", 3);
  return !name.empty() && name != "." && name != ".." &&
         name.find_first_of(kForbidden) == std::string_view::npos;
}

// Up to `size` bytes; 0 at the end of the file.
std::size_t ReadSome(int descriptor, char* bytes, std::size_t size, const std::string& path) {
  while (true) {
    const ssize_t count = read(descriptor, bytes, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) Fail("cannot read", path);
  }
}

// Whether the text holds its first line whole: behind a CR an LF may follow.
bool BeginsWithLine(std::string_view text, bool isRestOfFile) {
  if (isRestOfFile) return !text.empty();
  const std::size_t end = text.find_first_of("\r\n");
  return end != std::string_view::npos && end + 1 < text.size();
}

void WriteAll(int descriptor, std::string_view bytes, const std::string& path) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) Fail("cannot write", path);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

// The temporary name stands in the file's own folder and keeps its ending, so that
// clearing the folder by "*" or "*.htm" takes a forgotten one along. The "~" in front
// keeps it apart from every name that a request can form.
std::string TemporaryPath(const std::string& path) {
  const std::size_t nameStart = path.rfind('/') + 1;
  const std::size_t ending = path.rfind('.');
  const bool hasEnding = ending != std::string::npos && ending > nameStart;
  return path.substr(0, nameStart) + "~new" + (hasEnding ? path.substr(ending) : std::string());
}

// The pattern for fnmatch, in which "*" alone is special.
std::string StarPattern(const std::string& pattern) {
  std::string escaped;
  for (const char character : pattern) {
    if (character == '?' || character == '[' || character == '\\') escaped += '\\';
    escaped += character;
  }
  return escaped;
}

}  // namespace

std::string PlainFilePath(const std::string& folder, std::string_view name) {
  if (!IsPlainName(name)) throw FileFailure("not a plain file name: " + Shown(name));
  return folder + "/" + std::string(name);
}

bool PlainFileExists(const std::string& folder, std::string_view name) {
  return IsPlainName(name) && FileExists(PlainFilePath(folder, name));
}

bool FileExists(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool PathExists(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0;
}

std::string ReadFileBytes(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat status {};
  if (file.get() < 0 || fstat(file.get(), &status) != 0) Fail("cannot open", path);
  std::string bytes(static_cast<std::size_t>(status.st_size), ' ');
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const std::size_t count =
        ReadSome(file.get(), bytes.data() + filled, bytes.size() - filled, path);
    if (count == 0) break;
    filled += count;
  }
  bytes.resize(filled);
  return bytes;
}

void ReadLines(const std::string& path, const std::function<void(std::string_view line)>& handler) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (file.get() < 0) Fail("cannot open", path);
  std::string pending;
  std::string piece(kPiece, ' ');
  bool atEnd = false;
  while (!atEnd) {
    const std::size_t count = ReadSome(file.get(), piece.data(), piece.size(), path);
    atEnd = count == 0;
    pending.append(piece, 0, count);
    std::string_view rest = pending;
    while (BeginsWithLine(rest, atEnd)) handler(TakeLine(rest));
    pending.erase(0, pending.size() - rest.size());
  }
}

void TouchFile(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, kFileMode));
  if (file.get() < 0) Fail("cannot create", path);
}

void ReplaceFile(const std::string& path, std::string_view bytes, OldFile onFailure) {
  const std::string temporary = TemporaryPath(path);
  try {
    const Descriptor file(
        open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kFileMode));
    if (file.get() < 0) Fail("cannot create", path);
    WriteAll(file.get(), bytes, path);
    if (rename(temporary.c_str(), path.c_str()) != 0) Fail("cannot replace", path);
  } catch (const FileFailure&) {
    unlink(temporary.c_str());
    if (onFailure == OldFile::kGoes) unlink(path.c_str());
    throw;
  }
}

void AppendToFile(const std::string& path, std::string_view bytes) {
  const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, kFileMode));
  struct stat before {};
  if (file.get() < 0 || fstat(file.get(), &before) != 0) Fail("cannot open", path);
  try {
    WriteAll(file.get(), bytes, path);
  } catch (const FileFailure&) {
    // A piece without its line end would spoil what is appended next. Where this fails as well,
    // the first failure is the one to tell.
    static_cast<void>(ftruncate(file.get(), before.st_size) == 0);
    throw;
  }
}

void SyncFile(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (file.get() < 0 || fsync(file.get()) != 0) Fail("cannot write", path);
}

void MoveFile(const std::string& from, const std::string& to) {
  if (PathExists(to)) throw FileFailure("cannot move to " + Shown(to) + ": it is there already");
  if (rename(from.c_str(), to.c_str()) != 0) Fail("cannot move", from);
}

void DeleteFile(const std::string& path) {
  if (unlink(path.c_str()) != 0) Fail("cannot delete", path);
}

void DeleteMatching(const std::string& folder, const std::string& pattern) {
  const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(folder.c_str()), closedir);
  if (!directory && errno != ENOENT && errno != ENOTDIR) Fail("cannot list", folder);
  if (!directory) return;
  const std::string starPattern = StarPattern(pattern);
  std::vector<std::string> names;
  while (const dirent* entry = readdir(directory.get())) {
    if (fnmatch(starPattern.c_str(), entry->d_name, 0) == 0) names.emplace_back(entry->d_name);
  }
  for (const std::string& name : names) {
    const std::string path = folder + "/" + name;
    if (FileExists(path)) DeleteFile(path);
  }
}

}  // namespace quillon
