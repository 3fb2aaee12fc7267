// The frame around a report: document head, top band with the report selector, help
// popup, footer, closing tags. What stands between is appended by others.
#pragma once

#include <string>
#include <string_view>

#include "render/render_context.h"

namespace quillon {

// Widths in pixels of the selector's cell in the top band: on report pages, on the
// searches for ports and addresses, on the disk search.
inline constexpr int kReportPageWidth = 580;
inline constexpr int kPortSearchWidth = 270;
inline constexpr int kDiskSearchWidth = 250;

// Appends the document head and the top band up to and including the selector, in which
// `reportKey` marks the current report; a key of no report marks none. The row of the
// top band stays open: a search form may follow, and then TopHeader_End.
void TopHeader_Begin(const RenderContext& context, int middleCellWidth, std::string_view reportKey,
                     std::string& pageHtml);

// Appends the help mark with its popup and closes the top band.
void TopHeader_End(const RenderContext& context, std::string& pageHtml);

// Appends the document head and the opened body alone: a mailed page has nowhere to
// navigate to.
void TopHeader_MailReport(const RenderContext& context, std::string& pageHtml);

// Appends the footer table. A stored page is without it.
void Page_Footer(const RenderContext& context, std::string& pageHtml);

// Appends the closing tags; a page ends without a line end.
void Page_End(const RenderContext& context, std::string& pageHtml);

}  // namespace quillon
