// DiskTableRep: the texts of one table of disks or memories, ten at most on a page, one record
// for each connection. All texts are finished for display.
#pragma once

#include <cstdint>
#include <string>

#include "platform/one_based.h"

namespace quillon {

// One storage. A row whose recNo is 0 is empty.
struct DiskTableRow {
  std::int32_t recNo = 0;  // the device
  std::string device;
  std::string storDescr;  // "Physical" and "Virtual" stand for memory
  std::string totalM;
  std::string freeM;
  std::string usedM;
  std::string usedProc;
  std::string trend14d;
  std::string trend30d;
};

struct DiskTableRecord {
  std::string TableHead;
  std::string TableReport;
  std::string TableCriteria;
  TableRows<DiskTableRow> rows;
};

}  // namespace quillon
