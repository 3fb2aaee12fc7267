// The switches as rows of a table, and the ports that follow from them.
#include "quillondb/demo/network.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "quillondb/demo/aliases.h"
#include "quillondb/demo/port_styles.h"
#include "quillondb/demo/random.h"

namespace quillon {
namespace {

constexpr int kNone = -1;

struct DemoSwitch {
  const char* name;
  const char* ip;
  PortStyleId style;
  int accessPorts;
  int trunkPorts;
  int vlan;           // of the access ports
  const char* speed;  // of the access ports
  int daysOld = 0;    // days since the product last reached it
};

constexpr DemoSwitch kSwitches[] = {
    {"core-1", "10.10.0.1", PortStyleId::kLongIndex, 2, 14, 10, "10 Gbit/s"},
    {"core-2", "10.10.0.2", PortStyleId::kLongIndex, 2, 14, 10, "10 Gbit/s"},
    {"server-room-1", "10.10.1.11", PortStyleId::kChassis, 12, 2, 11, "1 Gbit/s"},
    {"server-room-2", "10.10.1.12", PortStyleId::kChassis, 12, 2, 11, "1 Gbit/s"},
    {"office-0-east", "10.10.2.10", PortStyleId::kChassis, 12, 2, 20, "1 Gbit/s"},
    {"office-0-west", "10.10.2.11", PortStyleId::kChassis, 12, 2, 20, "1 Gbit/s"},
    {"office-1-east", "10.10.2.12", PortStyleId::kChassis, 12, 2, 21, "1 Gbit/s"},
    {"office-1-west", "10.10.2.13", PortStyleId::kChassis, 12, 2, 21, "1 Gbit/s"},
    {"office-2-east", "10.10.2.14", PortStyleId::kSlotted, 12, 2, 22, "1 Gbit/s"},
    {"office-2-west", "10.10.2.15", PortStyleId::kSlotted, 12, 2, 22, "1 Gbit/s"},
    {"office-3-east", "10.10.2.16", PortStyleId::kSlotted, 12, 2, 23, "1 Gbit/s"},
    {"office-3-west", "10.10.2.17", PortStyleId::kSlotted, 12, 2, 23, "1 Gbit/s"},
    {"lab-1", "10.10.3.10", PortStyleId::kLettered, 12, 2, 30, "1 Gbit/s"},
    {"lab-2", "10.10.3.11", PortStyleId::kLettered, 12, 2, 30, "1 Gbit/s"},
    {"hall-a", "10.10.4.10", PortStyleId::kPlain, 12, 2, kNone, "1 Gbit/s"},
    {"hall-b", "10.10.4.11", PortStyleId::kPlain, 12, 2, kNone, "1 Gbit/s"},
    {"hall-c", "10.10.4.12", PortStyleId::kOld, 12, 2, 40, "100 Mbit/s"},
    {"Werk-Süd", "10.20.0.10", PortStyleId::kSlotted, 12, 2, 50, "1 Gbit/s"},
    {"Werk-Süd-Labor", "10.20.0.11", PortStyleId::kLettered, 12, 2, 51, "1 Gbit/s"},
    {"Zürich-1", "10.30.0.10", PortStyleId::kChassis, 12, 2, 60, "1 Gbit/s"},
    {"Zürich-2", "10.30.0.11", PortStyleId::kChassis, 12, 2, 60, "1 Gbit/s"},
    {"São-Paulo-1", "10.40.0.10", PortStyleId::kSlotted, 12, 2, 70, "1 Gbit/s"},
    {"shop-north", "10.50.1.10", PortStyleId::kPlain, 9, 2, kNone, "100 Mbit/s"},
    {"shop-south", "10.50.2.10", PortStyleId::kPlain, 9, 2, kNone, "100 Mbit/s"},
    {"shop-station", "10.50.3.10", PortStyleId::kPlain, 9, 2, kNone, "100 Mbit/s"},
    {"shop-harbour", "10.50.4.10", PortStyleId::kPlain, 9, 2, kNone, "100 Mbit/s", 3},
    {"depot-1", "10.60.0.10", PortStyleId::kOld, 9, 2, 80, "100 Mbit/s"},
    {"depot-2", "10.60.0.11", PortStyleId::kLettered, 9, 2, 80, "1 Gbit/s"},
    {"guest-wlan", "10.70.0.10", PortStyleId::kSlotted, 9, 2, 90, "1 Gbit/s"},
    {"phones", "10.70.0.11", PortStyleId::kLettered, 9, 2, 91, "100 Mbit/s"},
};

constexpr int kHalfReadEvery = 53;  // ports whose figures are of yesterday in a row of today
constexpr int kNewPortEvery = 61;   // ports that are new in the network
constexpr int kNewPortKnownForDays = 12;

double Scale(int recNo, int ifIndex) {
  DemoRandom random({recNo, ifIndex});
  return std::exp(random.Between(-1.1, 1.1));
}

// The network under construction: ordinals count within a class over all switches.
class Builder {
 public:
  void Add(const DemoSwitch& device, int recNo) {
    const PortStyle& style = StyleOf(device.style);
    for (int number = 1; number <= device.accessPorts; ++number) {
      DemoPort port = Port(device, recNo, style.firstIfIndex + number - 1);
      AddAccess(std::move(port), device, PortName(style, false, number));
    }
    for (int number = 1; number <= device.trunkPorts; ++number) {
      const int behind = device.accessPorts + number;
      DemoPort port = Port(device, recNo, style.firstIfIndex + behind - 1);
      AddTrunk(std::move(port), PortName(style, true, style.trunksRestart ? number : behind));
    }
  }

