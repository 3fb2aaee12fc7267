// Hist45dSwitchRep and Hist45dDiskRep: the last 45 days of all ports of a kind, and of all
// storages by their kind.
#pragma once

#include <string>

#include "queries/records/panel.h"

namespace quillon {

struct Hist45dSwitchRecord {
  Days<DateTime> TrafficDate = DatesNeverSet();  // the wanted day, without a time
  std::string Report;                            // the word naming the report
  Panel Errors;
  Panel Broadcast;
  Panel Volume;
  Panel Ports;  // all ports, and those in traffic
};

struct Hist45dDiskRecord {
  Days<DateTime> StorageDate = DatesNeverSet();
  Panel Physical;
  Panel Virtual;
  Panel Windows;
  Panel Unix;
};

}  // namespace quillon
