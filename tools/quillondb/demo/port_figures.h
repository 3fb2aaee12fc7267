// What a port carries on a day: kinds of ports, the rhythm of the week, chance.
#pragma once

#include <chrono>
#include <cstdint>

namespace quillon {

// What is plugged into a port, with the figures of an ordinary working day.
struct PortProfile {
  int first;  // the first port of the class that is of this kind, counted from 0
  int every;  // and each one that many ports on
  bool isUp;
  double inMb;  // megabytes in 24 hours
  double outMb;
  double weekend;    // share of a working day's traffic
  double broadcast;  // packets a minute
  double multicast;
  double inErrors;  // in 24 hours; 0 for a port with a stray error now and then
  double outErrors;
};

// The profile of the port of that ordinal within its class.
const PortProfile& ProfileOf(bool isTrunk, int ordinal);

// The figures of one port over 24 hours; -1 where the device does not count.
struct PortFigures {
  std::int64_t inMb = 0;
  std::int64_t outMb = 0;
  std::int64_t broadcastPpm = 0;
  std::int64_t multicastPpm = 0;
  std::int64_t inErrors = 0;
  std::int64_t outErrors = 0;
};

struct DemoPort;

// The figures that a report of that day gives, which cover the day before.
PortFigures FiguresOf(const DemoPort& port, std::chrono::local_days reportDay);

}  // namespace quillon
