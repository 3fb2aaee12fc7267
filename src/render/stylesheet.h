// The one stylesheet of the site, made of a colour theme and a fixed list of rules.
#pragma once

#include <string>
#include <string_view>

#include "render/render_context.h"
#include "render/themes.h"

namespace quillon {

// The whole text of the file, both line ends at its end included.
std::string StylesheetText(const Theme& theme);

// Writes \WebReports\qws.css in the colours of the theme that the console's list
// cboColorTheme shows. An unknown name writes empty colours. On a failure the old
// file stays.
void CreateCss(const Diagnostics& diagnostics, std::string_view cboColorTheme);

}  // namespace quillon
