// The ring of day tables, which switches and disks have alike: a control row names a table and
// tells the day that it holds. No row says which is the next one; a row is free when its day is
// more than 45 days back.
#pragma once

#include <string>
#include <string_view>

#include "import/import_context.h"
#include "platform/database.h"

namespace quillon {

struct Rotation {
  std::string_view controlTable;
  std::string_view dateField;
  void (*CopyDay)(ImportContext& context, const std::string& table);  // fills an empty day table
};

// Takes the first free row in stored order, empties its table, copies the day into it, and stamps
// the row with the present moment less 23 hours, whatever came of the copy. Nothing without a
// free row. Raises what its caller reports.
void FillFreeTable(ImportContext& context, const Rotation& rotation);

// Deletes all rows of the table of History.mdb, with pauses. A failure is reported under the name
// with the table's behind it.
void ClearTable_(ImportContext& context, const std::string& table);

// The name of a procedure that is reported with its table's: "ClearTable_VLAN_Day01".
std::string NameWithTable(const ImportContext& context, std::string_view procedure,
                          const std::string& table);

}  // namespace quillon