  std::vector<DemoPort> TakePorts() { return std::move(ports_); }

 private:
  static DemoPort Port(const DemoSwitch& device, int recNo, int ifIndex) {
    const PortStyle& style = StyleOf(device.style);
    DemoPort port;
    port.recNo = recNo;
    port.device = device.name;
    port.deviceIp = device.ip;
    port.ifIndex = ifIndex;
    port.countsMulticast = style.countsMulticast;
    port.countsOctets = style.countsOctets;
    port.scale = Scale(recNo, ifIndex);
    port.octetsDaysOld = port.writtenDaysOld = device.daysOld;
    return port;
  }

  void AddAccess(DemoPort port, const DemoSwitch& device, const std::string& name) {
    const int ordinal = accessPorts_++;
    port.name = name;
    port.alias = AccessAlias(ordinal);
    port.vlan = device.vlan;
    port.speed = device.speed;
    port.profile = &ProfileOf(false, ordinal);
    if (ordinal % kHalfReadEvery == kHalfReadEvery - 1) {
      port.octetsDaysOld = std::max(port.octetsDaysOld, 1);
    }
    if (ordinal % kNewPortEvery == kNewPortEvery - 1) port.knownForDays = kNewPortKnownForDays;
    ports_.push_back(std::move(port));
  }

  void AddTrunk(DemoPort port, const std::string& name) {
    const int ordinal = trunkPorts_++;
    port.name = name;
    port.alias = "Trunk " + std::to_string(ordinal + 1);
    port.vlan = kNone;
    port.speed = "10 Gbit/s";
    port.isTrunk = true;
    port.profile = &ProfileOf(true, ordinal);
    ports_.push_back(std::move(port));
  }

  std::vector<DemoPort> ports_;
  int accessPorts_ = 0;
  int trunkPorts_ = 0;
};

}  // namespace

bool WasReported(const DemoPort& port, int daysAgo) {
  return daysAgo >= port.octetsDaysOld && daysAgo < port.knownForDays;
}

std::vector<DemoPort> DemoNetwork() {
  Builder builder;
  int recNo = 0;
  for (const DemoSwitch& device : kSwitches) builder.Add(device, ++recNo);
  return builder.TakePorts();
}

}  // namespace quillon
