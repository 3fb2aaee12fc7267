// A field of an old table as the new column holds it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "platform/sqlite_statement.h"
#include "quillondb/jet/jet_source.h"

namespace quillon {

// Null, whole number, number, text. Truth values are 1 and 0, moments 'YYYY-MM-DD HH:MM:SS'.
using StoredField = std::variant<std::monostate, std::int64_t, double, std::string>;

// A null stays one, but a text is empty then: it is what the pages read. ConversionFailure or
// OverflowFailure, with the reason alone for its text, where a column of that declared type cannot
// hold the value.
StoredField ConvertField(const JetValue& value, std::string_view declaredType);

// What a column gets where the old table has none of its name, and a new installation no row to
// take it from: nothing, of its type.
StoredField EmptyField(std::string_view declaredType);

void BindField(SqliteStatement& statement, int position, const StoredField& field);

}  // namespace quillon
