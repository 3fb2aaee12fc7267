// The ways in which a port's history fails, what its record holds then, and what may happen in
// its waits.
#include "queries/hist45_fixture.h"

namespace quillon {
namespace {

constexpr const char* kControl = "modSelectSql_SqHist45SwitchControl";
constexpr const char* kDay = "modSelectSql_SqlHist45SwitchStats";

class SwitchHist45FailureTest : public Hist45Test {
 protected:
  // Reads port 4 of device 7 into a position, as the report does for each day.
  void ReadDay(int position = kNewest, ConnectionId slot = kSlot) {
    ReusedConnection history(house.settings.ConnHistory);
    SqlHist45SwitchStats(house.queries, history, slot, position, "VLAN_Day01", 7, 4);
  }
};

TEST_F(SwitchHist45FailureTest, SlotOutsideOneToTwentyFails) {
  AddPortHistory(1);
  for (const int slot : {0, 21, -1, 32767}) {
    house.ForgetEvents();
    SqHist45SwitchControl(house.queries, static_cast<ConnectionId>(slot), 7, 4, "Core", "Gi0/4",
                          false);
    ExpectFailure(kControl, std::to_string(slot));
    house.ForgetEvents();
    ReadDay(kNewest, static_cast<ConnectionId>(slot));
    ExpectFailure(kDay, std::to_string(slot));
  }
  for (int slot = 1; slot <= 20; ++slot) {
    EXPECT_EQ(house.records.Hist45SwitchRep[slot].Device, "") << slot;
    EXPECT_EQ(house.records.Hist45SwitchRep[slot].HistTable[kNewest], "") << slot;
  }
}

TEST_F(SwitchHist45FailureTest, SlotOutsideOneToTwentyFailsWithoutAControlRowToo) {
  SqHist45SwitchControl(house.queries, 21, 7, 4, "Core", "Gi0/4", false);
  ExpectFailure(kControl, "21");
}

TEST_F(SwitchHist45FailureTest, PositionOutsideOneTo45Fails) {
  AddPort("VLAN_Day01");
  for (const int position : {0, 46}) {
    house.ForgetEvents();
    ReadDay(position);
    ExpectFailure(kDay, std::to_string(position));
  }
}

TEST_F(SwitchHist45FailureTest, MissingDatabaseLeavesTheRecordAsItWas) {
  AddPortHistory(1);
  ReportPort();
  house.installation.Remove("History.mdb");
  PortRecord().Device = kBefore;
  house.settings.DebugMode = true;
  ReportPort();
  ExpectFailure(kControl, "History.mdb");
  EXPECT_EQ(PortRecord().Device, kBefore);
  EXPECT_EQ(PortRecord().HistTable[kNewest], "VLAN_Day01");
  EXPECT_EQ(Figures(kNewest)[0], "6 M");
  EXPECT_EQ(PortRecord().Volume.YaxisMax, "6 M");
  EXPECT_FALSE(house.installation.Exists("History.mdb"));
  EXPECT_FALSE(house.installation.Exists("Debug/WebSqlHist45.txt"));
}

TEST_F(SwitchHist45FailureTest, MissingControlTableLeavesTheRecordAsItWas) {
  History("DROP TABLE VLAN_HistCtrl");
  PortRecord().Device = kBefore;
  ReportPort();
  ExpectFailure(kControl, "History.mdb: no such table: VLAN_HistCtrl");
  EXPECT_EQ(PortRecord().Device, kBefore);
  EXPECT_EQ(house.clock.slept().count(), 500);  // of the event alone
}

TEST_F(SwitchHist45FailureTest, MissingDayTableFailsThatDayOnly) {
  AddPortHistory(1);
  AddPortHistory(2);
  AddPortHistory(3);
  History("DROP TABLE VLAN_Day02");
  ReportPort();
  EXPECT_EQ(Failures(kDay), Lines{"History.mdb: no such table: VLAN_Day02"});
  EXPECT_EQ(Figures(45), (Lines{"6 M", "5 M", "4 W39", "3 W39", "2 W38", "1 W38"}));
  EXPECT_EQ(Figures(44), Lines(6, ""));
  EXPECT_EQ(Bars(44), kSixOnes);  // what is no number draws one
  EXPECT_EQ(Figures(43), (Lines{"6 M", "5 M", "4 W39", "3 W39", "2 W38", "1 W38"}));
  EXPECT_EQ(Axis(PortRecord().Volume), (Lines{"6 M", "3 M"}));
}

TEST_F(SwitchHist45FailureTest, EachDayThatFailsIsReported) {
  for (int age = 1; age <= 4; ++age) AddPortDay(age, "VLAN_Gone" + std::to_string(age));
  ReportPort();
  EXPECT_EQ(
      Failures(kDay),
      (Lines{"History.mdb: no such table: VLAN_Gone4", "History.mdb: no such table: VLAN_Gone3",
             "History.mdb: no such table: VLAN_Gone2", "History.mdb: no such table: VLAN_Gone1"}));
  EXPECT_EQ(PortRecord().Device, "Core");
  EXPECT_EQ(Axis(PortRecord().Volume), (Lines{"2 M", "1 M"}));
}

TEST_F(SwitchHist45FailureTest, NullEndsTheDayAtItsColumn) {
  for (const PortSeries& broken : PortSeriesInOrder()) {
    SCOPED_TRACE(broken.name);
    History("DELETE FROM VLAN_Day01");
    AddPort("VLAN_Day01", {{broken.name, "NULL"}});
    house.ForgetEvents();
    FillPortDay(kNewest);
    ReadDay();
    ExpectFailure(kDay, broken.name);
    bool filled = true;
    for (const PortSeries& each : PortSeriesInOrder()) {
      if (each.name == broken.name) filled = false;
      const Panel& panel = PortRecord().*each.panel;
      EXPECT_EQ((panel.*each.values)[kNewest] != kBefore, filled) << each.name;
      EXPECT_EQ((panel.*each.bars)[kNewest], filled ? "1" : kBefore) << each.name;
    }
  }
}

TEST_F(SwitchHist45FailureTest, HalfFilledDayIsShownAsFarAsItCame) {
  AddPortHistory(2);
  AddPortHistory(1, {{"InMultiCastPpm24H", "NULL"}});
  FillPortDay(kNewest);
  ReportPort();
  ExpectFailure(kDay, "InMultiCastPpm24H");
  EXPECT_EQ(Figures(45), (Lines{"6 M", "5 M", "4 W39", kBefore, kBefore, kBefore}));
  EXPECT_EQ(Bars(45), (Lines{"100", "83", "100", "1", "1", "1"}));
  EXPECT_EQ(Figures(44), (Lines{"6 M", "5 M", "4 W39", "3 W39", "2 W38", "1 W38"}));
}

TEST_F(SwitchHist45FailureTest, NullInAnotherColumnIsNotLookedAt) {
  AddPortHistory(1, {{"IsTrunk", "NULL"}});
  ReportPort();
  EXPECT_EQ(Figures(kNewest)[5], "1 W38");
  ExpectNoEvent();
}

TEST_F(SwitchHist45FailureTest, TextsThatAFailedDayKeepsCountForTheAxisByTheirNumber) {
  AddPortHistory(1, {{"InHCOctetsMb24H", "6000"}});
  ReportPort();
  ASSERT_EQ(Figures(kNewest)[0], "6 000 M  (556 W44)");
  History("DROP TABLE VLAN_Day01");
  ReportPort();
  ExpectFailure(kDay, "VLAN_Day01");
  EXPECT_EQ(Figures(kNewest),
            (Lines{"6 000 M  (556 W44)", "5 M", "4 W39", "3 W39", "2 W38", "1 W38"}));
  EXPECT_EQ(Bars(kNewest), kSixOnes);
  // "6 000 M  (556 W44)" is the top of the volume and "4 W39" that of the packets: neither rounds
  // to a number.
  EXPECT_EQ(Axis(PortRecord().Volume), (Lines{"0 M", "0 M"}));
  EXPECT_EQ(Axis(PortRecord().Broadcast), (Lines{"0", "0"}));
  EXPECT_EQ(Axis(PortRecord().Errors), (Lines{"2", "1"}));
}

TEST_F(SwitchHist45FailureTest, AxisThatDoesNotRoundEndsTheReportAtItsFirstBar) {
  AddPortHistory(1, {{"InHCOctetsMb24H", "6000"}});
  AddPortHistory(2);
  ReportPort();
  History("DROP TABLE VLAN_Day01");
  house.settings.DebugMode = true;
  ReportPort();
  const Lines events = house.Events();
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0].rfind("1\t" + std::string(kDay), 0), 0u) << events[0];
  EXPECT_EQ(events[1].rfind("1\t" + std::string(kControl), 0), 0u) << events[1];
  EXPECT_EQ(PortRecord().Volume.YaxisMax, "0");
  EXPECT_EQ(Figures(44), (Lines{"6", "5", "4", "3", "2", "1"}));
  EXPECT_EQ(Bars(44), kSixOnes);
  EXPECT_FALSE(house.installation.Exists("Debug/WebSqlHist45.txt"));
}

