// Values of a table as fields of CSV, and back.
#pragma once

#include <string>
#include <string_view>

#include "quillondb/csv/columns.h"

namespace quillon {

// Bytes of a text. Longer ones are more than the service reads of a field.
inline constexpr std::size_t kLongestText = std::size_t{256} * 1024;

// What the field stands for in a column. Blanks around it count in texts alone. A text is a view of
// the field. ConversionFailure, with a word on what to write, where the column does not take it.
FieldValue ReadField(const InputColumn& column, std::string_view field);

// The shortest field that reads as the value again, in a column that takes it.
std::string FieldText(const FieldValue& value);

// The value as messages show it: a text in quotes, fit for a terminal, and its beginning alone
// where it is long.
std::string ShownValue(const FieldValue& value);

}  // namespace quillon
