// The chart band, line by line in page order.
#include "render/chart_band.h"

#include "render/page_text.h"

namespace quillon {

void ChartBand(std::initializer_list<BandRow> rows, const ChartWords& words, std::string& page) {
  Line(page, "<table width='790px' class='repHeader'>");
  Line(page, "  <tr>");
  BandBlock(rows, page);
  Line(page, "    <td width='310px'>", words.title, "</td>");
  Line(page, "    <td width='240px'><table class='repHeader2'>");
  Line(page, "      <tr class='chartDataLeft'>");
  Line(page, "        <td width='240px' style='text-align:center'>", words.left, "</td>");
  Line(page, "      </tr>");
  Line(page, "      <tr class='chartDataRight'>");
  Line(page, "        <td width='240px' style='text-align:center'>", words.right, "</td>");
  Line(page, "      </tr>");
  Line(page, "    </table></td>");
  Line(page, "  </tr>");
  Line(page, "</table>");
}

}  // namespace quillon