TEST_F(SwitchHist45FailureTest, ConnectionOfADayServesTheNextUnlessTheDayFailed) {
  AddPort("VLAN_Day01");
  ReusedConnection history(house.settings.ConnHistory);
  const auto read = [&](const std::string& histTable, int position) {
    SqlHist45SwitchStats(house.queries, history, kSlot, position, histTable, 7, 4);
  };
  read("VLAN_Day01", 1);
  house.installation.Remove("History.mdb");  // who has it open still reads it
  read("VLAN_Day01", 2);
  EXPECT_EQ(Figures(2)[0], "6");
  read("VLAN_Gone", 3);
  ExpectFailure(kDay, "VLAN_Gone");
  house.ForgetEvents();
  read("VLAN_Day01", 4);
  ExpectFailure(kDay, "History.mdb: the database file is missing");
  EXPECT_EQ(Figures(4), Lines(6, ""));
}

TEST_F(SwitchHist45FailureTest, TableNamesGoIntoTheSelectAsTheyStand) {
  AddPort("VLAN_Day01");
  AddPort("VLAN_Day01", {{"IfIndex", "5"}});
  History("CREATE TABLE Tag_ü AS SELECT * FROM VLAN_Day01");
  const std::string names[] = {"vlan_day01", "VLAN_Day01 AS Day", "[VLAN_Day01]",
                               "(SELECT * FROM VLAN_Day01)", "Tag_ü"};
  int age = 0;
  for (const std::string& name : names) AddPortDay(++age, name);
  ReportPort();
  age = 0;
  for (const std::string& name : names) {
    EXPECT_EQ(Figures(PositionOf(++age))[0], "6 M") << name;
    EXPECT_EQ(PortRecord().HistTable[PositionOf(age)], name);
  }
  ExpectNoEvent();
}

