// One old table into one new table.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

#include "import/schema/shapes.h"
#include "import/schema/sqlite_file.h"
#include "quillondb/jet/jet_source.h"
#include "quillondb/jet/losses.h"

namespace quillon {

// Where the column stands in the rows of the old table, whatever the case of its name; none where
// the table lacks it.
std::optional<std::size_t> PlaceOf(const JetTable& old, std::string_view column);

// Where tables go: a database in a transaction of the caller's, and beside it one as a new
// installation has it.
struct JetTarget {
  const SqliteFile& file;
  const SqliteFile& reference;
  JetLosses& losses;
  std::ostream& progress;
};

// Empties the new table and fills it with the rows of the old one. Columns meet by their names,
// without regard to case. `model` is the table of the reference that has its shape, mostly the
// new table itself. Tells the progress and what was lost:
// - of a table that has one row in a new installation, a field that cannot be taken keeps what is
//   there; of any other, the row is left out
// - a column that the old table lacks gets what a new installation has
// Returns the rows that came over.
std::int64_t CopyTable(JetSource& source, const JetTable& old, const JetTarget& target,
                       const TableShape& table, const std::string& model);

}  // namespace quillon
