// A chart house with a control row of the report day, verbs that add disks to the day table that it
// names, and the two queries that list them.
#pragma once

#include "queries/chart_fixture.h"
#include "queries/disk_search.h"
#include "queries/disk_top10.h"

namespace quillon {

// A column of a day table and the text that it fills.
struct DiskColumn {
  std::string name;
  std::string DiskTableRow::*text;
};

// The columns in the order in which a row is filled, behind RecNo.
inline const std::vector<DiskColumn>& DiskColumnsInOrder() {
  using Row = DiskTableRow;
  static const std::vector<DiskColumn> columns = {
      {"DevName", &Row::device},    {"StorDescr", &Row::storDescr}, {"TotalM", &Row::totalM},
      {"FreeM", &Row::freeM},       {"UsedM", &Row::usedM},         {"UsedProc", &Row::usedProc},
      {"Trend14d", &Row::trend14d}, {"Trend30d", &Row::trend30d},
  };
  return columns;
}

// An order of the lists: its word in a search, its column, the heads of its two directions.
struct DiskOrder {
  std::string word;
  std::string column;
  std::string headAscending;
  std::string headDescending;
};

inline const std::vector<DiskOrder> kDiskOrders = {
    {"totalbytes", "TotalM", "W56", "W57"}, {"freebytes", "FreeM", "W58", "W59"},
    {"usedbytes", "UsedM", "W60", "W61"},   {"usedpercent", "UsedProc", "W62", "W63"},
    {"trend14d", "Trend14d", "W64", "W65"}, {"trend30d", "Trend30d", "W66", "W67"},
};

class DiskTest : public ChartTest {
 protected:
  // What both queries do is expected of both.
  enum class Query { kTop10, kSearch };
  static constexpr Query kBoth[] = {Query::kTop10, Query::kSearch};
  static constexpr const char* kTop10Procedure = "modSelectSql_SqlTop10DiskStats";
  static constexpr const char* kSearchProcedure = "modSelectSql_SqlSearchDeviceDisk";
  static constexpr const char* kTable = "Disk_Day01";  // of the report day

  DiskTest() { AddDiskDay(1, kTable); }

  static const char* Procedure(Query query) {
    return query == Query::kTop10 ? kTop10Procedure : kSearchProcedure;
  }

  // A Windows disk of the report day that differs from an ordinary one in these columns.
  void AddDisk(const Columns& differing = {}) const { AddStorage(kTable, differing); }
  // So many ordinary ones, RecNo 1, 2, ...
  void AddDisks(int count) const {
    std::string statements;
    for (int recNo = 1; recNo <= count; ++recNo) {
      statements += InsertStorageOfDay(kTable, {{"RecNo", std::to_string(recNo)}});
    }
    History("BEGIN;" + statements + "COMMIT;");
  }
  // One each of these names, SQL literals, RecNo 1, 2, ...
  void AddDisksNamed(const Lines& storDescrs) const {
    int recNo = 0;
    for (const std::string& storDescr : storDescrs) {
      AddDisk({{"RecNo", std::to_string(++recNo)}, {"StorDescr", storDescr}});
    }
  }
  // Five that differ in this column; it orders them 1, 5, 2, 4, 3.
  void AddDisksOrderedBy(const std::string& column) const {
    int recNo = 0;
    for (const std::string value : {"-1", "900", "1000", "900.5", "0"}) {
      AddDisk({{"RecNo", std::to_string(++recNo)}, {column, value}});
    }
  }
  void ClearDisks() const { History(std::string("DELETE FROM ") + kTable); }
  void ClearControl() const { History("DELETE FROM Disk_HistCtrl"); }

  // Run the queries as their callers do: with the ten rows of the slot empty.
  DiskTableRecord& Top10(const std::string& field = "TotalM", const std::string& sortOrder = "ASC",
                         int diskType = 30, ConnectionId slot = kSlot) {
    DiskTableRecord& record = EmptyRecord(slot);
    SqlTop10DiskStats(house.queries, slot, static_cast<std::int16_t>(diskType), field, sortOrder);
    return record;
  }
  DiskTableRecord& Search(const std::string& orderBy = "totalbytes-asc",
                          std::string devPattern = "*", std::string diskPattern = "*",
                          ConnectionId slot = kSlot) {
    DiskTableRecord& record = EmptyRecord(slot);
    SqlSearchDeviceDisk(house.queries, slot, devPattern, diskPattern, orderBy);
    return record;
  }
  DiskTableRecord& Run(Query query, const DiskOrder& order = kDiskOrders[0],
                       const std::string& direction = "ASC") {
    return query == Query::kTop10 ? Top10(order.column, direction)
                                  : Search(order.word + "-" + direction);
  }

  DiskTableRecord& Record() { return house.records.DiskTableRep[kSlot]; }
  Lines Heads() { return {Record().TableHead, Record().TableReport, Record().TableCriteria}; }
  // Devices of the rows that are filled, in table order.
  std::vector<int> RecNos() {
    std::vector<int> recNos;
    for (const DiskTableRow& row : Record().rows) {
      if (row.recNo != 0) recNos.push_back(row.recNo);
    }
    return recNos;
  }
  static Lines Texts(const DiskTableRow& row) {
    Lines texts;
    for (const DiskColumn& column : DiskColumnsInOrder()) texts.push_back(row.*column.text);
    return texts;
  }

  // The record as an earlier report left it.
  void FillRecord() {
    Record().TableHead = Record().TableReport = Record().TableCriteria = kBefore;
    for (DiskTableRow& row : Record().rows) {
      for (const DiskColumn& column : DiskColumnsInOrder()) row.*column.text = kBefore;
    }
  }
  // Expects that nothing of it has changed.
  void ExpectRecordOfBefore() {
    EXPECT_EQ(Heads(), Lines(3, kBefore));
    EXPECT_EQ(RecNos(), std::vector<int>{});
    for (const DiskTableRow& row : Record().rows) {
      EXPECT_EQ(Texts(row), Lines(DiskColumnsInOrder().size(), kBefore));
    }
  }

 private:
  DiskTableRecord& EmptyRecord(ConnectionId slot) {
    DiskTableRecord& record = house.records.DiskTableRep[slot];
    for (DiskTableRow& row : record.rows) row.recNo = 0;
    return record;
  }
};

}  // namespace quillon
