// The owner is found without following links: a link could be anybody's.
#include "installation_owner.h"

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/failure.h"
#include "platform/files.h"

namespace quillon {
namespace {

FileOwner OwnerOfPath(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) == 0) return {status.st_uid, status.st_gid};
  throw FileFailure(path + ": " + std::strerror(errno));
}

bool IsDirectory(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::is_directory(path, ignored);
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

}  // namespace

std::vector<gid_t> GroupsOf(uid_t user) {
  const passwd* entry = getpwuid(user);
  if (entry == nullptr) return {};
  int count = 64;
  std::vector<gid_t> groups(static_cast<std::size_t>(count));
  if (getgrouplist(entry->pw_name, entry->pw_gid, groups.data(), &count) < 0) {
    groups.resize(static_cast<std::size_t>(count));
    getgrouplist(entry->pw_name, entry->pw_gid, groups.data(), &count);
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
