// The header band over every table report: what it is, and the period that it covers.
#pragma once

#include <string>
#include <string_view>

#include "render/render_context.h"

namespace quillon {

// Appends the band of 790 pixels: report and criteria at the left, the head in the
// middle, start and end of the period at the right.
void ReportBand(const RenderContext& context, std::string_view tableReport,
                std::string_view tableCriteria, std::string_view tableHead, std::string& pageHtml);

}  // namespace quillon
