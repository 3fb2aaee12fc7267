// Hist45SwitchRep: the last 45 days of one switch port.
#pragma once

#include <string>

#include "queries/records/panel.h"

namespace quillon {

struct Hist45SwitchRecord {
  Days<DateTime> TrafficDate = DatesNeverSet();  // the wanted day, without a time
  Days<std::string> HistTable;  // the day table in History.mdb; empty where the day is missing
  std::string Device;
  std::string Port;
  Panel Errors;     // in and out
  Panel Broadcast;  // broadcast and multicast coming in
  Panel Volume;     // in and out
};

}  // namespace quillon
