// Rights by owner, groups and modes. Asking the system would tell of the caller, who mostly is
// root.
#include "quillondb/check/access.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "import/schema/databases.h"
#include "installation_owner.h"
#include "platform/files.h"
#include "quillondb/check/files.h"
#include "quillondb/check/findings.h"
#include "quillondb/installation.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kMayUse = kMayRead | kMayWrite | kMayEnter;

// The folders that the service fills.
constexpr const char* kFilledFolders[] = {"WebReports/Cache", "WebReports/Mail", "Debug"};

std::string NameOf(uid_t user) {
  const passwd* entry = getpwuid(user);
  return entry == nullptr ? std::to_string(user) : entry->pw_name;
}

// The rights as 'chmod u+' takes them.
std::string Letters(mode_t wanted) {
  std::string letters;
  if ((wanted & kMayRead) != 0) letters += 'r';
  if ((wanted & kMayWrite) != 0) letters += 'w';
  if ((wanted & kMayEnter) != 0) letters += 'x';
  return letters;
}

std::string Verbs(mode_t wanted) {
  if (wanted == kMayEnter) return "enter";
  return (wanted & kMayWrite) != 0 ? "read and write" : "read";
}

// What gives the user his rights. Whoever followed a link would hand over its target, which may be
// anything.
std::string HowToAllow(const std::string& path, mode_t wanted, const ServiceUser& user) {
  std::error_code ignored;
  if (fs::is_symlink(path, ignored)) return "put the file itself in the place of this link";
  const std::string word = ShellWord(path);
  return fmt::format("run 'chown {} {}' and 'chmod u+{} {}'", user.name(), word, Letters(wanted),
                     word);
}

// `name` as the finding calls the path.
void CheckPath(const std::string& path, std::string_view name, mode_t wanted,
               const ServiceUser& user, std::vector<std::string>& findings) {
  if (user.May(wanted, path)) return;
  findings.push_back(fmt::format("{}: {}, whom the service runs as, may not {} it; {}", name,
                                 user.name(), Verbs(wanted), HowToAllow(path, wanted, user)));
}

// Each folder above, from the root on: a single one that cannot be entered is enough.
void CheckFoldersAbove(const fs::path& path, const ServiceUser& user,
                       std::vector<std::string>& findings) {
  std::error_code ignored;
  fs::path folder;
  for (const fs::path& part : fs::weakly_canonical(path, ignored).parent_path()) {
    folder /= part;
    if (user.May(kMayEnter, folder.string())) continue;
    findings.push_back(
        fmt::format("{}: {}, whom the service runs as, may not enter the folder; run"
                    " 'chmod o+x {}', or move what lies below",
                    folder.string(), user.name(), ShellWord(folder.string())));
  }
}

// What the service has made is its own, so a stranger's file is root's who did its work by hand.
void CheckFilled(const fs::path& folder, const std::string& name, const ServiceUser& user,
                 std::vector<std::string>& findings) {
  std::error_code ignored;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, ignored)) {
    const std::string path = entry.path().string();
    if (!FileExists(path) || user.May(kMayRead | kMayWrite, path)) continue;
    findings.push_back(
        fmt::format("{}/{}: {}, whom the service runs as, may not read and write it; for it and"
                    " its like run 'chown -hR {} {}'",
                    name, entry.path().filename().string(), user.name(), user.name(),
                    ShellWord(folder.string())));
    return;
  }
}

}  // namespace

ServiceUser::ServiceUser(const std::string& directory) : user_(OwnerOf(directory).user) {
  name_ = NameOf(user_);
  groups_ = GroupsOf(user_);
}

bool ServiceUser::May(mode_t wanted, const std::string& path) const {
  struct stat status {};
  if (isRoot() || stat(path.c_str(), &status) != 0) return true;
  mode_t granted = status.st_mode;
  if (status.st_uid == user_) {
    granted >>= 6;
  } else if (std::ranges::find(groups_, status.st_gid) != groups_.end()) {
    granted >>= 3;
  }
  return (granted & wanted) == wanted;
}

void CheckCaller(const std::string& directory, std::vector<std::string>& findings) {
  if (faccessat(AT_FDCWD, directory.c_str(), R_OK | X_OK, AT_EACCESS) == 0) return;
  struct stat status {};
  const bool isSeen = stat(directory.c_str(), &status) == 0;
  const bool hasOwner = isSeen && status.st_uid != 0 && status.st_uid != geteuid();
  findings.push_back(directory + ": you may not enter it; run this as root" +
                     (hasOwner ? " or as " + NameOf(status.st_uid) : ""));
}

void CheckWayTo(const std::string& directory, const ServiceUser& user,
                std::vector<std::string>& findings) {
  CheckFoldersAbove(directory, user, findings);
  CheckPath(directory, directory, kMayRead | kMayEnter, user, findings);
}

void CheckAccess(const std::string& directory, const ServiceUser& user,
                 std::vector<std::string>& findings) {
  const auto check = [&](const std::string& name, mode_t wanted) {
    CheckPath((fs::path(directory) / name).string(), name, wanted, user, findings);
  };
  // What is no file has another finding, and should not be given to anybody.
  const auto checkFile = [&](const std::string& name, mode_t wanted) {
    if (FileExists((fs::path(directory) / name).string())) check(name, wanted);
  };
  CheckPath(directory, directory, kMayUse, user, findings);
  for (const Database& database : kDatabases) {
    const std::string file(database.fileName);
    for (const char* ending : {"", "-wal", "-shm"}) checkFile(file + ending, kMayRead | kMayWrite);
  }
  for (const char* folder : kFolders) check(folder, kMayUse);
  for (const WebFile& file : kWebFiles) checkFile(file.path, kMayRead);
  for (const char* folder : kFilledFolders) {
    CheckFilled(fs::path(directory) / folder, folder, user, findings);
  }
}

void CheckReadable(const std::string& path, const ServiceUser& user,
                   std::vector<std::string>& findings) {
  CheckFoldersAbove(path, user, findings);
  CheckPath(path, path, kMayRead, user, findings);
}

}  // namespace quillon
