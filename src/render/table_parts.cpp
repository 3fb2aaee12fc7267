// Pieces of tables.
#include "render/table_parts.h"

#include "render/page_text.h"

namespace quillon {
namespace {

constexpr int kDeviceHead = 15;  // of the language file

}  // namespace

void TableHeadBegin(const RenderContext& context, int word, std::string& pageHtml) {
  Line(pageHtml, "<table width='790px' class='tableData'>");
  Line(pageHtml, "  <tr>");
  Line(pageHtml, "    <th width='150px' style='text-align:left'>", context.LangWord(kDeviceHead),
       "</th>");
  Line(pageHtml, "    <th width='130px' style='text-align:left'>", context.LangWord(word), "</th>");
}

void PlainHead(std::string_view text, bool isLast, std::string& pageHtml) {
  Line(pageHtml, "    <th width='85px'", CellStyle(isLast), ">", text, "</th>");
}

std::string_view RowClass(int rowNumber) {
  return rowNumber % 2 == 1 ? "tableDataOdd" : "tableDataEven";
}

std::string_view CellStyle(bool isLast) {
  return isLast ? " style='border-right:0px'" : "";
}

void TableEnd(std::string& pageHtml) {
  Line(pageHtml, "</table>");
  Line(pageHtml, "<br>");
}

}  // namespace quillon
