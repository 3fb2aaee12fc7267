// The fields of a posted form: lines "<Field>=<value>" anywhere in the text of a request, without
// any coding but that of blanks.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillon {

// A form ends in its last field, which needs no line end.
enum class FieldPlace { kInner, kLast };

// The value behind the first occurrence of `key`, such as "DeviceName=", up to the line end,
// trimmed of blanks, with each "+" as a blank. Nothing where the key is missing, or the line end of
// a field that is not the last.
std::optional<std::string> FormField(std::string_view text, std::string_view key, FieldPlace place);

}  // namespace quillon
