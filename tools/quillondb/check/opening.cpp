// Each file is judged before it is opened.
#include "quillondb/check/opening.h"

#include <fmt/format.h>

#include <filesystem>

#include "platform/failure.h"
#include "quillondb/check/findings.h"
#include "quillondb/folders.h"
#include "quillondb/installation.h"
#include "quillondb/side_files.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

std::string MissingFinding(const fs::path& directory, const std::string& place) {
  const std::string finding = place + "the file is missing";
  if (!HasNoDatabase(directory.string())) return finding + std::string(kRestore);
  return fmt::format("{}; 'quillondb create {}' makes new databases", finding,
                     ShellWord(directory.string()));
}

void CheckMode(const fs::path& path, const std::string& place, FindingLines& findings) {
  constexpr fs::perms kOthers = fs::perms::group_all | fs::perms::others_all;
  std::error_code ignored;
  const fs::file_status status = fs::status(path, ignored);
  if (ignored || (status.permissions() & kOthers) == fs::perms::none) return;
  findings.push_back(fmt::format("{}other users can reach the file; run 'chmod 600 {}'", place,
                                 ShellWord(path.string())));
}

// The file is read a little: opening alone looks at nothing of it.
std::optional<SqliteFile> Open(const fs::path& path, FindingLines& findings) {
  try {
    SqliteFile file = SqliteFile::Open(path.string());
    file.Count("SELECT COUNT(*) FROM sqlite_schema");
    return file;
  } catch (const DatabaseFailure& failure) {
    findings.push_back(FailureFinding(failure.what()));
    return std::nullopt;
  }
}

std::optional<SqliteFile> OpenJudged(const fs::path& path, const std::string& place,
                                     const ServiceUser& user, FindingLines& findings) {
  try {
    RequireOrdinarySideFiles(path.string());
  } catch (const DatabaseFailure& failure) {
    findings.emplace_back(failure.what());
    return std::nullopt;
  }
  CheckMode(path, place, findings);
  return user.May(kMayRead | kMayWrite, path.string()) ? Open(path, findings) : std::nullopt;
}

}  // namespace

OpenDatabases::OpenDatabases(const std::string& directory, MissingFiles missing,
                             const ServiceUser& user, FindingLines& findings) {
  for (std::size_t i = 0; i < kDatabases.size(); ++i) {
    const std::string name(kDatabases[i].fileName);
    const fs::path path = fs::path(directory) / name;
    if (IsThere(path)) {
      files_[i] = OpenJudged(path, name + ": ", user, findings);
    } else if (missing == MissingFiles::kAreFindings) {
      findings.push_back(MissingFinding(directory, name + ": "));
    }
  }
}

const SqliteFile* OpenDatabases::Find(std::string_view fileName) const {
  const Database* const database = FindDatabase(fileName);
  if (database == nullptr) return nullptr;
  const auto& file = files_[static_cast<std::size_t>(database - kDatabases.data())];
  return file ? &*file : nullptr;
}

}  // namespace quillon
