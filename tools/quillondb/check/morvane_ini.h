// Morvane.ini: where it is, and what stands in it.
#pragma once

#include <string>
#include <vector>

#include "import/schema/sqlite_file.h"
#include "quillondb/check/access.h"
#include "quillondb/check/unit.h"

namespace quillon {

// Appends a line where the file is missing, hidden by the unit, cannot be read by the service's
// user, or holds a value that the service cannot use. Returns the address that the service takes
// out of it.
std::string CheckMorvaneIni(const std::string& directory, const SqliteFile& settings,
                            const InstalledUnit& unit, const ServiceUser& user,
                            std::vector<std::string>& findings);

}  // namespace quillon
