// What the service's user may do with the files and folders of the installation. That user is the
// installation's owner, whoever runs the check.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace quillon {

// What is asked of a file or a folder, as the bits of a mode.
inline constexpr mode_t kMayRead = 4;
inline constexpr mode_t kMayWrite = 2;
inline constexpr mode_t kMayEnter = 1;  // a folder
inline constexpr mode_t kMayRun = 1;    // a program

class ServiceUser {
 public:
  // The installation's owner, with the groups that the system knows of him. FileFailure where the
  // directory cannot be looked at.
  explicit ServiceUser(const std::string& directory);

  // False for a path that is there and that the user may not use so; its folders are not looked at.
  bool May(mode_t wanted, const std::string& path) const;

  bool isRoot() const { return user_ == 0; }
  const std::string& name() const { return name_; }

 private:
  uid_t user_ = 0;
  std::vector<gid_t> groups_;
  std::string name_;  // or the number of a user without one
};

// Appends a line where the caller cannot enter the directory: nothing else can be judged then.
void CheckCaller(const std::string& directory, std::vector<std::string>& findings);

// Appends a line where the user cannot enter the directory, or a folder above it.
void CheckWayTo(const std::string& directory, const ServiceUser& user,
                std::vector<std::string>& findings);

// Appends a line for each file and folder of the installation that is there and that the user
// cannot use as the service does; of those that it makes itself, for the first one of a folder.
void CheckAccess(const std::string& directory, const ServiceUser& user,
                 std::vector<std::string>& findings);

// The same for a file that is only read, wherever it lies, and for the way to it.
void CheckReadable(const std::string& path, const ServiceUser& user,
                   std::vector<std::string>& findings);

}  // namespace quillon
