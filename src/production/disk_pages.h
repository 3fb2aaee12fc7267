// The pre-generated pages of disks and memories. A failure is reported, and the page is missing
// then.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "production/production_context.h"

namespace quillon {

// Stores the list of ten disks of a class (10 physical memory, 20 virtual memory, 30 Windows disk,
// 40 Unix disk) by `field`, a column of the day tables, "ASC" or "DESC", as `file`. No pause.
void AutoCreateTop10_Disk(ProductionContext& context, std::int16_t diskType, std::string_view field,
                          std::string_view order, const std::string& file);

// Stores the summary of all disks and memories.
void AutoCreateSum_Disk(ProductionContext& context, const std::string& file);

}  // namespace quillon
