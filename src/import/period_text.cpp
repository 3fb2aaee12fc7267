// Date and hour.
#include "import/period_text.h"

#include <fmt/format.h>

namespace quillon {

std::string PeriodText(DateTime day, std::string_view pattern, int hour) {
  return fmt::format("{}&nbsp;&nbsp{:02}:00", FormatDate(day, pattern), hour);
}

}  // namespace quillon
