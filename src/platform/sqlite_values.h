// Field values in and out of SQLite statements.
#pragma once

#include "platform/database.h"
#include "platform/sqlite_statement.h"

namespace quillon {

// The value of a column of the current row, under the column's name. Dates, booleans and
// singles are told by the column's declaration, everything else by what is stored; a text
// that is no date stays a text.
Value ReadColumn(const SqliteStatement& statement, std::size_t column, const std::string& name);

void BindValue(SqliteStatement& statement, int position, const Value& value);

}  // namespace quillon
