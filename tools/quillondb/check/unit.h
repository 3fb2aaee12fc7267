// The unit by which systemd starts the service in a directory.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/service_registry.h"
#include "quillondb/check/access.h"

namespace quillon {

class InstalledUnit {
 public:
  // Of the units that an administrator, or a package, has installed, with what `systemctl edit`
  // has added to it.
  explicit InstalledUnit(const std::string& directory,
                         const std::vector<std::string>& folders = {ServiceRegistry::kUnitFolder,
                                                                    "/lib/systemd/system"});

  // Whether it starts the service in that directory.
  bool isThere() const { return !text_.empty(); }

  // Why the unit could not be read: it may be there, and grant whatever. Empty where it was read.
  const std::string& failure() const { return failure_; }

  // Whether the service gets that right of root's.
  bool Grants(const std::string& right) const;

  // The folder that the unit hides from the service and in which the path lies; empty for a path
  // that the service sees.
  std::string HiddenBy(const std::string& path) const;

 private:
  // What it sets the option to, with the additions behind it; an empty value takes all back.
  std::vector<std::string> Values(std::string_view option) const;
  bool Hides(std::string_view option) const;
  bool Starts(const std::string& program) const;

  std::string text_;
  std::string failure_;
};

// Appends a line where the unit cannot start the service of the directory, or cannot be read.
void CheckUnit(const std::string& directory, const InstalledUnit& unit, const ServiceUser& user,
               std::vector<std::string>& findings);

}  // namespace quillon
