// The day tables of an old history, whose names only its control tables know, and their places in
// the new one.
#pragma once

#include <string>
#include <vector>

#include "import/schema/databases.h"
#include "quillondb/jet/field_conversion.h"
#include "quillondb/jet/jet_source.h"
#include "quillondb/jet/losses.h"

namespace quillon {

// One day: a table of the old history, the one of the new that takes it, and the date of both.
struct DayMove {
  std::string oldTable;
  std::string newTable;
  StoredField date;
};

// The rows of the old control table in stored order, matched with the new names in theirs. Where
// there are more, the youngest come over. A row that names no table, or has no date, is lost.
std::vector<DayMove> PlanDays(JetSource& source, const JetTable& control, const DayTableKind& kind,
                              const std::vector<std::string>& newTables, JetLosses& losses);

}  // namespace quillon
