// The files that a site makes while it is used: pages, mails and logs. Without tidying up they
// would be without number, and what one use left behind would change the next one.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "support/installation.h"
#include "targets.h"

namespace quillon::fuzz {

class MadeFiles {
 public:
  // From now on no other files may come.
  explicit MadeFiles(const Installation& installation)
      : installation_(installation), others_(Others()) {}

  // Raises std::logic_error where one has come, or where anything but plain files was made.
  void Remove() const {
    bool found = false;
    for (const char* folder : {"WebReports/Cache", "WebReports/Mail", "Debug"}) {
      found = Empty(installation_.path() + "/" + folder) || found;
    }
    if (found) Require(Others() == others_, "a file where none belongs");
  }

 private:
  // Whether there was anything.
  static bool Empty(const std::filesystem::path& folder) {
    bool found = false;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      Require(entry.is_regular_file(), "no plain file: " + entry.path().string());
      std::filesystem::remove(entry.path());
      found = true;
    }
    return found;
  }

  std::vector<std::string> Others() const {
    std::vector<std::string> names;
    for (const char* folder : {"", "WebReports"}) {
      for (const std::string& name : installation_.List(folder)) {
        // What the engine keeps beside a database comes and goes.
        if (name.find(".mdb-") == std::string::npos) names.push_back(name);
      }
    }
    return names;
  }

  const Installation& installation_;
  std::vector<std::string> others_;
};

}  // namespace quillon::fuzz
