// Texts of all tables.
#include "queries/report_table.h"

#include <fmt/format.h>

namespace quillon {

std::string CriteriaText(std::int32_t shown, std::int32_t total) {
  return fmt::format("{} ({})", shown, total);
}

}  // namespace quillon
