// The tables and columns that an installation has to have, read out of databases built in memory
// from the same texts as the real ones, so that nothing is listed twice.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "import/schema/sqlite_file.h"

namespace quillon {

struct ColumnShape {
  std::string name;
  std::string declaredType;  // such as DATE or TEXT
};

struct TableShape {
  std::string name;
  std::vector<ColumnShape> columns;
};

// The columns of a table of an open database; none where there is no such table.
std::vector<ColumnShape> ColumnsOf(const SqliteFile& file, std::string_view table);

// The tables of the database of that file name, the day tables left out.
std::vector<TableShape> ExpectedTables(std::string_view fileName);

// The columns of the day tables that the control table names.
std::vector<ColumnShape> ExpectedDayColumns(std::string_view controlTable);

}  // namespace quillon
