// Variables of the environment that a test sets as it likes. They are taken away while this
// lives, and stand again as they were afterwards.
#pragma once

#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

class Environment {
 public:
  explicit Environment(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
      const char* value = std::getenv(name.c_str());
      before_[name] = value == nullptr ? std::nullopt : std::optional<std::string>(value);
      unsetenv(name.c_str());
    }
  }
  ~Environment() {
    for (const auto& [name, value] : before_) Set(name, value);
  }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

  // Takes the variable away where there is no value.
  void Set(const std::string& name, const std::optional<std::string>& value) const {
    if (value) {
      setenv(name.c_str(), value->c_str(), 1);
    } else {
      unsetenv(name.c_str());
    }
  }

 private:
  std::map<std::string, std::optional<std::string>> before_;
};

}  // namespace quillon
