// The pre-generated charts of servers, out of the day table of yesterday (from 23:00 on, of today).
// Without that table there are none. A failure is reported and ends the walk: the servers behind
// it have no charts until the next run.
#pragma once

#include "production/production_context.h"

namespace quillon {

// Stores the memory charts of every server as histdisk45-<device>-mem.htm, with a pause of 50 ms
// before each.
void AutoCreateChDa45_Mem(ProductionContext& context);

// Stores the chart of every disk as histdisk45-<device>-<disk>.htm, "/" and ":" of the disk's name
// replaced by "_". The same pause.
void AutoCreateChDa45_Disk(ProductionContext& context);

}  // namespace quillon
