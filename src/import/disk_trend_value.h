// What a storage used on an earlier day.
#pragma once

#include <cstdint>
#include <string>

#include "import/import_context.h"
#include "import/write_group.h"
#include "platform/database.h"

namespace quillon {

// What the reading of old values touches: one connection for all of them, since opening it costs
// far more than the select, and the rows that the caller is writing meanwhile.
struct TrendReading {
  ImportContext& context;
  Connection& history;
  WriteGroup& writes;  // committed before an event: no lock is held through its half second
};

// Sets `value` to UsedProc of the storage in that day table, rounded to a 16-bit integer, ties to
// even; 0 where the table has no such row. A failure is reported, and leaves `value` as it was:
// that of the storage before. A DatabaseFailure leaves here only where the commit fails.
void DiskReadTrendValue(TrendReading& reading, const std::string& table, std::int32_t recNo,
                        const std::string& storDescr, std::int16_t& value);

}  // namespace quillon
