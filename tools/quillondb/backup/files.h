// What belongs to a backup beside the databases, and copies of files.
#pragma once

#include <sys/types.h>

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/descriptor.h"
#include "quillondb/installation.h"

namespace quillon {

// Files below the directory that are copied where they are there.
inline constexpr std::array<const char*, 5> kCopiedFiles = {
    kMorvaneIni, "WebReports/Language.ini", "WebReports/HelpText.txt", "WebReports/Favicon.ico",
    "WebReports/qws.css"};

// The folders below the directory that those files lie in, and the directory itself.
inline constexpr std::array<const char*, 2> kCopiedFolders = {"", "WebReports"};

// For files and folders that nobody else may read: a mail password stands in them.
inline constexpr mode_t kPrivateFileMode = 0600;
inline constexpr mode_t kPrivateFolderMode = 0700;

// Is told how far the work has come, a line at a time.
using Tell = std::function<void(const std::string& line)>;

// A file that is open for being copied. Who may open it does not matter any more then.
class SourceFile {
 public:
  // Nothing where no such file is there. FileFailure where it may not be read, or is none: a pipe
  // say, at which reading would wait without end.
  static std::optional<SourceFile> OpenIfThere(const std::string& path);
  // FileFailure where no such file is there, too.
  static SourceFile Open(const std::string& path);

  // As messages tell it.
  const std::string& path() const { return path_; }

  std::uintmax_t Size() const;

  // Hands its bytes over from the first one on, a piece after the other.
  void Read(const std::function<void(std::string_view piece)>& handler) const;

 private:
  SourceFile(Descriptor file, std::string path);

  Descriptor file_;
  std::string path_;
};

// Makes an empty file, never over another one, and not through a link.
void MakeFile(const std::string& path);

// The same with the text, or with the bytes of `from`. They are on the disk afterwards.
void WriteNewFile(const std::string& path, std::string_view text);
void CopyFile(const SourceFile& from, const std::string& to, mode_t mode = kPrivateFileMode);

// Makes the folder of that file where it is missing, for its owner alone.
void MakeParentFolder(const std::string& path);

// Returns when the names in those of the copied folders that are there are on the disk.
void SyncCopiedFolders(const std::string& directory);

}  // namespace quillon
