// The rotation of day tables as daily imports leave it, from the first import of the
// demonstration to yesterday's.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "platform/date_time.h"

namespace quillon {

// Days before today of the first import.
inline constexpr int kFirstImport = 400;

// True where an import ran that many days ago; some were missed.
bool ImportRan(int daysAgo);

// When the import of that many days ago ran.
DateTime ImportMoment(std::chrono::local_days today, int daysAgo);

// A day table and the import that filled it last, in days before today; none for a table that
// was never used.
struct DayTableUse {
  std::string table;
  std::optional<int> importDaysAgo;
};

// Replays all imports over the tables, which stand in the stored order of their control rows.
std::vector<DayTableUse> ReplayRotation(const std::vector<std::string>& tables);

}  // namespace quillon
