// Whose an installation is, and the rights of that user for whoever calls a tool as root: what root
// writes there is then the service's own, and no link of that user's leads root anywhere.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace quillon {

struct FileOwner {
  uid_t user = 0;
  gid_t group = 0;
};

// Whom the installation belongs to: the first one who is not root among the owners of the directory
// and of what is written into. FileFailure where the directory cannot be looked at.
FileOwner OwnerOf(const std::string& directory);

// Whether the path leads through anything below the directory, by its words or by a link. Its owner
// can lead it anywhere then, so root goes there with the rights of that user only.
bool LeadsInside(const std::string& path, const std::string& directory);

// The groups of the user, as the system knows them; none where it does not know him.
std::vector<gid_t> GroupsOf(uid_t user);

// Root takes over the owner's rights for good; anybody else keeps his own, and so does root where
// there is no such directory.
void BecomeOwner(const std::string& directory);

// The same for a scope. FileFailure where the rights cannot be taken over. One at a time: they are
// the whole process's. Folders for temporary files that the environment names do not count from
// then on.
class OwnerRights {
 public:
  explicit OwnerRights(const std::string& directory);
  ~OwnerRights();
  OwnerRights(const OwnerRights&) = delete;
  OwnerRights& operator=(const OwnerRights&) = delete;

 private:
  friend class CallersRights;

  void Take() const;
  void GiveBack() const;

  FileOwner owner_;
  std::vector<gid_t> ownersGroups_;
  FileOwner caller_;
  std::vector<gid_t> callersGroups_;
  bool taken_ = false;
};

// The caller's own rights again, for a scope inside of that one: for a file that he names.
class CallersRights {
 public:
  explicit CallersRights(const OwnerRights& rights);
  ~CallersRights();
  CallersRights(const CallersRights&) = delete;
  CallersRights& operator=(const CallersRights&) = delete;

 private:
  const OwnerRights& rights_;
};

}  // namespace quillon
