// Field values in and out of SQLite statements.
#pragma once

#include "platform/database.h"
#include "platform/sqlite_statement.h"

namespace quillon {

// The value of a column of the current row, under the column's name. Dates, booleans and
// singles are told by the column's declaration, everything else by what is stored; a text
// that is no date stays a text.
Value ReadColumn(const SqliteStatement& statement, std::size_t column, const std::string& name);

// Binds a value for a column of that declaration: a single is cut to 32 bits, and a text
// column gets a number as its text.
void BindValue(SqliteStatement& statement, int position, const Value& value,
               std::string_view declaration);

}  // namespace quillon
