// The unit by which systemd starts the service in a directory.
#pragma once

#include <string>
#include <vector>

#include "platform/service_registry.h"
#include "quillondb/check/access.h"

namespace quillon {

class InstalledUnit {
 public:
  // Of the units that an administrator, or a package, has installed.
  explicit InstalledUnit(const std::string& directory,
                         const std::vector<std::string>& folders = {ServiceRegistry::kUnitFolder,
                                                                    "/lib/systemd/system"});

  // Whether it starts the service in that directory.
  bool isThere() const { return !text_.empty(); }

  bool Grants(const std::string& right) const { return text_.find(right) != std::string::npos; }

  // The folder that the unit hides from the service and in which the path lies; empty for a path
  // that the service sees.
  std::string HiddenBy(const std::string& path) const;

 private:
  std::string text_;
};

// Appends a line where the unit cannot start the service of the directory.
void CheckUnit(const std::string& directory, const InstalledUnit& unit, const ServiceUser& user,
               std::vector<std::string>& findings);

}  // namespace quillon
