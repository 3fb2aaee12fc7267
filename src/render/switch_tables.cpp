// The switch port tables, line by line in page order. The anchors that are left open in
// the heads and the unquoted links are this site's text and wanted as they are.
#include "render/switch_tables.h"

#include "render/page_text.h"
#include "render/report_band.h"
#include "render/table_parts.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

constexpr std::string_view kModule = "modHtml";

// Pixels of the page: a popup is placed absolutely, one row height apart for each row,
// below a table that stands directly under the top band.
constexpr int kPopupTop = 178;
constexpr int kRowHeight = 18;

// The six metric columns: head, link, and where the row has its texts.
struct Metric {
  std::string_view name;  // in the names of the pages
  int word;
  std::string SwitchTableRow::*shortForm;  // the cell
  std::string SwitchTableRow::*fullForm;   // the popup
};

constexpr Metric kMetrics[] = {
    {"involume", 22, &SwitchTableRow::inHCOctetsMb24H, &SwitchTableRow::inHCOctetsMb24HF},
    {"outvolume", 23, &SwitchTableRow::outHCOctetsMb24H, &SwitchTableRow::outHCOctetsMb24HF},
    {"inbroadcast", 24, &SwitchTableRow::inBroadCastPpm24H, &SwitchTableRow::inBroadCastPpm24HF},
    {"inmulticast", 25, &SwitchTableRow::inMultiCastPpm24H, &SwitchTableRow::inMultiCastPpm24HF},
    {"inerrors", 26, &SwitchTableRow::inErrorsTot24H, &SwitchTableRow::inErrorsTot24HF},
    {"outerrors", 27, &SwitchTableRow::outErrorsTot24H, &SwitchTableRow::outErrorsTot24HF},
};

constexpr int kPortHead = 16;  // of the language file

void PopupRow(std::string& pageHtml, std::string_view word, std::string_view value) {
  Line(pageHtml, "    <div class='div-table-row'>");
  Line(pageHtml, "    <div class='div-table-col'><b>", word, "</b></div>");
  Line(pageHtml, "    <div class='div-table-col'>", value, "</div></div>");
}

std::string UserMac(const SwitchTableRow& row) {
  if (row.userLastSeen == "-") return row.userMacAddr;
  return row.userMacAddr + "&nbsp;&nbsp(LastSeen: " + row.userLastSeen + ")";
}

void PortPopup(const RenderContext& context, const SwitchTableRow& row, int rowNumber,
               std::string& pageHtml) {
  Line(pageHtml, "    <div id='t", std::to_string(rowNumber),
       "' class='popupTable' style='top:", std::to_string(rowNumber * kRowHeight + kPopupTop),
       "px'>");
  Line(pageHtml, "    <div class='div-table'>");
  Line(pageHtml, "    <div class='div-table-caption'><b>", row.ifDescr,
       "&nbsp;&nbsp;&nbsp;&nbsp Index: ", std::to_string(row.ifIndex),
       "&nbsp;&nbsp;&nbsp;&nbsp Admin: ", row.ifAdmin, "&nbsp;&nbsp;&nbsp;&nbsp Oper: ", row.ifOper,
       "</b></div>");
  PopupRow(pageHtml, context.LangWord(15),
           row.device + "&nbsp;&nbsp(RecNo: " + std::to_string(row.recNo) + ")");
  PopupRow(pageHtml, context.LangWord(46), row.ipAddr);
  PopupRow(pageHtml, context.LangWord(32), row.ifAlias);
  PopupRow(pageHtml, context.LangWord(31), row.vlanID);
  PopupRow(pageHtml, context.LangWord(43), row.ifSpeed);
  PopupRow(pageHtml, context.LangWord(29), UserMac(row));
  PopupRow(pageHtml, context.LangWord(30), row.userIpAddr);
  for (const Metric& metric : kMetrics) {
    PopupRow(pageHtml, context.LangWord(metric.word), row.*metric.fullForm);
  }
  Line(pageHtml, "    </div></div>");
}

// The cell of the port's name, over which the popup opens.
void PortCell(const SwitchTableRow& row, int rowNumber, std::string& pageHtml) {
  Line(pageHtml, "    <td width='130px' style='text-align:left'>",
       PopupLink("t" + std::to_string(rowNumber), row.ifDescr), "</td>");
}

void PortRow(const RenderContext& context, const SwitchTableRow& row, int rowNumber,
             std::string_view pageName, std::string& pageHtml) {
  const std::string_view rowClass = RowClass(rowNumber);
  Line(pageHtml, "  <tr class='", rowClass, "' onMouseOver=", QuoteChar,
       "this.className='tableDataActive'", QuoteChar, " onMouseOut=", QuoteChar, "this.className='",
       rowClass, "'", QuoteChar, ">");
  Line(pageHtml, "    <td width='150px' style='text-align:left'><a href=hist45-",
       std::to_string(row.recNo), "-", std::to_string(row.ifIndex), "-", pageName, ">", row.device,
       "</a></td>");
  PortCell(row, rowNumber, pageHtml);
  PortPopup(context, row, rowNumber, pageHtml);
  for (const Metric& metric : kMetrics) {
    Line(pageHtml, "    <td width='85px'", CellStyle(IsLast(kMetrics, metric)), ">",
         row.*metric.shortForm, "</td>");
  }
  Line(pageHtml, "  </tr>");
}

// The rows that are not empty, which keep the numbers of their places, and the table's end.
void PortRows(const RenderContext& context, ConnectionId slot, std::string_view pageName,
              std::string& pageHtml) {
  const auto& rows = context.records.SwitchTableRep[slot].rows;
  for (int rowNumber = 1; rowNumber <= rows.size(); ++rowNumber) {
    if (rows[rowNumber].recNo == 0) continue;
    PortRow(context, rows[rowNumber], rowNumber, pageName, pageHtml);
  }
  TableEnd(pageHtml);
}

}  // namespace

void TableHeader_Switch(const RenderContext& context, ConnectionId slot, std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "TableHeader_Switch", [&] {
    const SwitchTableRecord& record = context.records.SwitchTableRep[slot];
    ReportBand(context, record.TableReport, record.TableCriteria, record.TableHead, pageHtml);
  });
}

void TableData_Switch(const RenderContext& context, ConnectionId slot, std::string_view portKind,
                      std::string_view pageName, std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "TableData_Switch", [&] {
    TableHeadBegin(context, kPortHead, pageHtml);
    for (const Metric& metric : kMetrics) {
      Line(pageHtml, "    <th width='85px'", CellStyle(IsLast(kMetrics, metric)),
           "><a href='switch-", portKind, "-port-top10-", metric.name, ".htm'>",
           context.LangWord(metric.word), "</th>");
    }
    Line(pageHtml, "  </tr>");
    PortRows(context, slot, pageName, pageHtml);
  });
}

void TableDataSwitch_Search(const RenderContext& context, ConnectionId slot,
                            std::string_view pageName, std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "TableDataSwitch_Search", [&] {
    TableHeadBegin(context, kPortHead, pageHtml);
    for (const Metric& metric : kMetrics) {
      PlainHead(context.LangWord(metric.word), IsLast(kMetrics, metric), pageHtml);
    }
    Line(pageHtml, "  </tr>");
    PortRows(context, slot, pageName, pageHtml);
  });
}

}  // namespace quillon
