// What the queries that fill SwitchTableRep share in their tests: a house with an empty
// Reports.mdb, verbs that add ports and addresses to it, words that show their number (word 38
// is "W38"), and a look at the record of one slot.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/house.h"
#include "support/report_rows.h"

namespace quillon {

// The text in every field of a record that an earlier report has left.
inline constexpr const char* kBefore = "of an earlier report";

// A column of VLAN and what it fills.
struct FilledColumn {
  std::string column;
  std::vector<std::string SwitchTableRow::*> texts;
};

// The columns that are read as text, in the order in which a row is filled.
inline const std::vector<FilledColumn>& ColumnsInOrder() {
  using Row = SwitchTableRow;
  static const std::vector<FilledColumn> columns = {
      {"DevName", {&Row::device}},
      {"IpAddr", {&Row::ipAddr}},
      {"IfDescr", {&Row::ifDescr}},
      {"IfSpeed", {&Row::ifSpeed}},
      {"IfAlias", {&Row::ifAlias}},
      {"IfAdmin", {&Row::ifAdmin}},
      {"IfOper", {&Row::ifOper}},
      {"VlanID", {&Row::vlanID}},
      {"InHCOctetsMb24H", {&Row::inHCOctetsMb24H, &Row::inHCOctetsMb24HF}},
      {"OutHCOctetsMb24H", {&Row::outHCOctetsMb24H, &Row::outHCOctetsMb24HF}},
      {"InBroadCastPpm24H", {&Row::inBroadCastPpm24H, &Row::inBroadCastPpm24HF}},
      {"InMultiCastPpm24H", {&Row::inMultiCastPpm24H, &Row::inMultiCastPpm24HF}},
      {"InErrorsTot24H", {&Row::inErrorsTot24H, &Row::inErrorsTot24HF}},
      {"OutErrorsTot24H", {&Row::outErrorsTot24H, &Row::outErrorsTot24HF}},
  };
  return columns;
}

class SwitchTableTest : public testing::Test {
 protected:
  using Lines = std::vector<std::string>;
  static constexpr ConnectionId kSlot = 3;

  SwitchTableTest() { house.NumberWords("W"); }

  void Sql(const std::string& statements) const {
    house.installation.Sql("Reports.mdb", statements);
  }

  // An access port of today that differs from an ordinary one in these columns.
  void AddPort(const Columns& differing = {}) const { Sql(InsertPort(differing)); }

  // So many ordinary ports, RecNo 1, 2, ...
  void AddPorts(int count) const {
    std::string statements;
    for (int recNo = 1; recNo <= count; ++recNo) {
      statements += InsertPort({{"RecNo", std::to_string(recNo)}});
    }
    Sql("BEGIN;" + statements + "COMMIT;");
  }

  void AddAddress(int recNo, int ifIndex, const std::string& macIpAndLastSeen) const {
    Sql("INSERT INTO MAC (RecNo, IfIndex, MacAddr, IpAddr, LastSeen) VALUES (" +
        std::to_string(recNo) + ", " + std::to_string(ifIndex) + ", " + macIpAndLastSeen + ");");
  }

  SwitchTableRecord& Record() { return house.records.SwitchTableRep[kSlot]; }

  // The record of the slot with its ten rows empty, as the callers of a query leave it.
  SwitchTableRecord& EmptyRecord(ConnectionId slot = kSlot) {
    SwitchTableRecord& record = house.records.SwitchTableRep[slot];
    for (SwitchTableRow& row : record.rows) row.recNo = 0;
    return record;
  }

  // The record as an earlier report left it.
  void FillRecord() {
    Record().TableHead = Record().TableReport = Record().TableCriteria = kBefore;
    for (SwitchTableRow& row : Record().rows) {
      for (const FilledColumn& filled : ColumnsInOrder()) {
        for (const auto text : filled.texts) row.*text = kBefore;
      }
      row.userMacAddr = row.userIpAddr = row.userLastSeen = kBefore;
    }
  }

  // Expects that the row was filled up to the field of that column, and no further.
  void ExpectFilledUpTo(const SwitchTableRow& row, const std::string& column) const {
    bool filled = true;
    for (const FilledColumn& each : ColumnsInOrder()) {
      if (each.column == column) filled = false;
      for (const auto text : each.texts) EXPECT_EQ(row.*text != kBefore, filled) << each.column;
    }
  }

  // Devices of the rows that are filled, in table order.
  std::vector<int> RecNos() {
    std::vector<int> recNos;
    for (const SwitchTableRow& row : Record().rows) {
      if (row.recNo != 0) recNos.push_back(row.recNo);
    }
    return recNos;
  }

  // The user of a port: MAC address, IP address, last seen.
  static Lines User(const SwitchTableRow& row) {
    return {row.userMacAddr, row.userIpAddr, row.userLastSeen};
  }

  // Expects that the only event is one of the procedure, whose text holds these words.
  void ExpectFailureOf(const std::string& procedure, const std::string& words,
                       const std::string& context = "") const {
    const Lines events = house.Events();
    ASSERT_EQ(events.size(), 1u) << context;
    EXPECT_EQ(events[0].rfind("1\tmodSelectSql_" + procedure + "\t", 0), 0u) << events[0];
    EXPECT_NE(events[0].find(words), std::string::npos) << context << ": " << events[0];
  }

  void ExpectNoEvent() const { EXPECT_EQ(house.Events(), Lines{}); }

  House house;
};

}  // namespace quillon
