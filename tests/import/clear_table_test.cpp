// The clearing of a day table: its pauses, who can change the table in them, and what a failure
// leaves.
#include "import/history_fixture.h"
#include "import/rotation.h"

namespace quillon {
namespace {

using ClearTableTest = HistoryTest;

TEST_F(ClearTableTest, EmptiesThatTableAlone) {
  for (const char* table : {"VLAN_Day01", "VLAN_Day02", "Disk_Day01"}) {
    HistorySql(InsertDayRows(table, 3));
  }
  ClearTable_(house.imports, "VLAN_Day01");
  EXPECT_EQ(History("SELECT (SELECT Count(*) FROM VLAN_Day01), (SELECT Count(*) FROM VLAN_Day02),"
                    " (SELECT Count(*) FROM Disk_Day01)"),
            Lines{"0|3|3"});
  ClearTable_(house.imports, "Disk_Day01");
  EXPECT_EQ(History("SELECT Count(*) FROM Disk_Day01"), Lines{"0"});
  ExpectNoEvent();
}

TEST_F(ClearTableTest, PausesAfterMoreThanAHundredRowsAndAtTheEnd) {
  struct Case {
    int rows;
    std::int64_t waited;
  };
  const Case cases[] = {{0, 100},   {1, 100},   {100, 100}, {101, 110},
                        {201, 110}, {202, 120}, {302, 120}, {303, 130}};
  for (const Case& row : cases) {
    HistorySql(InsertDayRows("VLAN_Day01", row.rows));
    const std::int64_t before = SleptMs();
    ClearTable_(house.imports, "VLAN_Day01");
    EXPECT_EQ(SleptMs() - before, row.waited) << row.rows << " rows";
    EXPECT_EQ(History("SELECT Count(*) FROM VLAN_Day01"), Lines{"0"}) << row.rows << " rows";
  }
  ExpectNoEvent();
}

TEST_F(ClearTableTest, PausesSeeTheTableWithoutTheRowsSoFar) {
  HistorySql(InsertDayRows("VLAN_Day01", 250));
  WatchWaits("SELECT Count(*) FROM VLAN_Day01");
  ClearTable_(house.imports, "VLAN_Day01");
  EXPECT_EQ(seenInWaits, (Lines{"149", "48", "0"}));
}

TEST_F(ClearTableTest, EventsRunInThePauses) {
  HistorySql(InsertDayRows("VLAN_Day01", 150));
  Lines rowsLeft;
  house.loop.Post([&] { rowsLeft = History("SELECT Count(*) FROM VLAN_Day01"); });
  ClearTable_(house.imports, "VLAN_Day01");
  EXPECT_EQ(rowsLeft, Lines{"49"});
}

TEST_F(ClearTableTest, EventsRunInThePauseOfAnEmptyTableToo) {
  bool ran = false;
  house.loop.Post([&] { ran = true; });
  ClearTable_(house.imports, "VLAN_Day01");
  EXPECT_TRUE(ran);
}

TEST_F(ClearTableTest, RowThatIsAddedMeanwhileStays) {
  HistorySql(InsertDayRows("VLAN_Day01", 150));
  house.loop.Post([&] { HistorySql("INSERT INTO VLAN_Day01 (RecNo) VALUES (7777)"); });
  ClearTable_(house.imports, "VLAN_Day01");
  EXPECT_EQ(History("SELECT RecNo FROM VLAN_Day01"), Lines{"7777"});
  ExpectNoEvent();
}

TEST_F(ClearTableTest, RowsThatAreGoneMeanwhileArePassedOver) {
  HistorySql(InsertDayRows("VLAN_Day01", 150));
  house.loop.Post([&] { HistorySql("DELETE FROM VLAN_Day01 WHERE RecNo <> 150"); });
  ClearTable_(house.imports, "VLAN_Day01");
  EXPECT_EQ(History("SELECT RecNo FROM VLAN_Day01"), Lines{});
  ExpectNoEvent();
}

TEST_F(ClearTableTest, MissingTableFailsUnderItsName) {
  ClearTable_(house.imports, "VLAN_Day46");
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodImport_ClearTable_VLAN_Day46\tHistory.mdb: no such table: VLAN_Day46"});
  EXPECT_EQ(SleptMs(), 500);  // that of the event, and no pause behind it
}

TEST_F(ClearTableTest, MissingDatabaseFailsUnderTheTablesName) {
  house.installation.Remove("History.mdb");
  ClearTable_(house.imports, "VLAN_Day01");
  EXPECT_EQ(house.Events(), Lines{"1\tmodImport_ClearTable_VLAN_Day01\t"
                                  "History.mdb: the database file is missing"});
  EXPECT_FALSE(house.installation.Exists("History.mdb"));
}

TEST_F(ClearTableTest, FailureLeavesTheRowsFromThereOn) {
  HistorySql(InsertDayRows("VLAN_Day01", 200) + Refusal("DELETE", "VLAN_Day01", "OLD.RecNo = 150"));
  ClearTable_(house.imports, "VLAN_Day01");
  ExpectFailure("modImport_ClearTable_VLAN_Day01", "refused");
  EXPECT_EQ(History("SELECT Count(*), Min(RecNo) FROM VLAN_Day01"), Lines{"51|150"});
}

TEST_F(ClearTableTest, StopInAPauseLeavesTheRowsThatAreNotReached) {
  HistorySql(InsertDayRows("VLAN_Day01", 150));
  house.loop.Post([&] { house.loop.Quit(); });
  EXPECT_THROW(ClearTable_(house.imports, "VLAN_Day01"), LoopEnded);
  EXPECT_EQ(History("SELECT Count(*), Min(RecNo) FROM VLAN_Day01"), Lines{"49|102"});
  EXPECT_TRUE(OthersCanWrite());
  ExpectNoEvent();
}

}  // namespace
}  // namespace quillon
