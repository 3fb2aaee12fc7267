// One old file into one database of an installation: the plan, which writes nothing, and its
// execution.
#pragma once

#include <string>
#include <vector>

#include "import/schema/databases.h"
#include "import/schema/shapes.h"
#include "import/schema/sqlite_file.h"
#include "quillondb/jet/day_moves.h"
#include "quillondb/jet/jet_source.h"
#include "quillondb/jet/losses.h"
#include "quillondb/jet/table_copy.h"

namespace quillon {

struct TableMove {
  JetTable old;
  TableShape table;
};

struct Rotation {
  const DayTableKind* kind;
  std::vector<TableMove> days;  // in the order of `moves`
  std::vector<DayMove> moves;
};

struct DatabaseMove {
  std::vector<TableMove> tables;
  std::vector<Rotation> rotations;
};

// Finds each table that the database has to have. FileFailure, with the names, where the old file
// lacks some of them. Tables that are not known are told as lost.
DatabaseMove PlanDatabase(JetSource& source, std::string_view fileName, const SqliteFile& file,
                          JetLosses& losses);

// DatabaseFailure where a table that the move would fill holds other rows than in a new
// installation.
void RefuseRows(const DatabaseMove& move, const SqliteFile& file, const SqliteFile& reference);

// Fills the tables of the move, and no others; what they hold goes. The rotations keep the names of
// their day tables and get the dates of the old ones; a day table that gets nothing is free.
// Returns the rows that came over.
std::int64_t MoveDatabase(JetSource& source, const DatabaseMove& move, const JetTarget& target);

}  // namespace quillon
