// The databases of an installation, opened once for all parts of the check.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "import/schema/databases.h"
#include "import/schema/sqlite_file.h"
#include "quillondb/check/access.h"

namespace quillon {

// What becomes of a file that is missing: nothing behind a restore that was killed, which holds it
// yet.
enum class MissingFiles { kAreFindings, kAreExpected };

class OpenDatabases {
 public:
  // Appends a line for each database that is missing, that others can reach, or that cannot be
  // read. One that the user may not use is found with the access.
  OpenDatabases(const std::string& directory, MissingFiles missing, const ServiceUser& user,
                std::vector<std::string>& findings);

  // Null for one that cannot be read.
  const SqliteFile* Find(std::string_view fileName) const;

 private:
  std::array<std::optional<SqliteFile>, kDatabases.size()> files_;  // in the order of kDatabases
};

}  // namespace quillon
