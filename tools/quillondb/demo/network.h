// The switches of the demonstration and their ports, without figures.
#pragma once

#include <string>
#include <vector>

#include "quillondb/demo/port_figures.h"

namespace quillon {

struct DemoPort {
  int recNo = 0;
  std::string device;
  std::string deviceIp;
  int vlan = 0;  // -1 for none
  int ifIndex = 0;
  std::string name;
  std::string alias;
  std::string speed;
  bool isTrunk = false;
  bool countsMulticast = true;
  bool countsOctets = true;
  double scale = 1.0;        // this port's share of its profile's traffic
  int octetsDaysOld = 0;     // days since its figures were last finished
  int writtenDaysOld = 0;    // days since its row was last written
  int knownForDays = 10000;  // days since it was first reported
  const PortProfile* profile = nullptr;
};

// True where the report of that many days ago had figures of the port.
bool WasReported(const DemoPort& port, int daysAgo);

// All ports, ordered by device and interface index.
std::vector<DemoPort> DemoNetwork();

}  // namespace quillon
