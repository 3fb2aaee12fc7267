// What the searches for ports and for addresses have alike: patterns, heads, a port that was found,
// the dump.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/database.h"
#include "queries/query_context.h"

namespace quillon {

// Database text as the pattern of a LIKE, with "%" for each "*"; and the same of a search text.
std::string LikeText(std::string databaseText);
std::string LikeTextOfSearch(const QueryContext& context, const std::string& searchText);

// TableHead and TableReport, whose word is given by its number in the language file.
void SetSearchHeads(const QueryContext& context, int report, SwitchTableRecord& record);

// The port of the current row of VLAN, with its metrics where they are of the report day.
void FillFoundPort(const QueryContext& context, const Recordset& vlan, SwitchTableRow& row);

// Appends the record to the dump file. `backslashPath` is below AppPath.
void DumpSearch(const QueryContext& context, std::int64_t startTick, std::string_view backslashPath,
                const SwitchTableRecord& record);

}  // namespace quillon
