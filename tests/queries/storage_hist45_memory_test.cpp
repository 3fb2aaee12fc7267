// The history of a server's memory: its two panels, their bars and used shares, its failures.
#include "queries/hist45_fixture.h"

namespace quillon {
namespace {

constexpr const char* kControl = "modSelectSql_SqlHist45MemControl";
constexpr const char* kDay = "modSelectSql_SqlHist45MemStats";

class MemoryHist45Test : public Hist45Test {
 protected:
  // Reads server 900 into position 45, as the report does for each day.
  void ReadDay(ConnectionId slot = kSlot) {
    ReusedConnection history(house.settings.ConnHistory);
    SqlHist45MemStats(house.queries, history, slot, kNewest, "Disk_Day01", 900);
  }

  // A day with both memories, 40 M used of 100 M, that differ in these columns.
  void AddMemoryHistory(int age, const Columns& physical = {}, const Columns& virtual_ = {}) const {
    AddDiskDay(age, StorageTable(age));
    AddMemory(StorageTable(age), "Physical", physical);
    AddMemory(StorageTable(age), "Virtual", virtual_);
  }

  void FillMemoryDay(int position) {
    FillDay(MemoryRecord().Physical, position);
    FillDay(MemoryRecord().Virtual, position);
  }

  Lines Physical(int position) { return StorageDay(MemoryRecord().Physical, position); }
  Lines Virtual(int position) { return StorageDay(MemoryRecord().Virtual, position); }

