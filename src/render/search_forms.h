// The search forms in the top band, between the report selector and the help mark. They show what
// was submitted as it came: nothing is escaped.
#pragma once

#include <string>
#include <string_view>

#include "render/render_context.h"

namespace quillon {

// Appends the form that searches ports by name, between TopHeader_Begin and TopHeader_End.
void TopHeader_SearchDevicePortName(const RenderContext& context, std::string_view device,
                                    std::string_view port, std::string& pageHtml);

// The same by alias.
void TopHeader_SearchDevicePortAlias(const RenderContext& context, std::string_view device,
                                     std::string_view port, std::string& pageHtml);

// Appends the form that searches MAC and IP addresses.
void TopHeader_SearchMacIp(const RenderContext& context, std::string_view address,
                           std::string& pageHtml);

// Appends the form that searches disks. `orderKey`, such as "usedpercent-desc", marks one of its
// twelve orders; a key of none marks none.
void TopHeader_SearchDeviceStorage(const RenderContext& context, std::string_view device,
                                   std::string_view disk, std::string_view orderKey,
                                   std::string& pageHtml);

}  // namespace quillon
