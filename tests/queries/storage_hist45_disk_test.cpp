// The history of one disk: its panel, the used share, the text of its name in the select.
#include "queries/hist45_fixture.h"

namespace quillon {
namespace {

constexpr const char* kControl = "modSelectSql_SqlHist45DiskControl";
constexpr const char* kDay = "modSelectSql_SqlHist45DiskStats";

class DiskHist45Test : public Hist45Test {
 protected:
  // Reads a disk of server 900 into position 45, as the report does for each day.
  void ReadDay(const std::string& storDescr = "C:", ConnectionId slot = kSlot) {
    ReusedConnection history(house.settings.ConnHistory);
    SqlHist45DiskStats(house.queries, history, slot, kNewest, "Disk_Day01", 900, storDescr);
  }

  Lines Disk(int position) { return StorageDay(DiskRecord().Disk, position); }

  const Lines kFilled = {"100 M", "100", "40 M", "40", " (40%)"};
};

TEST_F(DiskHist45Test, DayShowsSizesBarsAndUsedShare) {
  AddDiskHistory(1);
  ReportDisk();
  EXPECT_EQ(Disk(kNewest), kFilled);
  EXPECT_EQ(Axis(DiskRecord().Disk), (Lines{"100 M", "50 M"}));
  EXPECT_EQ(Disk(44), kMissingStorage);
  ExpectNoEvent();
}

TEST_F(DiskHist45Test, DayIsReadAsItIsStored) {
  AddStorage("Disk_Day01", {{"TotalM", "123456.75"}, {"UsedM", "-1"}});
  FillDay(DiskRecord().Disk, kNewest);
  ReadDay();
  // Seven digits are what a stored size has.
  EXPECT_EQ(Disk(kNewest), (Lines{"123456.8", "1", "-1", "1", kBefore}));
  ReadDay("D:");
  EXPECT_EQ(Disk(kNewest), (Lines{"-", "1", "-", "1", kBefore}));
  ExpectNoEvent();
}

TEST_F(DiskHist45Test, WordsDeviceAndStorage) {
  SqlHist45DiskControl(house.queries, kSlot, 900, "Büro", "/größe Юг", false);
  const Hist45DiskRecord& record = DiskRecord();
  EXPECT_EQ(record.Device, "B\xFCro");
  EXPECT_EQ(record.Storage,
            "/gr\xF6\xDF"
            "e ??");
  EXPECT_EQ(record.Disk.Head, "W80");
  EXPECT_EQ(record.Disk.NameLeft, "W69");
  EXPECT_EQ(record.Disk.NameRight, "W71");
}

TEST_F(DiskHist45Test, UsedShareIsMadeOfTheStoredFigures) {
  struct Case {
    std::string total;
    std::string used;
    Lines texts;  // left, right, share
  };
  const Case cases[] = {
      {"100", "40", {"100 M", "40 M", " (40%)"}},
      {"100", "0", {"100 M", "0", " (0%)"}},
      {"300", "1", {"300 M", "1 M", " (0%)"}},
      {"200", "1", {"200 M", "1 M", " (1%)"}},  // 0.5: a digit pattern rounds away from zero
      {"200", "3", {"200 M", "3 M", " (2%)"}},  // 1.5
      {"200", "5", {"200 M", "5 M", " (3%)"}},  // 2.5
      {"100", "150", {"100 M", "150 M", " (150%)"}},
      {"1", "2000", {"1 M", "2 000 M", " (200000%)"}},
      {"12500", "1234", {"13 G", "1 234 M", " (10%)"}},
      {"0.4", "0.2", {"0", "0", " (50%)"}},
      {"100.5", "50.25", {"101 M", "50 M", " (50%)"}},
      {"100", "-1", {"100 M", "-", " (-1%)"}},
      {"0", "40", {"0", "40 M", ""}},
      {"0", "0", {"0", "0", ""}},
      {"-1", "40", {"-", "40 M", ""}},
      {"-5", "-5", {"0", "0", ""}},
      {"'n/a'", "40", {"n/a", "40 M", ""}},
      {"100", "'n/a'", {"100 M", "n/a", ""}},
      {"'n/a'", "''", {"n/a", "", ""}},
      {"12345499", "1", {"13 T", "1 M", " (0%)"}},  // 12345500 in the seven digits of its text
  };
  int age = 0;
  for (const Case& row : cases) {
    AddDiskHistory(++age, {{"TotalM", row.total}, {"UsedM", row.used}});
  }
  const Panel& disk = ReportDisk().Disk;
  age = 0;
  for (const Case& row : cases) {
    const int position = PositionOf(++age);
    EXPECT_EQ((Lines{disk.Left[position], disk.Right[position], disk.Proc[position]}), row.texts)
        << row.used << " of " << row.total;
  }
  ExpectNoEvent();
}

TEST_F(DiskHist45Test, MissingDayHasNoUsedShareWhateverStoodThere) {
  AddDiskHistory(2);
  FillDay(DiskRecord().Disk, 45);
  FillDay(DiskRecord().Disk, 43);
  ReportDisk();
  EXPECT_EQ(Disk(45), kMissingStorage);
  EXPECT_EQ(Disk(44), kFilled);
  EXPECT_EQ(Disk(43), kMissingStorage);
}

TEST_F(DiskHist45Test, AxisIsThatOfAVolume) {
  struct Case {
    std::string total;
    std::string used;
    Lines labels;
    Lines bars;
  };
  const Case cases[] = {
      {"0", "0", {"2 M", "1 M"}, {"1", "1"}},
      {"2", "1", {"2 M", "1 M"}, {"100", "50"}},
      {"12", "6", {"15 M", "7.5 M"}, {"80", "40"}},
      {"6", "12", {"15 M", "7.5 M"}, {"40", "80"}},
      {"1234", "1000", {"1 G", "0.5 G"}, {"123", "100"}},
      {"1000", "5", {"1 G", "0.5 G"}, {"100", "1"}},
      {"1000", "-15", {"1 G", "0.5 G"}, {"100", "-2"}},
      {"250000", "125000", {"250 G", "125 G"}, {"100", "50"}},
      {"-1", "-1", {"2 M", "1 M"}, {"-50", "-50"}},
      {"'n/a'", "1", {"2 M", "1 M"}, {"1", "50"}},
      {"1", "'n/a'", {"2 M", "1 M"}, {"50", "1"}},
  };
  for (const Case& row : cases) {
    History("DELETE FROM Disk_HistCtrl; DELETE FROM Disk_Day01;");
    AddDiskHistory(1, {{"TotalM", row.total}, {"UsedM", row.used}});
    const Panel& disk = ReportDisk().Disk;
    EXPECT_EQ(Axis(disk), row.labels) << row.used << " of " << row.total;
    EXPECT_EQ((Lines{disk.LeftBar[kNewest], disk.RightBar[kNewest]}), row.bars)
        << row.used << " of " << row.total;
  }
  ExpectNoEvent();
}

TEST_F(DiskHist45Test, OnlyTheFirstRowOfTheDiskCounts) {
  AddDiskDay(1, "Disk_Day01");
  AddStorage("Disk_Day01", {{"RecNo", "901"}, {"TotalM", "10"}});
  AddStorage("Disk_Day01", {{"StorDescr", "'C:\\'"}, {"TotalM", "20"}});
  AddStorage("Disk_Day01", {{"StorDescr", "'c:'"}, {"TotalM", "30"}});
  AddStorage("Disk_Day01", {{"StorDescr", "'C:'"}, {"TotalM", "50"}});
  EXPECT_EQ(ReportDisk().Disk.Left[kNewest], "30 M");
}

TEST_F(DiskHist45Test, DiskIsFoundByItsNameAsTheDatabaseHoldsIt) {
  AddDiskHistory(1, {{"StorDescr", "'/Größe Юг'"}});
  SqlHist45DiskControl(house.queries, kSlot, 900, "Files", "/Größe Юг", false);
  EXPECT_EQ(Disk(kNewest), kFilled);
  SqlHist45DiskControl(house.queries, kSlot, 900, "Files",
                       "/Gr\xF6\xDF"
                       "e ??",
                       false);
  EXPECT_EQ(Disk(kNewest), kMissingStorage);
  ExpectNoEvent();
}

TEST_F(DiskHist45Test, NameWithAQuoteFailsEachDayAndItsPositionsKeepWhatTheyHeld) {
  AddDiskHistory(1);
  AddDiskHistory(2);
  AddDiskHistory(4);
  ReportDisk();
  SqlHist45DiskControl(house.queries, kSlot, 900, "Files", "O'Neil", false);
  EXPECT_EQ(Failures(kDay).size(), 3u);
  // What stood there is shown again; being no number, it has a bar of one and no share.
  EXPECT_EQ(Disk(45), (Lines{"100 M", "1", "40 M", "1", ""}));
  EXPECT_EQ(Disk(44), (Lines{"100 M", "1", "40 M", "1", ""}));
  EXPECT_EQ(Disk(43), kMissingStorage);
  EXPECT_EQ(DiskRecord().Storage, "O'Neil");
}

TEST_F(DiskHist45Test, NameGoesIntoTheSelectAsItStands) {
  AddDiskHistory(1, {{"StorDescr", "'D:'"}, {"TotalM", "70"}});
  SqlHist45DiskControl(house.queries, kSlot, 900, "Files", "x' OR StorDescr='D:", false);
  EXPECT_EQ(Disk(kNewest)[0], "70 M");
  SqlHist45DiskControl(house.queries, kSlot, 900, "Files", "", false);
  EXPECT_EQ(Disk(kNewest), kMissingStorage);
  ExpectNoEvent();
}

TEST_F(DiskHist45Test, NullEndsTheDayWhereItStands) {
  struct Case {
    std::string column;
    Lines figures;
  };
  const Case cases[] = {{"TotalM", {kBefore, kBefore}}, {"UsedM", {"100", kBefore}}};
  for (const Case& row : cases) {
    History("DELETE FROM Disk_Day01");
    AddStorage("Disk_Day01", {{row.column, "NULL"}});
    FillDay(DiskRecord().Disk, kNewest);
    house.ForgetEvents();
    ReadDay();
    ExpectFailure(kDay, row.column);
    EXPECT_EQ((Lines{DiskRecord().Disk.Left[kNewest], DiskRecord().Disk.Right[kNewest]}),
              row.figures);
  }
}

TEST_F(DiskHist45Test, WalkGoesOverTheDaysOfTheDisks) {
  AddPortDay(2, "Disk_Day09");  // of the ports: not looked at
  AddStorage("Disk_Day07", {{"TotalM", "77"}});
  AddDiskDay(1, "Disk_Day07");
  AddDiskHistory(3);
  DiskRecord().StorageDate.Fill(MakeDateTime({2001, 1, 1}));
  DiskRecord().HistTable[42] = "Disk_Day20";
  AddStorage("Disk_Day20", {{"TotalM", "20"}});
  ReportDisk();
  const Hist45DiskRecord& record = DiskRecord();
  EXPECT_EQ(DateTimeText(record.StorageDate[45]), "2024-05-01 00:00:00");
  EXPECT_EQ(record.HistTable[45], "Disk_Day07");
  EXPECT_EQ(Disk(45)[0], "77 M");
  EXPECT_EQ(DateTimeText(record.StorageDate[44]), "2024-04-30 00:00:00");
  EXPECT_EQ(record.HistTable[44], "");
  EXPECT_EQ(record.HistTable[43], "Disk_Day03");
  EXPECT_EQ(DateTimeText(record.StorageDate[42]), "2001-01-01 00:00:00");
  EXPECT_EQ(Disk(42)[0], "20 M");
  ExpectNoEvent();
}

TEST_F(DiskHist45Test, TwoRowsOfADayBlankTheDaysBeforeIt) {
  AddDiskHistory(3);
  AddDiskHistory(2);
  AddDiskDay(2, "Disk_Day30");
  AddDiskHistory(1);
  ReportDisk();
  EXPECT_EQ(DiskRecord().HistTable[45], "Disk_Day01");
  EXPECT_EQ(DiskRecord().HistTable[44], "Disk_Day02");
  EXPECT_EQ(DiskRecord().HistTable[43], "");
  EXPECT_EQ(DateTimeText(DiskRecord().StorageDate[1]), "2024-03-18 00:00:00");
  EXPECT_EQ(Disk(43), kMissingStorage);
}

TEST_F(DiskHist45Test, OverriddenReportDateStandsForToday) {
  History(InsertStorageControl("'2014-11-06 03:10:00'", "'Disk_Day01'"));
  house.settings.RepDateOverride = true;
  house.settings.txtRepDate = "2014-11-07";
  ReportDisk();
  EXPECT_EQ(DateTimeText(DiskRecord().StorageDate[45]), "2014-11-06 00:00:00");
  EXPECT_EQ(DiskRecord().HistTable[45], "Disk_Day01");
}

TEST_F(DiskHist45Test, SlotOutsideOneToTwentyFails) {
  AddDiskHistory(1);
  for (const int slot : {0, 21}) {
    house.ForgetEvents();
    ReadDay("C:", static_cast<ConnectionId>(slot));
    ExpectFailure(kDay, std::to_string(slot));
    house.ForgetEvents();
    SqlHist45DiskControl(house.queries, static_cast<ConnectionId>(slot), 900, "Files", "C:", false);
    ExpectFailure(kControl, std::to_string(slot));
  }
}

TEST_F(DiskHist45Test, MissingDatabaseLeavesTheRecordAsItWas) {
  AddDiskHistory(1);
  ReportDisk();
  house.installation.Remove("History.mdb");
  DiskRecord().Device = kBefore;
  ReportDisk();
  ExpectFailure(kControl, "History.mdb");
  EXPECT_EQ(DiskRecord().Device, kBefore);
  EXPECT_EQ(Disk(kNewest), kFilled);
}

TEST_F(DiskHist45Test, MissingDayTableFailsItsDayOnly) {
  AddDiskHistory(1);
  AddDiskHistory(2);
  History("DROP TABLE Disk_Day01");
  ReportDisk();
  EXPECT_EQ(Failures(kDay), Lines{"History.mdb: no such table: Disk_Day01"});
  EXPECT_EQ(Disk(45), (Lines{"", "1", "", "1", ""}));
  EXPECT_EQ(Disk(44), kFilled);
}

TEST_F(DiskHist45Test, SizeOfElevenDigitsHasNoAxis) {
  AddDiskHistory(1, {{"TotalM", "10000000000"}});
  ReportDisk();
  const Lines events = house.Events();
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0].rfind("1\tmodQuillonWeb_RoundToValue\t", 0), 0u) << events[0];
  EXPECT_EQ(events[1].rfind("1\t" + std::string(kControl), 0), 0u) << events[1];
  EXPECT_EQ(DiskRecord().Disk.YaxisMax, "0");
  EXPECT_EQ(Disk(kNewest)[2], "40");
}