TEST_F(SwitchHist45FailureTest, TableNamesThatMakeNoSelectFailTheirDay) {
  AddPort("VLAN_Day01");
  const std::string names[] = {" ",
                               "VLAN Day01",
                               "O''Neil",
                               "VLAN_Day01; DROP TABLE VLAN_Day01",
                               "VLAN_Day01, VLAN_Day02",
                               "sqlite_schema",
                               "../Reports"};
  int age = 0;
  for (const std::string& name : names) AddPortDay(++age, name);
  AddPortDay(++age, "VLAN_Day01");
  ReportPort();
  EXPECT_EQ(Failures(kDay).size(), std::size(names));
  EXPECT_EQ(Figures(PositionOf(age))[0], "6 M");
  for (int failed = 1; failed < age; ++failed) {
    EXPECT_EQ(Figures(PositionOf(failed)), Lines(6, "")) << names[failed - 1];
  }
}

TEST_F(SwitchHist45FailureTest, WaitsTenMillisecondsADay) {
  ReportPort();
  EXPECT_EQ(house.clock.slept().count(), 450);
  AddPortHistory(1);
  AddPortHistory(2);
  ReportPort();
  EXPECT_EQ(house.clock.slept().count(), 900);
}

TEST_F(SwitchHist45FailureTest, InTheBackgroundWaitsLongerForEachDayWithATable) {
  AddPortHistory(1);
  AddPortDay(2, "VLAN_Day02");  // without the port
  AddPortDay(3, "");
  AddPortHistory(45);
  ReportPort(true);
  EXPECT_EQ(house.clock.slept().count(), 450 + 3 * 20);
}

