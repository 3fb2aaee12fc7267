// The lists of the disks, or memories, that stand first in one order: ten, or as many as the record
// has rows.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/listener.h"
#include "queries/query_context.h"

namespace quillon {

// Fills DiskTableRep of the slot, 1 to 20, with the disks of one class (10 physical memory, 20
// virtual memory, 30 Windows disk, 40 Unix disk) out of the newest day table, sorted by `field`,
// "TotalM", "FreeM", "UsedM", "UsedProc", "Trend14d" or "Trend30d", in the order "ASC" or "DESC".
// The caller has set each recNo of the slot to 0. Without a table of that day nothing is
// touched. A failure is reported; what was filled until then stays.
void SqlTop10DiskStats(QueryContext& context, ConnectionId slot, std::int16_t diskType,
                       std::string_view field, std::string_view sortOrder);

}  // namespace quillon
