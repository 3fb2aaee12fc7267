// What makes SQLite answer in the dialect of the report selects: Format of dates, LIKE
// with bracket lists, text compared without regard to case for all letters; and the
// guard that keeps a read-only handle to the tables of its own file.
#pragma once

#include "platform/select_limits.h"

struct sqlite3;

namespace quillon {

// Registers Format(date, pattern), LIKE and the collation NOCASE with the handle. The
// built-in NOCASE folds ASCII only, so no index may hold a text column. With long texts each of
// them looks at the limits, which outlive the handle.
void RegisterDialect(sqlite3* handle, const SelectLimits& limits);

// Refuses everything but one select over the file's own tables: no write, no other file,
// no pragma, no virtual table, no recursion, no function but Count, Format and LIKE, no
// value beyond 256 KiB.
void GuardReader(sqlite3* handle);

}  // namespace quillon
