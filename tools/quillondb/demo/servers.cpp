// The servers and their disks as rows of tables, and the state of a storage on a day.
#include "quillondb/demo/servers.h"

#include <algorithm>
#include <cmath>

#include "quillondb/demo/random.h"

namespace quillon {
namespace {

constexpr int kFirstRecNo = 101;

struct DemoServer {
  const char* name;
  double physicalM;
  double physicalShare;
  double virtualM;
  double virtualShare;
  int daysOld = 0;
};

constexpr DemoServer kServers[] = {
    {"win-files-1", 32768, 0.48, 49152, 0.31}, {"win-files-2", 32768, 0.52, 49152, 0.35},
    {"win-mail", 65536, 0.83, 98304, 0.66},    {"win-print", 8192, 0.37, 12288, 0.22},
    {"win-sql-1", 131072, 0.91, 163840, 0.72}, {"win-sql-2", 131072, 0.88, 163840, 0.69},
    {"win-Zürich", 16384, 0.55, 24576, 0.41},  {"ux-web-1", 16384, 0.44, 8192, 0.03},
    {"ux-web-2", 16384, 0.46, 8192, 0.04},     {"ux-db", 262144, 0.94, 16384, 0.18},
    {"ux-backup", 65536, 0.61, 32768, 0.09},   {"ux-build", 65536, 0.35, 32768, 0.12},
    {"ux-monitor", 8192, 0.72, 4096, 0.27},    {"ux-proxy", 4096, 0.66, 2048, 0.38},
    {"ux-archive", 16384, 0.29, 8192, 0.02, 4}};

struct DemoDisk {
  const char* server;
  const char* name;
  double totalM;
  double usedShare;
  double growthPerDay;
  double ripple;
  int knownForDays = 10000;
};

// Quick and slow growth, a disk that is nearly full, one that is being emptied, one that has
// just been built in, and a drive without a medium.
constexpr DemoDisk kDisks[] = {
    {"win-files-1", "C:", 128000, 0.43, 0.0002, 0.004},
    {"win-files-1", "D:", 4000000, 0.78, 0.0031, 0.003},
    {"win-files-1", "E:", 4000000, 0.52, 0.0009, 0.002},
    {"win-files-2", "C:", 128000, 0.46, 0.0002, 0.004},
    {"win-files-2", "D:", 8000000, 0.64, 0.0014, 0.002},
    {"win-mail", "C:", 256000, 0.58, 0.0003, 0.005},
    {"win-mail", "M:", 2000000, 0.93, 0.0024, 0.004},
    {"win-print", "C:", 80000, 0.71, 0.0001, 0.02},
    {"win-print", "R:", 0, 0, 0, 0},
    {"win-sql-1", "C:", 128000, 0.39, 0.0001, 0.004},
    {"win-sql-1", "D:", 1000000, 0.81, 0.0011, 0.01},
    {"win-sql-1", "L:", 500000, 0.34, 0.0, 0.14},
    {"win-sql-2", "C:", 128000, 0.41, 0.0001, 0.004},
    {"win-sql-2", "D:", 1000000, 0.79, 0.0011, 0.01},
    {"win-sql-2", "T:", 300000, 0.27, 0.0, 0.1, 9},
    {"win-Zürich", "C:", 500000, 0.62, 0.0007, 0.005},
    {"ux-web-1", "/", 40000, 0.36, 0.0002, 0.003},
    {"ux-web-1", "/var/log", 20000, 0.57, 0.0, 0.16},
    {"ux-web-2", "/", 40000, 0.37, 0.0002, 0.003},
    {"ux-web-2", "/var/log", 20000, 0.97, 0.0082, 0.01},
    {"ux-db", "/", 80000, 0.31, 0.0001, 0.003},
    {"ux-db", "/srv/data", 6000000, 0.86, 0.0017, 0.003},
    {"ux-db", "/srv/wal", 400000, 0.22, 0.0, 0.08},
    {"ux-backup", "/", 80000, 0.28, 0.0001, 0.003},
    {"ux-backup", "/backup", 48000000, 0.74, 0.0021, 0.02},
    {"ux-build", "/", 200000, 0.49, 0.0005, 0.01},
    {"ux-build", "/home", 1500000, 0.41, -0.0044, 0.01},
    {"ux-build", "/var/cache", 600000, 0.55, 0.0, 0.2},
    {"ux-monitor", "/", 60000, 0.67, 0.0004, 0.004},
    {"ux-proxy", "/", 30000, 0.53, 0.0001, 0.003},
    {"ux-proxy", "/var/spool", 100000, 0.84, 0.0016, 0.05},
    {"ux-archive", "/", 40000, 0.25, 0.0, 0.002},
    {"ux-archive", "/archive", 24000000, 0.89, 0.0004, 0.001},
};

constexpr double kMemoryRipple = 0.06;

DemoStorage Memory(const DemoServer& server, int recNo, const char* name, double totalM,
                   double share) {
  DemoStorage memory;
  memory.recNo = recNo;
  memory.device = server.name;
  memory.name = name;
  memory.totalM = totalM;
  memory.usedShare = share;
  memory.ripple = kMemoryRipple;
  memory.daysOld = server.daysOld;
  return memory;
}

void AddServer(const DemoServer& server, int recNo, std::vector<DemoStorage>& storages) {
  storages.push_back(Memory(server, recNo, "Physical", server.physicalM, server.physicalShare));
  storages.push_back(Memory(server, recNo, "Virtual", server.virtualM, server.virtualShare));
  for (const DemoDisk& disk : kDisks) {
    if (std::string(disk.server) != server.name) continue;
    storages.push_back({recNo, server.name, disk.name, disk.totalM, disk.usedShare,
                        disk.growthPerDay, disk.ripple, disk.knownForDays, server.daysOld});
  }
}

// A chance of its own for each storage and day.
double Swing(const DemoStorage& storage, std::chrono::local_days day) {
  const auto letters = static_cast<std::int64_t>(storage.name.size());
  DemoRandom random({storage.recNo, letters, storage.name.back(), day.time_since_epoch().count()});
  return random.Between(-storage.ripple, storage.ripple);
}

}  // namespace

int TypeOf(const DemoStorage& storage) {
  if (storage.name == "Physical") return 10;
  if (storage.name == "Virtual") return 20;
  return storage.name.size() > 1 && storage.name[1] == ':' ? 30 : 40;
}

// Storage without a size has no place in the history.
bool WasReported(const DemoStorage& storage, int daysAgo) {
  return storage.totalM > 0 && daysAgo >= storage.daysOld && daysAgo < storage.knownForDays;
}

std::vector<DemoStorage> DemoServers() {
  std::vector<DemoStorage> storages;
  int recNo = kFirstRecNo;
  for (const DemoServer& server : kServers) AddServer(server, recNo++, storages);
  return storages;
}

StorageFigures FiguresOf(const DemoStorage& storage, std::chrono::local_days today, int daysAgo) {
  if (storage.totalM <= 0) return {};
  constexpr double kLeast = 0.02;
  constexpr double kMost = 0.99;
  const double share = storage.usedShare - storage.growthPerDay * daysAgo +
                       Swing(storage, today - std::chrono::days(daysAgo));
  const double usedM = std::round(storage.totalM * std::clamp(share, kLeast, kMost));
  StorageFigures figures;
  figures.usedM = std::llround(usedM);
  figures.freeM = std::llround(storage.totalM - usedM);
  figures.usedPercent = std::llround(usedM / storage.totalM * 100);
  return figures;
}

}  // namespace quillon
