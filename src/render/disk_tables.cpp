// The disk tables, line by line in page order. The anchors that are left open in the heads and the
// unquoted links are this site's text and wanted as they are.
#include "render/disk_tables.h"

#include "render/chart_names.h"
#include "render/page_text.h"
#include "render/report_band.h"
#include "render/table_parts.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

constexpr std::string_view kModule = "modHtml";
constexpr int kDiskHead = 68;  // of the language file

// The six columns that a list can be sorted by: the direction is the one that a head offers where
// the list is sorted by another column.
struct Sort {
  std::string_view field;  // in the names of the pages
  std::string_view direction;
  int word;
  std::string DiskTableRow::*text;
};

constexpr Sort kSorts[] = {
    {"totalbytes", "desc", 69, &DiskTableRow::totalM},
    {"freebytes", "asc", 70, &DiskTableRow::freeM},
    {"usedbytes", "desc", 71, &DiskTableRow::usedM},
    {"usedpercent", "desc", 72, &DiskTableRow::usedProc},
    {"trend14d", "desc", 73, &DiskTableRow::trend14d},
    {"trend30d", "desc", 74, &DiskTableRow::trend30d},
};

bool Holds(std::string_view text, std::string_view wanted) {
  return text.find(wanted) != std::string_view::npos;
}

// The column that a page is sorted by, by its name; null for a name that tells none.
const Sort* CurrentSort(std::string_view pageName) {
  for (const Sort& sort : kSorts) {
    if (Holds(pageName, "-" + std::string(sort.field))) return &sort;
  }
  return nullptr;
}

// Heads that link to the lists in the other orders; a page of no order has none.
void SortHeads(const RenderContext& context, std::string_view reportKind,
               std::string_view sortOrder, std::string_view pageName, std::string& pageHtml) {
  const Sort* current = CurrentSort(pageName);
  if (current == nullptr) return;
  const std::string_view turned = sortOrder == "ASC" ? "desc" : "asc";
  for (const Sort& sort : kSorts) {
    Line(pageHtml, "    <th width='85px'", CellStyle(IsLast(kSorts, sort)), "><a href='disk-",
         reportKind, "-top10-", sort.field, "-", &sort == current ? turned : sort.direction,
         ".htm'>", context.LangWord(sort.word), "</th>");
  }
}

// `linkWord` is the route of the charts, and `pageName` the page that they will stand under.
void DiskRow(const DiskTableRow& row, int rowNumber, std::string_view linkWord,
             std::string_view storage, std::string_view pageName, std::string& pageHtml) {
  Line(pageHtml, "  <tr class='", RowClass(rowNumber), "'>");
  Line(pageHtml, "    <td width='150px' style='text-align:left'><a href=", linkWord, "-",
       std::to_string(row.recNo), "-", storage, "-", pageName, ">", row.device, "</a></td>");
  Line(pageHtml, "    <td width='130px' style='text-align:left'>", row.storDescr, "</td>");
  for (const Sort& sort : kSorts) {
    Line(pageHtml, "    <td width='85px'", CellStyle(IsLast(kSorts, sort)), ">", row.*sort.text,
         "</td>");
  }
  Line(pageHtml, "  </tr>");
}

// The rows that are not empty, which keep the numbers of their places, and the table's end.
template <typename IsMemory>
void DiskRows(const RenderContext& context, ConnectionId slot, std::string_view linkWord,
              std::string_view pageName, IsMemory&& isMemory, std::string& pageHtml) {
  const auto& rows = context.records.DiskTableRep[slot].rows;
  for (int rowNumber = 1; rowNumber <= rows.size(); ++rowNumber) {
    const DiskTableRow& row = rows[rowNumber];
    if (row.recNo == 0) continue;
    const std::string storage =
        isMemory(row) ? std::string(kMemoryCharts) : StorageInNames(row.storDescr);
    DiskRow(row, rowNumber, linkWord, storage, pageName, pageHtml);
  }
  TableEnd(pageHtml);
}

}  // namespace

void TableHeader_Disk(const RenderContext& context, ConnectionId slot, std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "TableHeader_Disk", [&] {
    const DiskTableRecord& record = context.records.DiskTableRep[slot];
    ReportBand(context, record.TableReport, record.TableCriteria, record.TableHead, pageHtml);
  });
}

void TableData_Disk(const RenderContext& context, ConnectionId slot, std::string_view reportKind,
                    std::string_view sortOrder, std::string_view pageName, std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "TableData_Disk", [&] {
    TableHeadBegin(context, kDiskHead, pageHtml);
    SortHeads(context, reportKind, sortOrder, pageName, pageHtml);
    Line(pageHtml, "  </tr>");
    // A list is of memories or of disks as a whole, by the name of its page.
    const bool ofMemory = Holds(pageName, "physical") || Holds(pageName, "virtual");
    DiskRows(
        context, slot, "histdisk45", pageName, [&](const DiskTableRow&) { return ofMemory; },
        pageHtml);
  });
}

void TableData_DiskSearch(const RenderContext& context, ConnectionId slot, std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "TableData_DiskSearch", [&] {
    TableHeadBegin(context, kDiskHead, pageHtml);
    for (const Sort& sort : kSorts) {
      PlainHead(context.LangWord(sort.word), IsLast(kSorts, sort), pageHtml);
    }
    Line(pageHtml, "  </tr>");
    const std::string pageName = "disk-search-" + std::to_string(slot) + ".htm";
    const auto isMemory = [](const DiskTableRow& row) {
      return row.storDescr == "Physical" || row.storDescr == "Virtual";
    };
    DiskRows(context, slot, "histdisksearch45", pageName, isMemory, pageHtml);
  });
}

}  // namespace quillon
