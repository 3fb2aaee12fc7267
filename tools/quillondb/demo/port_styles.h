// How makes of switches name, number and count their ports.
#pragma once

#include <array>
#include <string>

namespace quillon {

struct PortStyle {
  const char* accessName;  // "{}" stands for the port's number
  const char* trunkName;
  bool trunksRestart;  // trunks count from 1 again instead of behind the access ports
  int firstIfIndex;    // of port 1; the others follow
  bool countsMulticast;
  bool countsOctets;  // has counters that hold a day of traffic
};

// Indices into kPortStyles.
enum class PortStyleId { kChassis, kSlotted, kPlain, kLongIndex, kLettered, kOld };

extern const std::array<PortStyle, 6> kPortStyles;

const PortStyle& StyleOf(PortStyleId id);

// The name of the access or trunk port of that number, which counts from 1.
std::string PortName(const PortStyle& style, bool isTrunk, int number);

}  // namespace quillon
