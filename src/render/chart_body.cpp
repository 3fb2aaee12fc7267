// The chart engine, line by line in page order.
#include "render/chart_body.h"

#include "render/page_text.h"

namespace quillon {
namespace {

// Pixels of the page: a popup stands beside its day.
constexpr int kDayWidth = 16;
constexpr int kPopupLeft = 72;

// The labels, 100 pixels high together: the top label stands at the axis top, the other one in the
// middle. The axis itself is a column of one pixel.
void AxisColumn(const Panel& panel, std::string& page) {
  Line(page, "<table width='790px' class='chartData'>");
  Line(page, "<tr>");
  Line(page, "    <td><table width='55px' class='chartData2'>");
  Line(page, "      <tr><td height='7px'>", panel.YaxisMax, " -</td></tr>");
  Line(page, "      <tr><td height='50px'>", panel.YaxisHalf, " -</td></tr>");
  Line(page, "      <tr><td height='43px'></td></tr>");
  Line(page, "    </table></td>");
  Line(page, "    <td><table width='1px' class='chartData2'>");
  Line(page, "      <tr class='chartDataYaxis'><td width='1px'>&nbsp</td></tr>");
  Line(page, "    </table></td>");
}

// A table of three rows: the upper one takes what the bar leaves, so that the bar grows upward.
void Bar(std::string_view rowClass, std::string_view height, std::string& page) {
  Line(page, "    <td><table width='8px' class='chartData2'>");
  Line(page, "      <tr class='chartDataBg'><td height='0px'></td></tr>");
  Line(page, "      <tr class='", rowClass, "'><td height='", height, "'></td></tr>");
  Line(page, "      <tr class='chartDataXaxis'><td height='1px'>&nbsp</td></tr>");
  Line(page, "    </table></td>");
}

void Bars(const Panel& panel, std::string& page) {
  for (int position = 1; position <= panel.LeftBar.kSize; ++position) {
    Bar("chartDataLeft", panel.LeftBar[position], page);
    Bar("chartDataRight", panel.RightBar[position], page);
  }
  Line(page, "    <td><table width='10px'>");
  Line(page, "    </table></td>");
  Line(page, "  </tr>");
  Line(page, "</table>");
}

void DayPopup(const Chart& chart, int position, std::string_view popupId, std::string_view title,
              std::string& page) {
  const Panel& panel = chart.panel;
  Append(page, "      <div id='", popupId,
         "' class='popupChart' style='left:", std::to_string(position * kDayWidth + kPopupLeft),
         "px'><b>", title, "</b><br>");
  Append(page, panel.NameLeft, ": ", panel.Left[position], "<br>");
  Append(page, panel.NameRight, ": ", panel.Right[position], panel.Proc[position]);
  if (chart.numWord) Append(page, "<br>", *chart.numWord, ": ", panel.Num[position]);
  Line(page, "</div>");
}

// The number of the day, a head cell on Sundays so that the weeks can be read off.
void DayCell(const Chart& chart, int position, const CalendarNames& names, std::string& page) {
  const DateTime date = chart.dateOf(position);
  const std::string dayNumber = std::to_string(PartsOf(date).day);
  const std::string title = names.Weekday(date) + ", " + names.Month(date) + " " + dayNumber;
  const std::string popupId = "c" + std::to_string(chart.popupBase + position);
  const std::string_view tag = WeekdayOf(date) == 0 ? "th" : "td";
  Line(page, "    <", tag, "><table width='14px'>", PopupLink(popupId, dayNumber), "</table></",
       tag, ">");
  DayPopup(chart, position, popupId, title, page);
}

void DayNumbers(const RenderContext& context, const Chart& chart, std::string& page) {
  const CalendarNames names = context.calendar.InCharSet(context.settings.CharSet);
  Line(page, "<table width='790px' class='chartDayNr'>");
  Line(page, "  <tr>");
  Line(page, "    <td><table width='55px'></table></td>");
  for (int position = 1; position <= chart.panel.Left.kSize; ++position) {
    DayCell(chart, position, names, page);
  }
  Line(page, "    <td><table width='9px'></table></td>");
  Line(page, "  </tr>");
  Line(page, "</table>");
  Line(page, "<br>");
}

}  // namespace

void ChartBody(const RenderContext& context, const Chart& chart, std::string& page) {
  AxisColumn(chart.panel, page);
  Bars(chart.panel, page);
  DayNumbers(context, chart, page);
}

}  // namespace quillon
