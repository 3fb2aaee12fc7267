// The sums, each from the figures of all ports or storages on that day.
#include "quillondb/demo/sums.h"

#include <string>

#include "quillondb/demo/rotation.h"

namespace quillon {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::local_days;

struct SwitchSum {
  PortFigures figures;
  int ports = 0;
  int portsInTraffic = 0;
};

SwitchSum SumOf(const std::vector<DemoPort>& ports, bool isTrunk, local_days today, int daysAgo) {
  SwitchSum sum;
  for (const DemoPort& port : ports) {
    if (port.isTrunk != isTrunk || daysAgo >= port.knownForDays) continue;
    ++sum.ports;
    if (daysAgo < port.writtenDaysOld) continue;
    const PortFigures figures = FiguresOf(port, today - days(daysAgo));
    if (figures.inMb > 0) ++sum.portsInTraffic;
    sum.figures.inErrors += figures.inErrors;
    sum.figures.outErrors += figures.outErrors;
    sum.figures.broadcastPpm += figures.broadcastPpm;
    sum.figures.multicastPpm += figures.multicastPpm;
    sum.figures.inMb += figures.inMb;
    sum.figures.outMb += figures.outMb;
  }
  return sum;
}

void WriteSwitchSums(const SqliteFile& history, const std::vector<DemoPort>& ports,
                     local_days today) {
  SqliteStatement insert = history.Prepare(
      "INSERT INTO VLAN_HistSum (TrafficDate, IsTrunk, InErrorsTot24H, OutErrorsTot24H,"
      " InBroadCastPpm24H, InMultiCastPpm24H, InHCOctetsMb24H, OutHCOctetsMb24H, Ports,"
      " PortsInTraffic) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
  for (int daysAgo = kFirstImport; daysAgo >= 1; --daysAgo) {
    if (!ImportRan(daysAgo)) continue;
    const std::string date = DateTimeText(ImportMoment(today, daysAgo) - hours(24));
    for (const bool isTrunk : {false, true}) {
      const SwitchSum sum = SumOf(ports, isTrunk, today, daysAgo);
      insert.Run(date, isTrunk, sum.figures.inErrors, sum.figures.outErrors,
                 sum.figures.broadcastPpm, sum.figures.multicastPpm, sum.figures.inMb,
                 sum.figures.outMb, sum.ports, sum.portsInTraffic);
    }
  }
}

struct DiskSum {
  float totalM = 0;  // singles, as the import adds them up
  float usedM = 0;
  int storages = 0;
};

DiskSum SumOf(const std::vector<DemoStorage>& storages, int type, local_days today, int daysAgo) {
  DiskSum sum;
  for (const DemoStorage& storage : storages) {
    if (TypeOf(storage) != type || !WasReported(storage, daysAgo)) continue;
    const StorageFigures figures = FiguresOf(storage, today, daysAgo);
    sum.totalM += static_cast<float>(figures.freeM + figures.usedM);
    sum.usedM += static_cast<float>(figures.usedM);
    ++sum.storages;
  }
  return sum;
}

void WriteDiskSums(const SqliteFile& history, const std::vector<DemoStorage>& storages,
                   local_days today) {
  SqliteStatement insert = history.Prepare(
      "INSERT INTO Disk_HistSum (StorageDate, TotalMPhysical, UsedMPhysical, NumPhysical,"
      " TotalMVirtual, UsedMVirtual, NumVirtual, TotalMWindows, UsedMWindows, NumWindows,"
      " TotalMUnix, UsedMUnix, NumUnix) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
  for (int daysAgo = kFirstImport; daysAgo >= 1; --daysAgo) {
    if (!ImportRan(daysAgo)) continue;
    insert.Reset();
    int position = 0;
    insert.Bind(++position, DateTimeText(ImportMoment(today, daysAgo) - hours(24)));
    for (const int type : {10, 20, 30, 40}) {
      const DiskSum sum = SumOf(storages, type, today, daysAgo);
      insert.Bind(++position, sum.totalM);
      insert.Bind(++position, sum.usedM);
      insert.Bind(++position, sum.storages);
    }
    insert.Step();
  }
}

}  // namespace

void WriteSums(const SqliteFile& history, const std::vector<DemoPort>& ports,
               const std::vector<DemoStorage>& storages, local_days today) {
  WriteSwitchSums(history, ports, today);
  WriteDiskSums(history, storages, today);
}

}  // namespace quillon