TEST_F(SwitchHist45FailureTest, InTheBackgroundWaitsAfterADayThatFailedToo) {
  AddPortDay(1, "VLAN_Gone");
  ReportPort(true);
  EXPECT_EQ(house.clock.slept().count(), 450 + 20 + 500);
}

TEST_F(SwitchHist45FailureTest, EventsRunInsideAndDaysAreReadInTheirTurn) {
  AddPortHistory(1);
  bool ran = false;
  house.loop.Post([&] {
    ran = true;
    History("UPDATE VLAN_Day01 SET InErrorsTot24H = 77");
  });
  ReportPort();
  EXPECT_TRUE(ran);
  EXPECT_EQ(Figures(kNewest)[4], "77 W38");
}

TEST_F(SwitchHist45FailureTest, KeepsNoRowsOpenInItsWaits) {
  AddPortHistory(1);
  AddPortHistory(44);
  AddPortHistory(45);
  int looks = 0;
  // The log of the database can be emptied as long as nobody reads.
  house.loop.OnTurn([&] {
    ++looks;
    AddPort("VLAN_Day30");
    EXPECT_EQ(house.installation.Select("History.mdb", "PRAGMA wal_checkpoint(TRUNCATE)"),
              Lines{"0|0|0"});
  });
  ReportPort();
  EXPECT_EQ(looks, 45);
}

TEST_F(SwitchHist45FailureTest, ReportOfAnotherSlotMayRunInAWait) {
  AddPortHistory(1);
  AddPortHistory(45);
  AddPort("VLAN_Day01", {{"IfIndex", "9"}, {"InErrorsTot24H", "91"}});
  AddPort("VLAN_Day45", {{"IfIndex", "9"}, {"InErrorsTot24H", "45"}});
  house.loop.Post([&] {
    SqHist45SwitchControl(house.queries, 5, 7, 9, "Edge", "Gi0/9", false);
    EXPECT_EQ(house.records.Hist45SwitchRep[5].Errors.YaxisMax, "95");
  });
  ReportPort();
  EXPECT_EQ(Figures(45), (Lines{"6 M", "5 M", "4 W39", "3 W39", "2 W38", "1 W38"}));
  EXPECT_EQ(Figures(1), (Lines{"6 M", "5 M", "4 W39", "3 W39", "2 W38", "1 W38"}));
  EXPECT_EQ(PortRecord().Device, "Core");
  EXPECT_EQ(PortRecord().Errors.YaxisMax, "2");
  EXPECT_EQ(house.records.Hist45SwitchRep[5].Device, "Edge");
  EXPECT_EQ(Figures(45, 5)[4], "91 W38");
  EXPECT_EQ(Figures(1, 5)[4], "45 W38");
  ExpectNoEvent();
}

TEST_F(SwitchHist45FailureTest, ReportOfAnotherSlotMayRunInTheWaitOfAnEvent) {
  AddPortDay(45, "VLAN_Gone");
  AddPortHistory(1);
  house.loop.Post([&] { ReportPort(true, 5); });
  ReportPort();
  EXPECT_EQ(Failures(kDay).size(), 2u);
  EXPECT_EQ(Figures(45)[0], "6 M");
  EXPECT_EQ(Figures(45, 5)[0], "6 M");
  EXPECT_EQ(house.records.Hist45SwitchRep[5].Volume.YaxisMax, "6 M");
}

TEST_F(SwitchHist45FailureTest, EndOfTheServiceLeavesTheReportAtItsWait) {
  AddPortHistory(1);
  house.loop.Post([&] { house.loop.Quit(); });
  EXPECT_THROW(ReportPort(), LoopEnded);
  EXPECT_EQ(PortRecord().Device, "Core");
  EXPECT_EQ(PortRecord().Volume.YaxisMax, "2");
  EXPECT_EQ(Figures(kNewest), Lines(6, ""));
  ExpectNoEvent();
}

}  // namespace
}  // namespace quillon