TEST_F(DiskHist45Test, WaitsTenMillisecondsADayAndInTheBackgroundTwentyForEachTable) {
  AddDiskHistory(1);
  AddDiskHistory(3);
  ReportDisk();
  EXPECT_EQ(house.clock.slept().count(), 450);
  ReportDisk(true);
  EXPECT_EQ(house.clock.slept().count(), 450 + 450 + 2 * 20);
}

TEST_F(DiskHist45Test, ReportsOfAllKindsMayRunInOneAnothersWaits) {
  AddDiskHistory(1);
  AddMemory("Disk_Day01", "Physical", {{"TotalM", "777"}});
  AddPortHistory(1);
  house.loop.Post([&] { ReportMemory(); });
  house.loop.Post([&] { ReportPort(true); });
  house.loop.Post([&] { ReportDisk(true, 5); });
  ReportDisk();
  EXPECT_EQ(Disk(kNewest), kFilled);
  EXPECT_EQ(StorageDay(house.records.Hist45DiskRep[5].Disk, kNewest), kFilled);
  EXPECT_EQ(MemoryRecord().Physical.Left[kNewest], "777 M");
  EXPECT_EQ(Figures(kNewest)[0], "6 M");
  EXPECT_EQ(house.records.Hist45DiskRep[4].Device, "");
  ExpectNoEvent();
}

}  // namespace
}  // namespace quillon
