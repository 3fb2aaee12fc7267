// The rows of Reports.mdb.
#include "quillondb/demo/reports.h"

#include <fmt/format.h>

#include "quillondb/demo/random.h"

namespace quillon {
namespace {

using std::chrono::days;
using std::chrono::local_days;

void WritePorts(const SqliteFile& reports, const std::vector<DemoPort>& ports, DateTime now) {
  SqliteStatement insert = reports.Prepare(
      "INSERT INTO VLAN (RecNo, DevName, IpAddr, VlanID, IfIndex, IfDescr, IfSpeed, IfAlias,"
      " IfAdmin, IfOper, IsTrunk, InOctetsDate, LastUpdate, InHCOctetsMb24H, OutHCOctetsMb24H,"
      " InBroadCastPpm24H, InMultiCastPpm24H, InErrorsTot24H, OutErrorsTot24H)"
      " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
  const local_days today = std::chrono::floor<days>(now);
  for (const DemoPort& port : ports) {
    const PortFigures figures = FiguresOf(port, today - days(port.octetsDaysOld));
    insert.Run(port.recNo, port.device, port.deviceIp, port.vlan, port.ifIndex, port.name,
               port.speed, port.alias, "up", port.profile->isUp ? "up" : "down", port.isTrunk,
               DateTimeText(now - days(port.octetsDaysOld)),
               DateTimeText(now - days(port.writtenDaysOld)), figures.inMb, figures.outMb,
               figures.broadcastPpm, figures.multicastPpm, figures.inErrors, figures.outErrors);
  }
}

// A locally administered address, so that no maker's number is borrowed.
std::string MacAddress(DemoRandom& random) {
  std::string address = "02";
  for (int pair = 0; pair < 5; ++pair) address += fmt::format(" {:02X}", random.Whole(0, 255));
  return address;
}

// Most access ports in use show one address, some have a telephone with a computer behind it, and
// a few are silent.
void WriteAddresses(const SqliteFile& reports, const std::vector<DemoPort>& ports, DateTime now) {
  constexpr int kAddressSalt = 77;
  SqliteStatement insert = reports.Prepare(
      "INSERT INTO MAC (RecNo, IfIndex, MacAddr, IpAddr, LastSeen) VALUES (?, ?, ?, ?, ?)");
  for (const DemoPort& port : ports) {
    if (port.isTrunk || !port.profile->isUp) continue;
    DemoRandom random({port.recNo, port.ifIndex, kAddressSalt});
    const int addresses = random.Chance(0.06) ? 0 : random.Chance(0.15) ? 2 : 1;
    for (int address = 0; address < addresses; ++address) {
      const std::string mac = MacAddress(random);
      const std::string ip =
          fmt::format("10.{}.{}.{}", 100 + port.recNo, random.Whole(0, 9), random.Whole(1, 254));
      const days age(random.Chance(0.85) ? 0 : random.Whole(1, 40));
      insert.Run(port.recNo, port.ifIndex, mac, ip, DateTimeText(now - age));
    }
  }
}

void WriteStorages(const SqliteFile& reports, const std::vector<DemoStorage>& storages,
                   DateTime now) {
  SqliteStatement insert = reports.Prepare(
      "INSERT INTO HostDiskInfo (RecNo, DevName, StorDescr, FreeRawM, UsedRawM, UsedProc,"
      " UsedProc14Trend, UsedProc30Trend, LastUpdate) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
  const local_days today = std::chrono::floor<days>(now);
  for (const DemoStorage& storage : storages) {
    const int old = storage.daysOld;
    const StorageFigures figures = FiguresOf(storage, today, old);
    const auto trend = [&](int period) {
      return figures.usedPercent - FiguresOf(storage, today, old + period).usedPercent;
    };
    insert.Run(storage.recNo, storage.device, storage.name, figures.freeM, figures.usedM,
               figures.usedPercent, trend(14), trend(30), DateTimeText(now - days(old)));
  }
}

}  // namespace

void WriteReports(const SqliteFile& reports, const std::vector<DemoPort>& ports,
                  const std::vector<DemoStorage>& storages, DateTime now) {
  WritePorts(reports, ports, now);
  WriteAddresses(reports, ports, now);
  WriteStorages(reports, storages, now);
}

}  // namespace quillon
