// The service's registration with systemd.
#pragma once

#include <string>
#include <string_view>

namespace quillon {

// A path as it stands in a unit, where % begins one of systemd's own words unless it is doubled.
std::string EscapedInUnit(std::string_view path);

class ServiceRegistry {
 public:
  // Where an administrator's units lie.
  static constexpr const char* kUnitFolder = "/etc/systemd/system";

  explicit ServiceRegistry(std::string unitFolder = kUnitFolder);

  // Registers the program in `directory` under the name: writes its unit, loads it, makes it
  // start with the machine, and sees to the user that it runs as. An older registration of that
  // name is replaced. Failure where there is no systemd or the rights are missing; then the
  // units are what they were before.
  void InstallService(const std::string& name, const std::string& directory) const;

  // Removes the registration. Failure as above, and where there is none.
  void UninstallService(const std::string& name) const;

 private:
  std::string unitFolder_;
};

}  // namespace quillon
