// All per-connection records, slots 1 to 20. They live as long as the process and are
// never cleared as a whole: a field that a report does not reach keeps what an earlier
// report of the slot left.
#pragma once

#include "queries/records/disk_table.h"
#include "queries/records/hist45_storage.h"
#include "queries/records/hist45_switch.h"
#include "queries/records/hist45d_summary.h"
#include "queries/records/slot_records.h"
#include "queries/records/switch_table.h"

namespace quillon {

struct ReportRecords {
  Slots<SwitchTableRecord> SwitchTableRep;
  Slots<DiskTableRecord> DiskTableRep;
  SlotRecords<Hist45SwitchRecord> Hist45SwitchRep;
  SlotRecords<Hist45MemRecord> Hist45MemRep;
  SlotRecords<Hist45DiskRecord> Hist45DiskRep;
  SlotRecords<Hist45dSwitchRecord> Hist45dSwitchRep;
  SlotRecords<Hist45dDiskRecord> Hist45dDiskRep;
};

}  // namespace quillon