  static constexpr ConnectionId kOtherSlot = 15;
};

TEST_F(MemoryHist45Test, DayShowsSizesBarsAndUsedShare) {
  AddMemoryHistory(1, {{"TotalM", "2048"}, {"UsedM", "512"}}, {{"TotalM", "90"}, {"UsedM", "30"}});
  ReportMemory();
  // Axis tops 2048 -> 2100 -> 2000, and 90.
  EXPECT_EQ(Physical(kNewest), (Lines{"2 048 M", "102", "512 M", "26", " (25%)"}));
  EXPECT_EQ(Axis(MemoryRecord().Physical), (Lines{"2 G", "1 G"}));
  EXPECT_EQ(Virtual(kNewest), (Lines{"90 M", "100", "30 M", "33", " (33%)"}));
  EXPECT_EQ(Axis(MemoryRecord().Virtual), (Lines{"90 M", "45 M"}));
  ExpectNoEvent();
}

TEST_F(MemoryHist45Test, DayIsReadAsItIsStored) {
  AddMemoryHistory(1, {{"TotalM", "2048.5"}, {"UsedM", "-1"}}, {{"TotalM", "0"}});
  ReadDay();
  EXPECT_EQ(MemoryRecord().Physical.Left[kNewest], "2048.5");
  EXPECT_EQ(MemoryRecord().Physical.Right[kNewest], "-1");
  EXPECT_EQ(MemoryRecord().Physical.LeftBar[kNewest], "1");
  EXPECT_EQ(MemoryRecord().Physical.RightBar[kNewest], "1");
  EXPECT_EQ(MemoryRecord().Virtual.Left[kNewest], "0");
  EXPECT_EQ(MemoryRecord().Virtual.Right[kNewest], "40");
  EXPECT_EQ(MemoryRecord().Virtual.LeftBar[kNewest], "1");
  EXPECT_EQ(MemoryRecord().Virtual.RightBar[kNewest], "1");
  EXPECT_EQ(MemoryRecord().Physical.Left[44], "");
  ExpectNoEvent();
}

TEST_F(MemoryHist45Test, WordsAndDevice) {
  SqlHist45MemControl(house.queries, kSlot, 900, "Büro Юг", false);
  const Hist45MemRecord& record = MemoryRecord();
  EXPECT_EQ(record.Device, "B\xFCro ??");
  EXPECT_EQ(record.Storage, "W75");
  EXPECT_EQ(record.Physical.Head, "W76");
  EXPECT_EQ(record.Physical.NameLeft, "W69");
  EXPECT_EQ(record.Physical.NameRight, "W71");
  EXPECT_EQ(record.Virtual.Head, "W77");
  EXPECT_EQ(record.Virtual.NameLeft, "W69");
  EXPECT_EQ(record.Virtual.NameRight, "W71");
}

TEST_F(MemoryHist45Test, ServerWithoutMemoryIsDashesOnAxesOfTwo) {
  AddDiskHistory(1);
  AddDiskDay(2, StorageTable(2));
  AddMemory(StorageTable(2), "Physical", {{"RecNo", "901"}});
  FillMemoryDay(45);
  FillMemoryDay(44);
  ReportMemory();
  for (const int position : {45, 44, 43, 1}) {
    EXPECT_EQ(Physical(position), kMissingStorage) << position;
    EXPECT_EQ(Virtual(position), kMissingStorage) << position;
  }
  EXPECT_EQ(Axis(MemoryRecord().Physical), (Lines{"2 M", "1 M"}));
  EXPECT_EQ(Axis(MemoryRecord().Virtual), (Lines{"2 M", "1 M"}));
  ExpectNoEvent();
}

TEST_F(MemoryHist45Test, DayWithOneMemoryFillsItsPanelAndDashesTheOther) {
  AddDiskDay(1, StorageTable(1));
  AddMemory(StorageTable(1), "Physical");
  AddDiskDay(2, StorageTable(2));
  AddMemory(StorageTable(2), "Virtual");
  FillMemoryDay(45);
  FillMemoryDay(44);
  ReportMemory();
  const Lines filled = {"100 M", "100", "40 M", "40", " (40%)"};
  EXPECT_EQ(Physical(45), filled);
  EXPECT_EQ(Virtual(45), kMissingStorage);
  EXPECT_EQ(Physical(44), kMissingStorage);
  EXPECT_EQ(Virtual(44), filled);
  ExpectNoEvent();
}

TEST_F(MemoryHist45Test, FirstStoredRowOfTheServerCountsWhateverTheCaseOfItsName) {
  AddDiskDay(1, StorageTable(1));
  AddMemory(StorageTable(1), "Physical", {{"RecNo", "901"}, {"TotalM", "10"}});
  AddMemory(StorageTable(1), "PHYSICAL", {{"TotalM", "20"}});
  AddMemory(StorageTable(1), "Physical", {{"TotalM", "30"}});
  AddMemory(StorageTable(1), "virtual", {{"TotalM", "50"}, {"Type", "30"}});
  ReportMemory();
  EXPECT_EQ(Physical(kNewest)[0], "20 M");
  EXPECT_EQ(Virtual(kNewest)[0], "50 M");
}

TEST_F(MemoryHist45Test, PanelsHaveAxesOfTheirOwnOverAllDays) {
  AddMemoryHistory(1, {{"TotalM", "12"}}, {{"TotalM", "1234"}});
  AddMemoryHistory(45, {{"TotalM", "10"}, {"UsedM", "123"}}, {{"TotalM", "10"}, {"UsedM", "1"}});
  ReportMemory();
  EXPECT_EQ(Axis(MemoryRecord().Physical), (Lines{"150 M", "75 M"}));
  EXPECT_EQ(Axis(MemoryRecord().Virtual), (Lines{"1 G", "0.5 G"}));
  EXPECT_EQ(Physical(45), (Lines{"12 M", "8", "40 M", "27", " (333%)"}));
  EXPECT_EQ(Physical(1), (Lines{"10 M", "7", "123 M", "82", " (1230%)"}));
  EXPECT_EQ(Virtual(45), (Lines{"1 234 M", "123", "40 M", "4", " (3%)"}));
  EXPECT_EQ(Virtual(1), (Lines{"10 M", "1", "1 M", "1", " (10%)"}));
}

TEST_F(MemoryHist45Test, UsedPhysicalThatIsNoNumberTakesTheBarOfTheSize) {
  AddMemoryHistory(1, {{"UsedM", "'n/a'"}}, {{"UsedM", "'n/a'"}});
  ReportMemory();
  EXPECT_EQ(Physical(kNewest), (Lines{"100 M", "1", "n/a", "1", ""}));
  EXPECT_EQ(Virtual(kNewest), (Lines{"100 M", "100", "n/a", "1", ""}));
  ExpectNoEvent();
}

TEST_F(MemoryHist45Test, SizeThatIsNoNumberHasABarOfOneOfItsOwn) {
  AddMemoryHistory(1, {{"TotalM", "'n/a'"}}, {{"TotalM", "'n/a'"}});
  ReportMemory();
  EXPECT_EQ(Physical(kNewest), (Lines{"n/a", "1", "40 M", "100", ""}));
  EXPECT_EQ(Virtual(kNewest), (Lines{"n/a", "1", "40 M", "100", ""}));
  ExpectNoEvent();
}

TEST_F(MemoryHist45Test, UsedPhysicalThatWasNotReadKeepsItsBar) {
  AddMemoryHistory(1, {{"UsedM", "NULL"}});
  FillMemoryDay(kNewest);
  ReportMemory();
  ExpectFailure(kDay, "UsedM");
  EXPECT_EQ(Physical(kNewest), (Lines{"100 M", "1", kBefore, kBefore, ""}));
  EXPECT_EQ(Virtual(kNewest), (Lines{kBefore, "1", kBefore, "1", ""}));
}

TEST_F(MemoryHist45Test, NullEndsTheDayWhereItStands) {
  struct Case {
    Columns physical;
    Columns virtual_;
    Lines left;  // figures: physical left and right, virtual left and right
  };
  const Case cases[] = {
      {{{"TotalM", "NULL"}}, {}, {kBefore, kBefore, kBefore, kBefore}},
      {{{"UsedM", "NULL"}}, {}, {"100", kBefore, kBefore, kBefore}},
      {{}, {{"TotalM", "NULL"}}, {"100", "40", kBefore, kBefore}},
      {{}, {{"UsedM", "NULL"}}, {"100", "40", "100", kBefore}},
  };
  for (const Case& row : cases) {
    History("DELETE FROM Disk_Day01; DELETE FROM Disk_HistCtrl;");
    AddMemoryHistory(1, row.physical, row.virtual_);
    FillMemoryDay(kNewest);
    house.ForgetEvents();
    ReadDay();
    EXPECT_EQ(Failures(kDay).size(), 1u);
    const Hist45MemRecord& record = MemoryRecord();
    EXPECT_EQ((Lines{record.Physical.Left[kNewest], record.Physical.Right[kNewest],
                     record.Virtual.Left[kNewest], record.Virtual.Right[kNewest]}),
              row.left);
  }
}

TEST_F(MemoryHist45Test, NullsInOtherColumnsAreNotLookedAt) {
  AddMemoryHistory(1, {{"DevName", "NULL"},
                       {"Type", "NULL"},
                       {"FreeM", "NULL"},
                       {"UsedProc", "NULL"},
                       {"Trend14d", "NULL"}});
  ReportMemory();
  EXPECT_EQ(Physical(kNewest), (Lines{"100 M", "100", "40 M", "40", " (40%)"}));
  ExpectNoEvent();
}

TEST_F(MemoryHist45Test, WalkGoesOverTheDaysOfTheDisks) {
  AddPortDay(2, "Disk_Day09");  // of the ports: not looked at
  AddMemory("Disk_Day07", "Physical", {{"TotalM", "77"}});
  AddDiskDay(1, "Disk_Day07");
  AddMemoryHistory(3);
  MemoryRecord().StorageDate.Fill(MakeDateTime({2001, 1, 1}));
  MemoryRecord().HistTable[42] = "Disk_Day20";
  AddMemory("Disk_Day20", "Physical", {{"TotalM", "20"}});
  ReportMemory();
  const Hist45MemRecord& record = MemoryRecord();
  EXPECT_EQ(DateTimeText(record.StorageDate[45]), "2024-05-01 00:00:00");
  EXPECT_EQ(record.HistTable[45], "Disk_Day07");
  EXPECT_EQ(Physical(45)[0], "77 M");
  EXPECT_EQ(DateTimeText(record.StorageDate[44]), "2024-04-30 00:00:00");
  EXPECT_EQ(record.HistTable[44], "");
  EXPECT_EQ(Physical(44), kMissingStorage);
  EXPECT_EQ(Virtual(44), kMissingStorage);
  EXPECT_EQ(record.HistTable[43], "Disk_Day03");
  // The rows have run out: older days keep their table and are read from it.
  EXPECT_EQ(DateTimeText(record.StorageDate[42]), "2001-01-01 00:00:00");
  EXPECT_EQ(record.HistTable[42], "Disk_Day20");
  EXPECT_EQ(Physical(42)[0], "20 M");
  ExpectNoEvent();
}

TEST_F(MemoryHist45Test, RowOfTodayBlanksAllDays) {
  AddDiskDay(0, "Disk_Day45");
  AddMemoryHistory(1);
  FillMemoryDay(kNewest);
  MemoryRecord().HistTable.Fill("Disk_Day01");
  ReportMemory();
  for (int position = 1; position <= 45; ++position) {
    EXPECT_EQ(MemoryRecord().HistTable[position], "") << position;
    EXPECT_EQ(Physical(position), kMissingStorage) << position;
  }
  EXPECT_EQ(DateTimeText(MemoryRecord().StorageDate[1]), "2024-03-18 00:00:00");
}

TEST_F(MemoryHist45Test, OverriddenReportDateStandsForToday) {
  History(InsertStorageControl("'2014-11-06 03:10:00'", "'Disk_Day01'"));
  house.settings.RepDateOverride = true;
  house.settings.txtRepDate = "2014-11-07";
  ReportMemory();
  EXPECT_EQ(DateTimeText(MemoryRecord().StorageDate[45]), "2014-11-06 00:00:00");
  EXPECT_EQ(MemoryRecord().HistTable[45], "Disk_Day01");
}

TEST_F(MemoryHist45Test, SlotOutsideOneToTwentyFails) {
  AddMemoryHistory(1);
  for (const int slot : {0, 21}) {
    house.ForgetEvents();
    SqlHist45MemControl(house.queries, static_cast<ConnectionId>(slot), 900, "Files", false);
    ExpectFailure(kControl, std::to_string(slot));
    house.ForgetEvents();
    ReadDay(static_cast<ConnectionId>(slot));
    ExpectFailure(kDay, std::to_string(slot));
  }
}

TEST_F(MemoryHist45Test, MissingDatabaseLeavesTheRecordAsItWas) {
  AddMemoryHistory(1);
  ReportMemory();
  house.installation.Remove("History.mdb");
  MemoryRecord().Device = kBefore;
  ReportMemory();
  ExpectFailure(kControl, "History.mdb");
  EXPECT_EQ(MemoryRecord().Device, kBefore);
  EXPECT_EQ(Physical(kNewest)[0], "100 M");
}

TEST_F(MemoryHist45Test, MissingDayTableIsOneFailureOfItsDay) {
  AddMemoryHistory(1);
  AddMemoryHistory(2);
  History("DROP TABLE Disk_Day01");
  ReportMemory();
  EXPECT_EQ(Failures(kDay), Lines{"History.mdb: no such table: Disk_Day01"});
  // Of the fresh position only the bars are set, but for the one that stays as it was.
  EXPECT_EQ(Physical(45), (Lines{"", "1", "", "", ""}));
  EXPECT_EQ(Virtual(45), (Lines{"", "1", "", "1", ""}));
  EXPECT_EQ(Physical(44)[0], "100 M");
}

TEST_F(MemoryHist45Test, WaitsTenMillisecondsADayAndInTheBackgroundTwentyForEachTable) {
  AddMemoryHistory(1);
  AddMemoryHistory(3);
  ReportMemory();
  EXPECT_EQ(house.clock.slept().count(), 450);
  ReportMemory(true);
  EXPECT_EQ(house.clock.slept().count(), 450 + 450 + 2 * 20);
}

TEST_F(MemoryHist45Test, ReportOfAnotherSlotMayRunInAWait) {
  AddMemoryHistory(1);
  AddMemory("Disk_Day01", "Physical", {{"RecNo", "901"}, {"TotalM", "777"}});
  house.loop.Post([&] { SqlHist45MemControl(house.queries, kOtherSlot, 901, "Other", true); });
  ReportMemory();
  EXPECT_EQ(Physical(kNewest)[0], "100 M");
  EXPECT_EQ(MemoryRecord().Device, "Files");
  EXPECT_EQ(house.records.Hist45MemRep[kOtherSlot].Device, "Other");
  EXPECT_EQ(house.records.Hist45MemRep[kOtherSlot].Physical.Left[kNewest], "777 M");
  EXPECT_EQ(house.records.Hist45MemRep[4].Device, "");
  ExpectNoEvent();
}

}  // namespace
}  // namespace quillon
