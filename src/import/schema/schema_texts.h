// The .sql files of this folder as texts of the program, defined by the build. What they hold
// is told in the files themselves.
#pragma once

#include <string_view>

namespace quillon {

// The tables of each database, the day tables of the history left out.
extern const std::string_view kQuillonSql;
extern const std::string_view kReportsSql;
extern const std::string_view kHistorySql;

// One day table; "{table}" stands for its name.
extern const std::string_view kVlanDaySql;
extern const std::string_view kDiskDaySql;

// The rows of a new installation; ":Directory" in the first stands for its directory.
extern const std::string_view kSeedQuillonSql;
extern const std::string_view kSeedHistorySql;

}  // namespace quillon
