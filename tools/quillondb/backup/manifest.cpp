// Two lines a file: its size, which sha256sum takes for a comment, and its digest.
#include "quillondb/backup/manifest.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "import/schema/databases.h"
#include "platform/failure.h"
#include "platform/text_lines.h"
#include "quillondb/backup/digest.h"
#include "quillondb/backup/files.h"
#include "service/version.h"

namespace quillon {
namespace {

constexpr std::string_view kSize = "# size ";
constexpr std::string_view kBetween = "  ";  // digest and name
constexpr std::size_t kDigestLength = 64;

// A list of all that a backup can hold has some hundred bytes.
constexpr std::uintmax_t kLargestManifest = 65536;

// A name out of a list that somebody changed never leads out of the folder.
bool BelongsToBackup(std::string_view file) {
  return FindDatabase(file) != nullptr ||
         std::ranges::find(kCopiedFiles, file) != kCopiedFiles.end();
}

// The lines of a manifest, one after the other.
class Parser {
 public:
  explicit Parser(std::string path) : path_(std::move(path)) {}

  void Take(std::string_view line) {
    ++number_;
    if (line.starts_with(kSize)) {
      size_ = Size(line.substr(kSize.size()));
    } else if (!line.starts_with('#')) {
      entries_.push_back(Entry(line));
      size_.reset();
    }
  }

  std::vector<ManifestEntry> Entries() const {
    for (const Database& database : kDatabases) {
      if (!Has(database.fileName)) Fail(fmt::format("has no line of {}", database.fileName));
    }
    return entries_;
  }

 private:
  [[noreturn]] void Fail(const std::string& what) const {
    throw FileFailure(path_ + " " + what + "; take another backup");
  }
  [[noreturn]] void FailHere(const std::string& what) const {
    Fail(fmt::format("line {} {}", number_, what));
  }

  bool Has(std::string_view file) const {
    return std::ranges::find(entries_, file, &ManifestEntry::file) != entries_.end();
  }

  std::uintmax_t Size(std::string_view text) const {
    std::uintmax_t size = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), size);
    if (error != std::errc() || end != text.data() + text.size()) FailHere("tells no size");
    return size;
  }

  ManifestEntry Entry(std::string_view line) const {
    const std::string_view digest = line.substr(0, kDigestLength);
    const bool isDigest = digest.size() == kDigestLength &&
                          digest.find_first_not_of("0123456789abcdef") == std::string_view::npos;
    if (!isDigest || !line.substr(kDigestLength).starts_with(kBetween)) FailHere("is no entry");
    const std::string_view file = line.substr(kDigestLength + kBetween.size());
    if (!size_) FailHere("has no size before it");
    if (!BelongsToBackup(file)) FailHere("names a file that is no part of a backup");
    if (Has(file)) FailHere("names a file for the second time");
    return {std::string(file), *size_, std::string(digest)};
  }

  std::string path_;
  int number_ = 0;
  std::optional<std::uintmax_t> size_;  // told by the line before
  std::vector<ManifestEntry> entries_;
};

std::string TextOf(const SourceFile& manifest) {
  std::string text;
  manifest.Read([&](std::string_view piece) {
    text += piece;
    if (text.size() <= kLargestManifest) return;
    throw FileFailure(manifest.path() +
                      " is too large for a list of a backup's files; take another backup");
  });
  return text;
}

}  // namespace

ManifestEntry EntryOf(const std::string& folder, const std::string& file) {
  const SourceFile source = SourceFile::Open(folder + "/" + file);
  return {file, source.Size(), Sha256Of(source)};
}

std::string ManifestText(const std::vector<ManifestEntry>& entries, DateTime made) {
  std::string text = fmt::format(
      "# A backup of Quillon Web {}, made {}.\n# In this folder, 'sha256sum -c {}' verifies it.\n",
      kVersion, DateTimeText(made), kManifestName);
  for (const ManifestEntry& entry : entries) {
    text += fmt::format("{}{}\n{}{}{}\n", kSize, entry.size, entry.sha256, kBetween, entry.file);
  }
  return text;
}

std::vector<ManifestEntry> ReadManifest(const std::string& folder) {
  const auto manifest = SourceFile::OpenIfThere(folder + "/" + kManifestName);
  if (!manifest) {
    throw FileFailure(folder + " is no backup: it has no " + kManifestName +
                      "; name a directory that 'quillondb backup' has made");
  }
  const std::string text = TextOf(*manifest);
  Parser parser(manifest->path());
  for (std::string_view rest = text; !rest.empty();) parser.Take(TakeLine(rest));
  return parser.Entries();
}

void RequireSame(const SourceFile& file, const ManifestEntry& entry) {
  const std::uintmax_t size = file.Size();
  if (size != entry.size) {
    throw FileFailure(fmt::format("{} has {} bytes where {} tells {}; take another backup",
                                  file.path(), size, kManifestName, entry.size));
  }
  if (Sha256Of(file) == entry.sha256) return;
  throw FileFailure(
      fmt::format("{} is not as it was when it was backed up: its SHA-256 differs from"
                  " the one in {}; take another backup",
                  file.path(), kManifestName));
}

}  // namespace quillon
