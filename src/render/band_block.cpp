// Blocks of header bands, line by line.
#include "render/band_block.h"

#include "render/page_text.h"

namespace quillon {

void BandBlock(std::initializer_list<BandRow> rows, std::string& page) {
  Line(page, "    <td width='240px'><table class='repHeader2'>");
  for (const BandRow& row : rows) {
    Line(page, "      <tr>");
    Line(page, "        <td width='", row.labelWidth, "'>", row.label, "</td>");
    Line(page, "        <td width='", row.valueWidth, "'>", row.value(), "</td>");
    Line(page, "      </tr>");
  }
  Line(page, "    </table></td>");
}

}  // namespace quillon
