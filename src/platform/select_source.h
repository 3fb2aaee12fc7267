// The rows of a running select.
#pragma once

#include <memory>
#include <string>

#include "platform/recordset_source.h"
#include "platform/select_limits.h"

namespace quillon {

// Runs the select on a handle that outlives the rows. Raises DatabaseFailure for a text
// that is not one statement of the handle's own tables, here or at the first row, and once the
// time of the limits, under which the select runs, is over; null for a select without that.
std::unique_ptr<Recordset::Source> MakeSelectSource(sqlite3* handle, const std::string& file,
                                                    const std::string& select,
                                                    SelectLimits* limits);

}  // namespace quillon
