// The owner is found without following links: a link could be anybody's.
#include "installation_owner.h"

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <filesystem>

#include "platform/failure.h"
#include "platform/files.h"

namespace quillon {
namespace {

// For a large sort SQLite makes a file in the first of these that access() allows. That goes by the
// real user, who is root yet, so a folder that is closed to the owner would be taken, and fail him.
void ForgetTemporaryFolders() {
  for (const char* name : {"SQLITE_TMPDIR", "TMPDIR"}) unsetenv(name);
}

namespace fs = std::filesystem;

FileOwner OwnerOfPath(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) == 0) return {status.st_uid, status.st_gid};
  throw FileFailure(path + ": " + std::strerror(errno));
}

bool IsDirectory(const std::string& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored);
}

void Require(int result, const char* what) {
  if (result == 0) return;
  throw FileFailure(std::string("cannot take over the rights of the installation's owner: ") +
                    what + ": " + std::strerror(errno));
}

std::vector<gid_t> OwnGroups() {
  std::vector<gid_t> groups(static_cast<std::size_t>(getgroups(0, nullptr)));
  Require(getgroups(static_cast<int>(groups.size()), groups.data()) < 0 ? -1 : 0, "getgroups");
  return groups;
}

// A way from the root of the file system, walked a name at a time as the system does.
class Way {
 public:
  explicit Way(const fs::path& path) { Insert(path); }

  // Follows the link that the last step came to, or goes on by a name. False at the end.
  bool Step() {
    if (FollowLink()) return true;
    if (rest_.empty()) return false;
    const fs::path name = rest_.front();
    rest_.pop_front();
    if (name == "..") {
      place_ = place_.parent_path();
    } else if (name != "." && !name.empty()) {
      place_ /= name;
    }
    return true;
  }

  bool IsBelow(const fs::path& directory) const {
    return place_ != directory && std::ranges::mismatch(directory, place_).in1 == directory.end();
  }

 private:
  static constexpr int kMostLinks = 40;  // so many the system follows

  void Insert(const fs::path& path) {
    if (path.is_absolute()) place_ = "/";
    const fs::path names = path.relative_path();
    rest_.insert(rest_.begin(), names.begin(), names.end());
  }

  bool FollowLink() {
    std::error_code none;
    const fs::path target = fs::read_symlink(place_, none);
    if (none || links_ == kMostLinks) return false;
    ++links_;
    place_ = place_.parent_path();
    Insert(target);
    return true;
  }

  fs::path place_ = "/";
  std::deque<fs::path> rest_;
  int links_ = 0;
};

}  // namespace

// Up to its first place below the directory nothing of the way is the owner's, so that what is
// found stays true.
bool LeadsInside(const std::string& path, const std::string& directory) {
  std::error_code missing;
  const fs::path home = fs::canonical(directory, missing);
  if (missing) return false;
  Way way(fs::absolute(path));
  while (way.Step()) {
    if (way.IsBelow(home)) return true;
  }
  return false;
}

std::vector<gid_t> GroupsOf(uid_t user) {
  const passwd* entry = getpwuid(user);
  if (entry == nullptr) return {};
  std::vector<gid_t> groups(64);
  int count = 64;
  // He can be given more between two questions, and what is not filled in is root's group.
  while (getgrouplist(entry->pw_name, entry->pw_gid, groups.data(), &count) < 0) {
    groups.resize(2 * groups.size());
    count = static_cast<int>(groups.size());
  }
  groups.resize(static_cast<std::size_t>(count));
  return groups;
}

// Whose directory it is may have put root's file in the place of another, so that it counts first.
FileOwner OwnerOf(const std::string& directory) {
  FileOwner owner = OwnerOfPath(directory + "/.");
  for (const char* name : {"Quillon.mdb", "WebReports", "Debug"}) {
    const std::string path = directory + "/" + name;
    if (owner.user != 0) break;
    if (PathExists(path)) owner = OwnerOfPath(path);
  }
  return owner;
}

void BecomeOwner(const std::string& directory) {
  if (geteuid() != 0 || !IsDirectory(directory)) return;
  const FileOwner owner = OwnerOf(directory);
  if (owner.user == 0) return;
  const std::vector<gid_t> groups = GroupsOf(owner.user);
  Require(setgroups(groups.size(), groups.data()), "setgroups");
  Require(setgid(owner.group), "setgid");
  Require(setuid(owner.user), "setuid");
}

OwnerRights::OwnerRights(const std::string& directory) {
  if (geteuid() != 0 || !IsDirectory(directory)) return;
  owner_ = OwnerOf(directory);
  if (owner_.user == 0) return;
  caller_ = {geteuid(), getegid()};
  ownersGroups_ = GroupsOf(owner_.user);
  callersGroups_ = OwnGroups();
  taken_ = true;
  ForgetTemporaryFolders();
  Take();
}

OwnerRights::~OwnerRights() {
  GiveBack();
}

// The user comes last, and first on the way back: he has no right to change the groups.
void OwnerRights::Take() const {
  if (!taken_) return;
  Require(setgroups(ownersGroups_.size(), ownersGroups_.data()), "setgroups");
  Require(setegid(owner_.group), "setegid");
  Require(seteuid(owner_.user), "seteuid");
}

void OwnerRights::GiveBack() const {
  if (!taken_) return;
  Require(seteuid(caller_.user), "seteuid");
  Require(setegid(caller_.group), "setegid");
  Require(setgroups(callersGroups_.size(), callersGroups_.data()), "setgroups");
}

CallersRights::CallersRights(const OwnerRights& rights) : rights_(rights) {
  rights_.GiveBack();
}

// A failure ends the program: with root's rights nothing may go on.
CallersRights::~CallersRights() {
  rights_.Take();
}

}  // namespace quillon
