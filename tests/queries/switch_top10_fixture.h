// The query of the ten worst switch ports in a house of a test's own.
#pragma once

#include <string>
#include <string_view>

#include "queries/switch_table_fixture.h"
#include "queries/switch_top10.h"

namespace quillon {

class SwitchTop10Test : public SwitchTableTest {
 protected:
  // Runs the query as its callers do: with the ten rows of the slot empty.
  SwitchTableRecord& Query(std::string_view field = "InHCOctetsMb24H", bool isTrunk = false,
                           ConnectionId slot = kSlot) {
    SwitchTableRecord& record = EmptyRecord(slot);
    SqlTop10SwitchStats(house.queries, slot, field, isTrunk);
    return record;
  }

  // Expects that the only event is one of the query, whose text holds these words.
  void ExpectFailure(const std::string& words, const std::string& context = "") const {
    ExpectFailureOf("SqlTop10SwitchStats", words, context);
  }
};

}  // namespace quillon
