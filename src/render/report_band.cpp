// The report band, line by line in page order.
#include "render/report_band.h"

#include "render/page_text.h"

namespace quillon {
namespace {

struct BandRow {
  std::string_view labelWidth;
  std::string_view label;
  std::string_view valueWidth;
  std::string_view value;
};

// Two rows of a label and a value.
void SideBlock(const BandRow& upper, const BandRow& lower, std::string& pageHtml) {
  Line(pageHtml, "    <td width='240px'><table class='repHeader2'>");
  for (const BandRow& row : {upper, lower}) {
    Line(pageHtml, "      <tr>");
    Line(pageHtml, "        <td width='", row.labelWidth, "'>", row.label, ":</td>");
    Line(pageHtml, "        <td width='", row.valueWidth, "'>", row.value, "</td>");
    Line(pageHtml, "      </tr>");
  }
  Line(pageHtml, "    </table></td>");
}

}  // namespace

void ReportBand(const RenderContext& context, std::string_view tableReport,
                std::string_view tableCriteria, std::string_view tableHead, std::string& pageHtml) {
  Line(pageHtml, "<table width='790px' class='repHeader'>");
  Line(pageHtml, "  <tr>");
  // 190 and 200 in the same column: the browser takes the wider one, as it always has.
  SideBlock({"50px", context.LangWord(18), "190px", tableReport},
            {"50px", context.LangWord(19), "200px", tableCriteria}, pageHtml);
  Line(pageHtml, "    <td width='310px'>", tableHead, "</td>");
  SideBlock({"40px", context.LangWord(20), "200px", context.period.ReportStart},
            {"40px", context.LangWord(21), "200px", context.period.ReportEnd}, pageHtml);
  Line(pageHtml, "  </tr>");
  Line(pageHtml, "</table>");
  Line(pageHtml, "<br>");
}

}  // namespace quillon
