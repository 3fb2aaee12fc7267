// Ten rows of disks in the record of a slot, and the two tables that are made of them. The stored
// pieces of page hold "Device-3-", "Storage-3-" and so on in row 3, so that no field can stand in
// another's place.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "render/disk_tables.h"
#include "support/house.h"
#include "support/stored_text.h"

namespace quillon {

class DiskTables : public testing::Test {
 protected:
  using Names = std::vector<std::string>;
  static constexpr ConnectionId kSlot = 20;
  // In the links of the stored rows.
  static constexpr std::string_view kPageName = "disk-windows-top10-usedpercent-desc.htm";

  DiskTables() {
    house_.NumberWords("Word");
    house_.period.ReportStart = "2024-05-01 23:00";
    house_.period.ReportEnd = "2024-05-02 22:59";
    Table().TableReport = "Access ports";
    Table().TableCriteria = "10 (214)";
    Table().TableHead = "Volume in";
    for (int number = 1; number <= 10; ++number) Row(number) = NumberedRow(number);
    house_.records.SwitchTableRep[kSlot].TableReport = "of the switches";
    house_.records.SwitchTableRep[kSlot].TableCriteria = "of the switches";
    house_.records.SwitchTableRep[kSlot].TableHead = "of the switches";
    house_.records.SwitchTableRep[kSlot].rows[1].recNo = 4711;
  }

  DiskTableRecord& Table() { return house_.records.DiskTableRep[kSlot]; }
  DiskTableRow& Row(int number) { return Table().rows[number]; }
  void EmptyRows(std::initializer_list<int> numbers) {
    for (const int number : numbers) Row(number).recNo = 0;
  }

  std::string Band() {
    std::string page;
    TableHeader_Disk(house_.render, kSlot, page);
    return page;
  }

  std::string Top10(std::string_view reportKind = "windows", std::string_view sortOrder = "DESC",
                    std::string_view pageName = kPageName) {
    std::string page;
    TableData_Disk(house_.render, kSlot, reportKind, sortOrder, pageName, page);
    return page;
  }

  std::string Search(ConnectionId slot = kSlot) {
    std::string page;
    TableData_DiskSearch(house_.render, slot, page);
    return page;
  }

  // A table of this head and these rows.
  static std::string Whole(const std::string& head, const std::string& rows) {
    return head + rows + "</table>\r\n<br>\r\n";
  }
  static std::string StoredTop10(const std::string& rows) {
    return Whole(StoredPiece("disk_top10_head.html"), rows);
  }
  static std::string StoredSearch(const std::string& rows) {
    return Whole(StoredPiece("disk_search_head.html"), rows);
  }
  // The stored head of a list, of another kind of report.
  static std::string HeadOf(const std::string& kind) {
    return Replaced(StoredPiece("disk_top10_head.html"), "'disk-windows-top10-",
                    "'disk-" + kind + "-top10-");
  }

  // A row as the stored pieces have it.
  static DiskTableRow NumberedRow(int number) {
    const std::string mark = "-" + std::to_string(number) + "-";
    DiskTableRow row;
    row.recNo = 1000 + number;
    row.device = "Device" + mark;
    row.storDescr = "Storage" + mark;
    row.totalM = "Total" + mark;
    row.freeM = "Free" + mark;
    row.usedM = "Used" + mark;
    row.usedProc = "Share" + mark;
    row.trend14d = "Days14" + mark;
    row.trend30d = "Days30" + mark;
    return row;
  }

  // What stands between the two pieces, at each place.
  static Names Between(const std::string& page, const std::string& start, const std::string& end) {
    Names found;
    std::size_t at = 0;
    while ((at = page.find(start, at)) != std::string::npos) {
      at += start.size();
      found.push_back(page.substr(at, page.find(end, at) - at));
    }
    return found;
  }

  House house_;
};

}  // namespace quillon
