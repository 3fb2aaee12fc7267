// The daily import: whether it is due, and its steps in their order.
#pragma once

#include "import/import_context.h"

namespace quillon {

// Takes the day over, once a day: when LastReport of General_Info is of today and LastImport is
// not. Each call brings ReportStart and ReportEnd of the report period up to date, due or not.
// The steps report their own failures and the next one runs; LastImport comes last. `result`
// is True where an import ran to its end, and False where none was due or General_Info failed.
void Import(ImportContext& context, bool& result);

}  // namespace quillon
