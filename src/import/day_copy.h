// The copy of a day, which switches and disks have alike.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "import/import_context.h"
#include "platform/database.h"

namespace quillon {

// A table of Reports.mdb and the field that tells of which day a row is.
struct DaySource {
  std::string_view table;
  std::string_view dateField;
};

// Calls `copyRow` with each row of today of the source and with the day table of History.mdb, which
// it may add a row to, with pauses. Raises what its caller reports, and leaves the rows before.
void CopyToday(ImportContext& context, const DaySource& source, const std::string& dayTable,
               const std::function<void(const Recordset& row, Recordset& day)>& copyRow);

}  // namespace quillon
