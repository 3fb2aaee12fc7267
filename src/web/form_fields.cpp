// Finding fields in a request.
#include "web/form_fields.h"

#include <algorithm>

#include "platform/number_text.h"
#include "web/text_search.h"

namespace quillon {

std::optional<std::string> FormField(std::string_view text, std::string_view key,
                                     FieldPlace place) {
  const long start = Position(text, key);
  if (start == 0) return std::nullopt;
  long end = Position(text, "\r\n", start);
  if (end == 0) {
    if (place == FieldPlace::kInner) return std::nullopt;
    end = static_cast<long>(text.size()) + 1;
  }
  const long value = start + static_cast<long>(key.size());
  std::string field = Trimmed(Middle(text, value, end - value));
  std::replace(field.begin(), field.end(), '+', ' ');
  return field;
}

}  // namespace quillon
