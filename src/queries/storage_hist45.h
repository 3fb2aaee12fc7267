// The last 45 days of a server's memory and of one disk. All as in switch_hist45.h: what is kept,
// the waits, the failures. Names and storages are database text.
#pragma once

#include <cstdint>
#include <string>

#include "platform/listener.h"
#include "queries/query_context.h"
#include "queries/reused_connection.h"

namespace quillon {

// Fills Hist45MemRep of `slot` with the storages "Physical" and "Virtual" of the device.
void SqlHist45MemControl(QueryContext& context, ConnectionId slot, std::int32_t recNo,
                         const std::string& devName, bool background);
void SqlHist45MemStats(QueryContext& context, ReusedConnection& history, ConnectionId slot,
                       int position, const std::string& histTable, std::int32_t recNo);

// Fills Hist45DiskRep of `slot`. `storDescr` goes into the select as it stands: one with a quote
// fails there, day by day.
void SqlHist45DiskControl(QueryContext& context, ConnectionId slot, std::int32_t recNo,
                          const std::string& devName, const std::string& storDescr,
                          bool background);
void SqlHist45DiskStats(QueryContext& context, ReusedConnection& history, ConnectionId slot,
                        int position, const std::string& histTable, std::int32_t recNo,
                        const std::string& storDescr);

}  // namespace quillon
