// The servers of the demonstration: their memories and disks, and how full they are on a day.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace quillon {

struct DemoStorage {
  int recNo = 0;
  std::string device;
  std::string name;          // Physical, Virtual, a volume or a mount point
  double totalM = 0;         // megabytes
  double usedShare = 0;      // today, of 1
  double growthPerDay = 0;   // of usedShare; negative for one that is emptying
  double ripple = 0;         // how far the share swings from day to day
  int knownForDays = 10000;  // days since it was first reported
  int daysOld = 0;           // days since the product last reached the server
};

// The class of the storage in the history: 10 physical memory, 20 virtual memory, 30 Windows
// disk, 40 Unix disk.
int TypeOf(const DemoStorage& storage);

// True where the day of that many days ago has a row of the storage in the history.
bool WasReported(const DemoStorage& storage, int daysAgo);

// All storages, ordered by server.
std::vector<DemoStorage> DemoServers();

struct StorageFigures {
  std::int64_t freeM = 0;
  std::int64_t usedM = 0;
  std::int64_t usedPercent = 0;
};

// How full the storage was `daysAgo` days before `today`.
StorageFigures FiguresOf(const DemoStorage& storage, std::chrono::local_days today, int daysAgo);

}  // namespace quillon
