// One console at a time where settings are read, changed and written back.
#pragma once

#include <string>

namespace quillon {

// Waits until no other console of the installation holds the lock, and holds it while this lives.
// It has to outlive every database handle on the settings: a file that is closed takes the
// engine's own locks on it along.
class SettingsLock {
 public:
  explicit SettingsLock(const std::string& directory);
  ~SettingsLock();
  SettingsLock(const SettingsLock&) = delete;
  SettingsLock& operator=(const SettingsLock&) = delete;

 private:
  int descriptor_;
};

}  // namespace quillon
