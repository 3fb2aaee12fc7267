// The colour themes of the site.
#pragma once

#include <string_view>

namespace quillon {

// The colours of one theme, as texts that go into the style rules as they stand.
struct Theme {
  std::string_view name;
  std::string_view BodyBg;
  std::string_view BandBg;
  std::string_view BandText;
  std::string_view BandBorder;
  std::string_view InputBg;
  std::string_view InputText;
  std::string_view InputBorder;
  std::string_view TopLine1;
  std::string_view TopLine2;
  std::string_view LinkColor;
  std::string_view LinkHover;
  std::string_view RowOddBg;
  std::string_view RowEvenBg;
  std::string_view RowActiveBg;
  std::string_view TableText;
  std::string_view ChartBg;
  std::string_view ChartText;
  std::string_view ChartAxis;
  std::string_view ChartLeft;
  std::string_view ChartRight;
  std::string_view ChartLeft2;
  std::string_view ChartRight2;
  std::string_view ChartLeft3;
  std::string_view ChartRight3;
  std::string_view ChartSundayBg;
  std::string_view CaptionBg;
  std::string_view CaptionText;
  std::string_view PopupBorder;
  std::string_view PopupBg;
  std::string_view PopupText;
};

// The theme of a new installation.
inline constexpr std::string_view kDefaultTheme = "Blue";

// The theme of that name, which is case-sensitive; one with empty colours for any other.
const Theme& FindTheme(std::string_view name);

}  // namespace quillon
