// The one row of General_Info: the marks of the daily cycle.
#pragma once

#include <functional>

#include "import/import_context.h"
#include "platform/database.h"

namespace quillon {

// Stores what `change` sets in the row. Raises what its caller reports.
void ChangeMarks(ImportContext& context, const std::function<void(Recordset& marks)>& change);

}  // namespace quillon
