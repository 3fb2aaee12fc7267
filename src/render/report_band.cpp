// The report band, line by line in page order.
#include "render/report_band.h"

#include "render/band_block.h"
#include "render/page_text.h"

namespace quillon {

void ReportBand(const RenderContext& context, std::string_view tableReport,
                std::string_view tableCriteria, std::string_view tableHead, std::string& pageHtml) {
  Line(pageHtml, "<table width='790px' class='repHeader'>");
  Line(pageHtml, "  <tr>");
  BandBlock(
      {{"50px", context.LangWord(18) + ":", "190px", [&] { return std::string(tableReport); }},
       {"50px", context.LangWord(19) + ":", "200px", [&] { return std::string(tableCriteria); }}},
      pageHtml);
  Line(pageHtml, "    <td width='310px'>", tableHead, "</td>");
  const ReportPeriod& period = context.period;
  BandBlock({{"40px", context.LangWord(20) + ":", "200px", [&] { return period.ReportStart; }},
             {"40px", context.LangWord(21) + ":", "200px", [&] { return period.ReportEnd; }}},
            pageHtml);
  Line(pageHtml, "  </tr>");
  Line(pageHtml, "</table>");
  Line(pageHtml, "<br>");
}

}  // namespace quillon
