// Hist45MemRep and Hist45DiskRep: the last 45 days of a server's memory, and of one disk.
// The left series is the whole size of a day, the right one what was used of it.
#pragma once

#include <string>

#include "queries/records/panel.h"

namespace quillon {

struct Hist45MemRecord {
  Days<DateTime> StorageDate = DatesNeverSet();  // the wanted day, without a time
  Days<std::string> HistTable;  // the day table in History.mdb; empty where the day is missing
  std::string Device;
  std::string Storage;
  Panel Physical;
  Panel Virtual;
};

struct Hist45DiskRecord {
  Days<DateTime> StorageDate = DatesNeverSet();
  Days<std::string> HistTable;
  std::string Device;
  std::string Storage;
  Panel Disk;
};

}  // namespace quillon
