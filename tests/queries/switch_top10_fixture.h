// A house with an empty Reports.mdb, verbs that add ports and addresses to it, and words
// that show their number: word 38 is "W38".
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "queries/switch_top10.h"
#include "support/house.h"
#include "support/report_rows.h"

namespace quillon {

class SwitchTop10Test : public testing::Test {
 protected:
  using Lines = std::vector<std::string>;
  static constexpr ConnectionId kSlot = 3;

  SwitchTop10Test() { house.NumberWords("W"); }

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

  // Runs the query as its callers do: with the ten rows of the slot empty.
  SwitchTableRecord& Query(std::string_view field = "InHCOctetsMb24H", bool isTrunk = false,
                           ConnectionId slot = kSlot) {
    SwitchTableRecord& record = house.records.SwitchTableRep[slot];
    for (SwitchTableRow& row : record.rows) row.recNo = 0;
    SqlTop10SwitchStats(house.queries, slot, field, isTrunk);
    return record;
  }

  SwitchTableRecord& Record() { return house.records.SwitchTableRep[kSlot]; }

  // Devices of the rows that are filled, in table order.
  std::vector<int> RecNos() {
    std::vector<int> recNos;
    for (const SwitchTableRow& row : Record().rows) {
      if (row.recNo != 0) recNos.push_back(row.recNo);
    }
    return recNos;
  }

  // Expects that the only event is one of the query, whose text holds these words.
  void ExpectFailure(const std::string& words, const std::string& context = "") const {
    const Lines events = house.Events();
    ASSERT_EQ(events.size(), 1u) << context;
    EXPECT_EQ(events[0].rfind("1\tmodSelectSql_SqlTop10SwitchStats\t", 0), 0u) << events[0];
    EXPECT_NE(events[0].find(words), std::string::npos) << context << ": " << events[0];
  }

  void ExpectNoEvent() const { EXPECT_EQ(house.Events(), Lines{}); }

  House house;
};

}  // namespace quillon
