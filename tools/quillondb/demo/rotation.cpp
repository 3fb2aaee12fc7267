// The imports day by day, by the rule of the import itself: the first free table is taken.
#include "quillondb/demo/rotation.h"

#include <algorithm>
#include <array>

namespace quillon {
namespace {

// Nights without a report. None of them is 14 or 30 days ago, so today's trends come out whole.
constexpr std::array<int, 6> kMissedImports = {8, 19, 20, 36, 131, 244};

constexpr int kKeptDays = 45;

// The report ends after 3 o'clock, and the service looks once an hour.
constexpr auto kImportTime = std::chrono::hours(4) + std::chrono::seconds(20);

// An import is stamped with the day before it, hence the one day more.
bool IsFree(const DayTableUse& use, int today) {
  return !use.importDaysAgo || *use.importDaysAgo + 1 - today > kKeptDays;
}

}  // namespace

bool ImportRan(int daysAgo) {
  return daysAgo >= 1 && daysAgo <= kFirstImport &&
         std::ranges::find(kMissedImports, daysAgo) == kMissedImports.end();
}

DateTime ImportMoment(std::chrono::local_days today, int daysAgo) {
  return today - std::chrono::days(daysAgo) + kImportTime;
}

std::vector<DayTableUse> ReplayRotation(const std::vector<std::string>& tables) {
  std::vector<DayTableUse> uses;
  uses.reserve(tables.size());
  for (const std::string& table : tables) uses.push_back({table, std::nullopt});
  for (int daysAgo = kFirstImport; daysAgo >= 1; --daysAgo) {
    if (!ImportRan(daysAgo)) continue;
    const auto free =
        std::ranges::find_if(uses, [&](const DayTableUse& use) { return IsFree(use, daysAgo); });
    if (free != uses.end()) free->importDaysAgo = daysAgo;
  }
  return uses;
}

}  // namespace quillon
