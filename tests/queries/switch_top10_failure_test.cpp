// The ways in which the query of the ten worst switch ports fails, and what its record
// holds then.
#include <filesystem>

#include "queries/switch_top10_fixture.h"

namespace quillon {
namespace {

class SwitchTop10FailureTest : public SwitchTop10Test {
 protected:
  // Queries two ports of which the second one has the value in the column. The event file
  // starts empty, so that each case has its own events.
  void QueryWithSecondPort(const std::string& column, const std::string& value) {
    Sql("DELETE FROM VLAN");
    house.installation.Write("Debug/AppEventWeb.txt", "");
    FillRecord();
    AddPort({{"RecNo", "1"}});
    Columns second = {{"RecNo", "2"}};
    second[column] = value;
    AddPort(second);
    Query(column == "OutErrorsTot24H" ? "InErrorsTot24H" : "OutErrorsTot24H");
  }
};

TEST_F(SwitchTop10FailureTest, NullEndsTheFillAtItsField) {
  for (const FilledColumn& broken : ColumnsInOrder()) {
    SCOPED_TRACE(broken.column);
    QueryWithSecondPort(broken.column, "NULL");
    ExpectFailure(broken.column);
    ExpectFilledUpTo(Record().rows[2], broken.column);
    EXPECT_EQ(RecNos(), (std::vector<int>{1, 2}));
  }
}

TEST_F(SwitchTop10FailureTest, NullLeavesTheRowBeforeItWhole) {
  QueryWithSecondPort("DevName", "NULL");
  EXPECT_EQ(Record().TableHead, "W11");
  EXPECT_EQ(Record().TableReport, "W2");
  EXPECT_EQ(Record().TableCriteria, "2 (2)");
  EXPECT_EQ(Record().rows[1].device, "Core");
  EXPECT_EQ(Record().rows[1].outErrorsTot24HF, "0 W38");
}

TEST_F(SwitchTop10FailureTest, NullKeepsTheLookUpsFromRunning) {
  AddAddress(1, 1, "'mac', 'ip', '2024-05-01 10:00:00'");
  QueryWithSecondPort("IfAlias", "NULL");
  EXPECT_EQ(Record().rows[1].userMacAddr, kBefore);
  EXPECT_EQ(Record().rows[1].userIpAddr, kBefore);
  EXPECT_EQ(Record().rows[1].userLastSeen, kBefore);
}

TEST_F(SwitchTop10FailureTest, NullBehindTheTenthRowIsNotReached) {
  AddPorts(10);
  AddPort({{"InHCOctetsMb24H", "0"}, {"DevName", "NULL"}});
  Query();
  EXPECT_EQ(Record().TableCriteria, "10 (11)");
  ExpectNoEvent();
}

TEST_F(SwitchTop10FailureTest, DeviceOrPortThatIsNoNumberFails) {
  for (const std::string column : {"RecNo", "IfIndex"}) {
    for (const std::string value : {"NULL", "'abc'"}) {
      QueryWithSecondPort(column, value);
      ExpectFailure(column, value);
    }
  }
}

TEST_F(SwitchTop10FailureTest, NullInAnAddressEndsTheLookUps) {
  struct Case {
    std::string address;
    std::string column;
    Lines texts;  // MAC address, IP address, last seen
  };
  const Case cases[] = {
      {"NULL, 'ip', '2024-05-01 10:00:00'", "MacAddr", {kBefore, kBefore, kBefore}},
      {"'mac', NULL, '2024-05-01 10:00:00'", "IpAddr", {"mac", kBefore, kBefore}},
      {"'mac', 'ip', NULL", "LastSeen", {"mac", "ip", kBefore}},
  };
  AddPort({{"RecNo", "1"}});
  AddPort({{"RecNo", "2"}});
  for (const Case& row : cases) {
    Sql("DELETE FROM MAC");
    house.installation.Write("Debug/AppEventWeb.txt", "");
    FillRecord();
    AddAddress(1, 1, row.address);
    const SwitchTableRow& port = Query().rows[1];
    ExpectFailure(row.column);
    EXPECT_EQ(User(port), row.texts) << row.column;
    EXPECT_EQ(port.device, "Core") << row.column;
    EXPECT_EQ(Record().rows[2].userLastSeen, kBefore) << row.column;
  }
}

TEST_F(SwitchTop10FailureTest, UnknownFieldLeavesTheHeadAndFailsInTheSort) {
  AddPort();
  FillRecord();
  Query("Colour");
  ExpectFailure("Colour");
  EXPECT_EQ(Record().TableHead, kBefore);
  EXPECT_EQ(Record().TableReport, "W2");
  EXPECT_EQ(Record().TableCriteria, "1 (1)");
  EXPECT_EQ(RecNos(), std::vector<int>{});
}

TEST_F(SwitchTop10FailureTest, FieldNameIsTakenExactly) {
  FillRecord();
  Query("inhcoctetsmb24h");
  EXPECT_EQ(Record().TableHead, kBefore);
  EXPECT_EQ(Record().TableCriteria, "0 (0)");
}

TEST_F(SwitchTop10FailureTest, SlotOutsideOneToTwentyFails) {
  AddPort();
  for (const int slot : {0, 21, -1, 32767}) {
    house.installation.Write("Debug/AppEventWeb.txt", "");
    SqlTop10SwitchStats(house.queries, static_cast<ConnectionId>(slot), "InHCOctetsMb24H", false);
    ExpectFailure(std::to_string(slot), "slot");
  }
  for (const SwitchTableRecord& record : house.records.SwitchTableRep) {
    EXPECT_EQ(record.TableReport, "");
  }
}

TEST_F(SwitchTop10FailureTest, MissingDatabaseLeavesTheRecordAsItWas) {
  std::filesystem::remove(house.installation.path() + "/Reports.mdb");
  FillRecord();
  Query();
  ExpectFailure("Reports.mdb");
  EXPECT_EQ(Record().TableHead, kBefore);
  EXPECT_EQ(Record().TableReport, kBefore);
  EXPECT_EQ(Record().TableCriteria, kBefore);
  EXPECT_FALSE(house.installation.Exists("Reports.mdb"));
}

TEST_F(SwitchTop10FailureTest, MissingTableLeavesTheCriteria) {
  Sql("DROP TABLE VLAN");
  FillRecord();
  Query();
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodSelectSql_SqlTop10SwitchStats\tReports.mdb: no such table: VLAN"});
  EXPECT_EQ(Record().TableHead, "W6");
  EXPECT_EQ(Record().TableReport, "W2");
  EXPECT_EQ(Record().TableCriteria, kBefore);
}

TEST_F(SwitchTop10FailureTest, MissingAddressTableLeavesTheFigures) {
  AddPort();
  Sql("DROP TABLE MAC");
  FillRecord();
  Query();
  ExpectFailure("MAC");
  EXPECT_EQ(Record().rows[1].outErrorsTot24HF, "0 W38");
  EXPECT_EQ(Record().rows[1].userLastSeen, kBefore);
}

TEST_F(SwitchTop10FailureTest, AnotherQueryMayRunInTheWaitOfTheEvent) {
  AddPort({{"IsTrunk", "TRUE"}});
  AddPort({{"DevName", "NULL"}});
  house.loop.Post([&] {
    Sql("UPDATE VLAN SET DevName = 'Written meanwhile'");
    Query("InErrorsTot24H", true, 5);
  });
  Query();
  EXPECT_EQ(house.records.SwitchTableRep[5].rows[1].device, "Written meanwhile");
  EXPECT_EQ(Record().TableHead, "W6");
  ExpectFailure("DevName");
}

}  // namespace
}  // namespace quillon
