// Rows on their way into a table of the statistics.
#pragma once

#include "import/schema/sqlite_file.h"
#include "quillondb/csv/columns.h"

namespace quillon {

// Rows are gathered in a table of the connection's own, so that nobody is kept from writing while
// they come in, however slowly. That table lies in a file without a name in `directory`: the
// engine's usual folder is that of the caller, who may not be the one whose rights are in use.
class StagedRows {
 public:
  // The file outlives the rows.
  StagedRows(const SqliteFile& file, const InputTable& table, const std::string& directory);

  // A value of the next row; all columns get one before each Add.
  void Bind(std::size_t column, const FieldValue& value);
  void Add() { insert_.Finish(); }

  // Puts the rows in the place of the table's, in one transaction and once. DatabaseFailure where
  // another program writes for more than 5 s.
  void ReplaceTable();

 private:
  const SqliteFile& file_;
  const InputTable& table_;
  SqliteStatement insert_;
};

}  // namespace quillon
