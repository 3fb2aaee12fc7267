// The trends of storages: which days are compared, what an old value is, and what a failure
// leaves. The debug dump is in disk_trends_dump_test.
#include "import/disk_history.h"
#include "import/disk_trends_fixture.h"

namespace quillon {
namespace {

const std::vector<std::string> kOfTheProduct = {"77|88"};

TEST_F(DiskTrendsTest, TrendIsTheChangeOfTheUsedShare) {
  struct Case {
    std::string now;
    std::string before14;
    std::string before30;
    std::string trends;
  };
  const Case cases[] = {
      {"40", "35", "20", "5|20"},       {"40", "40", "40", "0|0"}, {"40", "50", "95", "-10|-55"},
      {"40", "0", "100", "40|-60"},     {"0", "12", "0", "-12|0"}, {"-1", "4", "-3", "-5|2"},
      {"100.5", "1", "2", "99.5|98.5"},
  };
  for (const Case& row : cases) {
    EmptyDays();
    AddDisk("900", row.now, row.before14, row.before30);
    EXPECT_EQ(FixTrends(), Lines{row.trends}) << row.now;
  }
  ExpectNoEvent();
}

TEST_F(DiskTrendsTest, NothingButTheTrendsIsChanged) {
  AddDisk("1", "40", "35", "20");
  AddDisk("2", "60", "35", "20");
  AddDayRow("Disk_Day02");
  const std::string others =
      "SELECT RecNo, DevName, StorDescr, Type, TotalM, UsedM, FreeM, UsedProc FROM " + kDay;
  const Lines before = History(others);
  const Lines control = History("SELECT * FROM Disk_HistCtrl");
  EXPECT_EQ(FixTrends(), (Lines{"5|20", "25|40"}));
  EXPECT_EQ(History(others), before);
  EXPECT_EQ(History("SELECT * FROM Disk_HistCtrl"), control);
  EXPECT_EQ(Trends(kDay14), (Lines{"77|88", "77|88"}));
  EXPECT_EQ(Trends(kDay30), (Lines{"77|88", "77|88"}));
  EXPECT_EQ(Trends("Disk_Day02"), kOfTheProduct);
}

TEST_F(DiskTrendsTest, DayWithoutATableGivesATrendOfZero) {
  AddDisk("900", "40", "35", "20");
  ForgetDay(kRow14);
  EXPECT_EQ(FixTrends(), Lines{"0|20"});
  ForgetDay(kRow30);
  EXPECT_EQ(FixTrends(), Lines{"0|0"});
  StampDisk(kRow14, "2024-04-17 13:00:00");
  EXPECT_EQ(FixTrends(), Lines{"5|0"});
  ExpectNoEvent();
}

TEST_F(DiskTrendsTest, WithoutTheTableOfTheDayTheProductsTrendsStay) {
  AddDisk("900", "40", "35", "20");
  ForgetDay(kRow);
  EXPECT_EQ(FixTrends(), kOfTheProduct);
  ExpectNoEvent();
}

TEST_F(DiskTrendsTest, NewDiskHasGrownFromNothing) {
  AddDisk("1", "40", "35", "20");
  AddDayRow(kDay, {{"RecNo", "2"}, {"UsedProc", "62.5"}});
  AddDayRow(kDay, {{"RecNo", "3"}, {"UsedProc", "30"}});
  AddDayRow(kDay14, {{"RecNo", "3"}, {"UsedProc", "10"}});
  EXPECT_EQ(FixTrends(), (Lines{"5|20", "62.5|62.5", "20|30"}));
  ExpectNoEvent();
}

TEST_F(DiskTrendsTest, DiskIsKnownByItsServerAndItsName) {
  AddDayRow(kDay14, {{"RecNo", "901"}, {"UsedProc", "11"}});
  AddDayRow(kDay14, {{"StorDescr", "'D:'"}, {"UsedProc", "12"}});
  AddDayRow(kDay14, {{"DevName", "'Renamed'"}, {"Type", "40"}, {"UsedProc", "13"}});
  AddDayRow(kDay14, {{"UsedProc", "14"}});  // only the first row counts
  AddDayRow(kDay);
  AddDayRow(kDay, {{"StorDescr", "'D:'"}});
  AddDayRow(kDay, {{"RecNo", "901"}});
  AddDayRow(kDay, {{"RecNo", "901"}, {"StorDescr", "'D:'"}});
  EXPECT_EQ(FixTrends(), (Lines{"27|40", "28|40", "29|40", "40|40"}));
}

TEST_F(DiskTrendsTest, NamesAreFoundAsTheyAreWritten) {
  struct Case {
    std::string now;
    std::string before;
    bool found;
  };
  const Case cases[] = {
      {"'C:'", "'c:'", true},
      {"'/HOME/Ärger'", "'/home/äRGER'", true},
      {"'日本:'", "'日本:'", true},  // also where the charset of the pages lacks it
      {"'C:\\ Label:\"A\"; -- x'", "'C:\\ Label:\"A\"; -- x'", true},
      {"''", "''", true},
      {"'%'", "'C:'", false},
      {"'?:'", "'日:'", false},
      {"'C:'", "' C:'", false},
      {"'C:'", "NULL", false},
  };
  for (const Case& row : cases) {
    HistorySql("DELETE FROM " + kDay);
    HistorySql("DELETE FROM " + kDay14);
    AddDayRow(kDay, {{"StorDescr", row.now}});
    AddDayRow(kDay14, {{"StorDescr", row.before}, {"UsedProc", "30"}});
    EXPECT_EQ(FixTrends(), Lines{row.found ? "10|40" : "40|40"}) << row.now << " " << row.before;
  }
  ExpectNoEvent();
}

TEST_F(DiskTrendsTest, ServersOfAnyNumberAreFound) {
  for (const char* recNo : {"-5", "0", "2147483647", "-2147483648"}) {
    AddDisk(recNo, "40", "35", "20");
  }
  EXPECT_EQ(FixTrends(), Lines(4, "5|20"));
  ExpectNoEvent();
}

TEST_F(DiskTrendsTest, OldValueIsRoundedWithTiesToEvenAndTheNewOneIsNot) {
  struct Case {
    std::string before;
    std::string trend;
  };
  const Case cases[] = {
      {"2.5", "38.25"},  {"3.5", "36.25"},  {"2.49", "38.25"}, {"2.51", "37.25"},
      {"0.5", "40.25"},  {"1.5", "38.25"},  {"-0.5", "40.25"}, {"-1.5", "42.25"},
      {"-2.5", "42.25"}, {"-2.4", "42.25"}, {"-2.6", "43.25"}, {"99.5", "-59.75"},
  };
  for (const Case& row : cases) {
    EmptyDays();
    AddDisk("900", "40.25", row.before, row.before);
    EXPECT_EQ(FixTrends(), Lines{row.trend + "|" + row.trend}) << row.before;
  }
  ExpectNoEvent();
}

TEST_F(DiskTrendsTest, TargetsAre14And30DaysBeforeTheDay) {
  struct Case {
    DateTimeParts now;
    std::string day;
    std::string day14;
    std::string day30;
  };
  const Case cases[] = {
      {{2024, 5, 2, 12, 0, 0}, "2024-05-01", "2024-04-17", "2024-04-01"},
      {{2024, 5, 2, 0, 0, 0}, "2024-05-01", "2024-04-17", "2024-04-01"},
      {{2024, 5, 2, 22, 59, 59}, "2024-05-01", "2024-04-17", "2024-04-01"},
      {{2024, 5, 2, 23, 0, 0}, "2024-05-02", "2024-04-18", "2024-04-02"},
      {{2024, 5, 2, 23, 59, 59}, "2024-05-02", "2024-04-18", "2024-04-02"},
      {{2024, 3, 1, 12, 0, 0}, "2024-02-29", "2024-02-15", "2024-01-30"},
      {{2023, 3, 1, 12, 0, 0}, "2023-02-28", "2023-02-14", "2023-01-29"},
      {{2024, 1, 5, 12, 0, 0}, "2024-01-04", "2023-12-21", "2023-12-05"},
      {{2024, 4, 1, 3, 30, 0}, "2024-03-31", "2024-03-17", "2024-03-01"},  // summer time began
  };
  AddDisk("900", "40", "35", "20");
  for (const Case& row : cases) {
    house.clock.Set(MakeDateTime(row.now));
    for (const char* timeOfDay : {" 00:00:00", " 13:00:00", " 23:59:59"}) {
      HistorySql("UPDATE " + kDay + " SET Trend14d = 77, Trend30d = 88");
      StampDisk(kRow, row.day + timeOfDay);
      StampDisk(kRow14, row.day14 + timeOfDay);
      StampDisk(kRow30, row.day30 + timeOfDay);
      EXPECT_EQ(FixTrends(), Lines{"5|20"}) << row.day << timeOfDay;
    }
  }
  ExpectNoEvent();
}

TEST_F(DiskTrendsTest, NeighboursOfTheTargetsDoNotCount) {
  struct Case {
    std::string day;
    std::string day14;
    std::string day30;
    std::string trends;
  };
  const Case cases[] = {
      {"2024-05-01 13:00:00", "2024-04-16 23:59:59", "2024-04-01 13:00:00", "0|20"},
      {"2024-05-01 13:00:00", "2024-04-18 00:00:00", "2024-04-01 13:00:00", "0|20"},
      {"2024-05-01 13:00:00", "2024-04-17 13:00:00", "2024-03-31 23:59:59", "5|0"},
      {"2024-05-01 13:00:00", "2024-04-17 13:00:00", "2024-04-02 00:00:00", "5|0"},
      {"2024-05-01 13:00:00", "2023-04-17 13:00:00", "2023-04-01 13:00:00", "0|0"},
      {"2024-04-30 23:59:59", "2024-04-17 13:00:00", "2024-04-01 13:00:00", "77|88"},
      {"2024-05-02 00:00:00", "2024-04-17 13:00:00", "2024-04-01 13:00:00", "77|88"},
  };
  AddDisk("900", "40", "35", "20");
  for (const Case& row : cases) {
    HistorySql("UPDATE " + kDay + " SET Trend14d = 77, Trend30d = 88");
    StampDisk(kRow, row.day);
    StampDisk(kRow14, row.day14);
    StampDisk(kRow30, row.day30);
    EXPECT_EQ(FixTrends(), Lines{row.trends}) << row.day << " " << row.day14 << " " << row.day30;
  }
  ExpectNoEvent();
}

TEST_F(DiskTrendsTest, ImportAfter23FindsItsOwnDayAndLooksADayLaterForTheOthers) {
  house.clock.Set(MakeDateTime({2024, 5, 2, 23, 30, 0}));
  StampDisk(1, "2000-01-01 00:00:00");
  AddDayRow(kDay14, {{"UsedProc", "35"}});
  AddDayRow("Disk_Day16", {{"UsedProc", "30"}});
  StampDisk(16, "2024-04-18 13:00:00");
  AddStorage();
  DiskStatsToHist(house.imports);
  EXPECT_EQ(History("SELECT StorageDate FROM Disk_HistCtrl WHERE HistTable = 'Disk_Day01'"),
            Lines{"2024-05-02 00:30:00"});
  EXPECT_EQ(FixTrends(), Lines{"10|0"});
  ExpectNoEvent();
}

TEST_F(DiskTrendsTest, DaysOfImportsAfter23AreFoundByTheirStamp) {
  StampDisk(kRow14, "2024-04-17 00:30:00");  // imported on 2024-04-17, not on the 18th
  AddDisk("900", "40", "35", "20");
  EXPECT_EQ(FixTrends(), Lines{"5|20"});
}

TEST_F(DiskTrendsTest, OverriddenReportDateIsThePresent) {
  OverrideReportDate("2014-11-07");
  AddDisk("900", "40", "35", "20");
  EXPECT_EQ(FixTrends(), kOfTheProduct);
  StampDisk(kRow, "2014-11-06 13:00:00");
  StampDisk(kRow14, "2014-10-23 13:00:00");
  StampDisk(kRow30, "2014-10-07 13:00:00");
  EXPECT_EQ(FixTrends(), Lines{"5|20"});
}

TEST_F(DiskTrendsTest, LastOfTwoTablesOfADayCounts) {
  StampDisk(2, "2024-05-01 01:00:00");
  StampDisk(16, "2024-04-17 01:00:00");
  StampDisk(32, "2024-04-01 01:00:00");
  AddDisk("900", "40", "35", "20");
  AddDayRow("Disk_Day02", {{"UsedProc", "41"}});
  AddDayRow("Disk_Day16", {{"UsedProc", "10"}});
  AddDayRow("Disk_Day32", {{"UsedProc", "1"}});
  EXPECT_EQ(FixTrends(), kOfTheProduct);
  EXPECT_EQ(Trends("Disk_Day02"), Lines{"31|40"});
  ExpectNoEvent();
}

TEST_F(DiskTrendsTest, ControlRowsWithoutADateOrOfNoTargetArePassedOver) {
  HistorySql("UPDATE Disk_HistCtrl SET HistTable = NULL WHERE StorageDate < '2001-01-01'");
  HistorySql("UPDATE Disk_HistCtrl SET StorageDate = NULL WHERE rowid > 40");
  AddDisk("900", "40", "35", "20");
  EXPECT_EQ(FixTrends(), Lines{"5|20"});
  ExpectNoEvent();
}

TEST_F(DiskTrendsTest, PausesAfterMoreThanAHundredRows) {
  struct Case {
    int rows;
    int pausedMs;
  };
  const Case cases[] = {{0, 0}, {100, 0}, {101, 50}, {201, 50}, {202, 100}};
  for (const Case& row : cases) {
    HistorySql("DELETE FROM " + kDay);
    AddDayRows(kDay, row.rows);
    const std::int64_t before = SleptMs();
    EXPECT_EQ(FixTrends(), Lines(static_cast<std::size_t>(row.rows), "40|40"));
    EXPECT_EQ(SleptMs() - before, row.pausedMs) << row.rows;
  }
}

TEST_F(DiskTrendsTest, PausesAlsoWithoutTablesToCompareWith) {
  ForgetDay(kRow14);
  ForgetDay(kRow30);
  AddDayRows(kDay, 101);
  EXPECT_EQ(FixTrends(), Lines(101, "0|0"));
  EXPECT_EQ(SleptMs(), 50);
}

TEST_F(DiskTrendsTest, RowsBeforeAPauseAreDoneInItAndNothingIsLocked) {
  AddDayRows(kDay, 150);
  VisitNextWait("SELECT Trend14d, count(*), max(RecNo) FROM " + kDay +
                " GROUP BY Trend14d ORDER BY Trend14d");
  EXPECT_EQ(FixTrends(), Lines(150, "40|40"));
  EXPECT_EQ(seenInWait, (Lines{"40|101|101", "77|49|150"}));
  EXPECT_TRUE(OtherProgramWrote());
  ExpectNoEvent();
}

TEST_F(DiskTrendsTest, EndOfTheServiceInAPauseLeavesTheRowsBeforeDone) {
  AddDayRows(kDay, 150);
  house.loop.Post([&] { house.loop.Quit(); });
  EXPECT_THROW(DiskFixTrendValues(house.imports), LoopEnded);
  EXPECT_EQ(
      History("SELECT Trend14d, count(*) FROM " + kDay + " GROUP BY Trend14d ORDER BY Trend14d"),
      (Lines{"40|101", "77|49"}));
  ExpectNoEvent();
}

TEST_F(DiskTrendsTest, QuoteInANameFailsAndTakesTheValueReadBefore) {
  AddDisk("1", "40", "35", "20");
  AddDayRow(kDay, {{"RecNo", "2"}, {"StorDescr", "'it''s'"}, {"UsedProc", "60"}});
  AddDisk("3", "40", "30", "10");
  AddDayRow(kDay, {{"RecNo", "4"}, {"StorDescr", "'it''s'"}, {"UsedProc", "60"}});
  // The value read last is the one of 30 days before.
  EXPECT_EQ(FixTrends(), (Lines{"5|20", "40|40", "10|30", "50|50"}));
  ExpectFailedReads(4);
}

TEST_F(DiskTrendsTest, QuoteInTheFirstNameTakesZero) {
  AddDayRow(kDay, {{"StorDescr", "''''"}, {"UsedProc", "60"}});
  EXPECT_EQ(FixTrends(), Lines{"60|60"});
  ExpectFailedReads(2);
}

TEST_F(DiskTrendsTest, QuoteInANameFailsOnlyWhereATableIsRead) {
  ForgetDay(kRow14);
  AddDisk("1", "40", "35", "20");
  AddDayRow(kDay, {{"RecNo", "2"}, {"StorDescr", "'it''s'"}, {"UsedProc", "60"}});
  EXPECT_EQ(FixTrends(), (Lines{"0|20", "0|40"}));
  ExpectFailedReads(1);
}

TEST_F(DiskTrendsTest, NameIsNoStatement) {
  AddDisk("1", "40", "35", "20");
  AddDayRow(kDay, {{"RecNo", "2"}, {"StorDescr", "'x''; DELETE FROM Disk_Day15; --'"}});
  EXPECT_EQ(FixTrends(), (Lines{"5|20", "20|20"}));
  EXPECT_EQ(Trends(kDay14), kOfTheProduct);
  ExpectFailedReads(2);
}

TEST_F(DiskTrendsTest, NullOldValueFailsAndTakesTheValueReadBefore) {
  AddDisk("1", "40", "NULL", "10");
  AddDisk("2", "40", "30", "NULL");
  AddDisk("3", "40", "NULL", "5");
  EXPECT_EQ(FixTrends(), (Lines{"40|30", "10|10", "10|35"}));
  ExpectFailedReads(3, "\tfield UsedProc holds null and not a number");
}

TEST_F(DiskTrendsTest, OldValueBeyond16BitsFailsAndTakesTheValueReadBefore) {
  struct Case {
    std::string before;
    std::string trend;  // "" where it fails
  };
  const Case cases[] = {
      {"32767", "-32727"}, {"32767.4", "-32727"}, {"32767.5", ""},    {"32768", ""},
      {"-32768", "32808"}, {"-32768.5", "32808"}, {"-32768.6", ""},   {"-32769", ""},
      {"65536", ""},       {"2147483648", ""},    {"4294967296", ""}, {"1e300", ""},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.before);
    house.ForgetEvents();
    EmptyDays();
    AddDisk("1", "40", "7", "7");
    AddDisk("2", "40", row.before, row.before);
    const bool fails = row.trend.empty();
    const std::string trend = fails ? "33" : row.trend;
    EXPECT_EQ(FixTrends(), (Lines{"33|33", trend + "|" + trend}));
    ExpectFailedReads(fails ? 2 : 0);
  }
}

TEST_F(DiskTrendsTest, MissingOldTableFailsForEachDisk) {
  RenameInControl(kDay14, "Disk_Day99");
  AddDisk("1", "40", "35", "20");
  AddDisk("2", "60", "35", "10");
  EXPECT_EQ(FixTrends(), (Lines{"40|20", "40|50"}));
  EXPECT_EQ(house.Events(),
            Lines(2, "1\tmodImport_DiskReadTrendValue\tHistory.mdb: no such table: Disk_Day99"));
}

TEST_F(DiskTrendsTest, NothingIsLockedWhileAFailedReadIsReported) {
  AddDisk("1", "40", "35", "20");
  AddDisk("2", "40", "35", "20");
  AddDayRow(kDay, {{"RecNo", "3"}, {"StorDescr", "'it''s'"}});
  AddDisk("4", "40", "35", "20");
  VisitNextWait("SELECT Trend14d, Trend30d FROM " + kDay);
  EXPECT_EQ(FixTrends(), (Lines{"5|20", "5|20", "20|20", "5|20"}));
  EXPECT_EQ(seenInWait, (Lines{"5|20", "5|20", "77|88", "77|88"}));
  EXPECT_TRUE(OtherProgramWrote());
  EXPECT_EQ(SleptMs(), 1000);
}

TEST_F(DiskTrendsTest, NullInTheNewRowEndsTheTrendsThere) {
  struct Case {
    std::string column;
    std::string wanted;
  };
  const Case cases[] = {{"UsedProc", "a number"}, {"RecNo", "a number"}, {"StorDescr", "a text"}};
  for (const Case& row : cases) {
    house.ForgetEvents();
    EmptyDays();
    AddDisk("1", "40", "35", "20");
    AddDayRow(kDay, {{row.column, "NULL"}});
    AddDisk("3", "40", "35", "20");
    EXPECT_EQ(FixTrends(), (Lines{"5|20", "77|88", "77|88"})) << row.column;
    EXPECT_EQ(house.Events(), Lines{"1\tmodImport_DiskFixTrendValues\tfield " + row.column +
                                    " holds null and not " + row.wanted});
  }
}

TEST_F(DiskTrendsTest, RowThatFailsAtItsSecondTrendKeepsBothOfTheProduct) {
  ForgetDay(kRow14);
  AddDayRow(kDay, {{"UsedProc", "NULL"}});
  EXPECT_EQ(FixTrends(), kOfTheProduct);
  ExpectFailure("modImport_DiskFixTrendValues", "UsedProc");
}

TEST_F(DiskTrendsTest, NullInTheNewRowDoesNotMatterWhereNothingIsCompared) {
  ForgetDay(kRow14);
  ForgetDay(kRow30);
  AddDayRow(kDay, {{"UsedProc", "NULL"}});
  AddDayRow(kDay, {{"RecNo", "NULL"}, {"StorDescr", "NULL"}});
  EXPECT_EQ(FixTrends(), (Lines{"0|0", "0|0"}));
  ExpectNoEvent();
}

TEST_F(DiskTrendsTest, NothingIsLockedWhileAFailureIsReported) {
  AddDisk("1", "40", "35", "20");
  AddDayRow(kDay, {{"UsedProc", "NULL"}});
  VisitNextWait("SELECT Trend14d FROM " + kDay);
  FixTrends();
  EXPECT_EQ(seenInWait, (Lines{"5", "77"}));
  EXPECT_TRUE(OtherProgramWrote());
}

TEST_F(DiskTrendsTest, MissingTableIsAFailure) {
  AddDisk("900", "40", "35", "20");
  RenameInControl(kDay, "Disk_Day99");
  EXPECT_EQ(FixTrends(), kOfTheProduct);
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodImport_DiskFixTrendValues\tHistory.mdb: no such table: Disk_Day99"});
  house.ForgetEvents();
  HistorySql("DROP TABLE Disk_HistCtrl");
  EXPECT_EQ(FixTrends(), kOfTheProduct);
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodImport_DiskFixTrendValues\tHistory.mdb: no such table: Disk_HistCtrl"});
}

TEST_F(DiskTrendsTest, NullTableNameOfATargetIsAFailure) {
  for (const int row : {kRow, kRow14, kRow30}) {
    house.ForgetEvents();
    const Lines names = History("SELECT HistTable FROM Disk_HistCtrl ORDER BY rowid");
    const std::string name = names.at(static_cast<std::size_t>(row - 1));
    HistorySql("UPDATE Disk_HistCtrl SET HistTable = NULL WHERE HistTable = '" + name + "'");
    FixTrends();
    EXPECT_EQ(house.Events(), Lines{"1\tmodImport_DiskFixTrendValues\t"
                                    "field HistTable holds null and not a text"});
    HistorySql("UPDATE Disk_HistCtrl SET HistTable = '" + name + "' WHERE HistTable IS NULL");
  }
}

TEST_F(DiskTrendsTest, FirstImportOfASystemFindsNothingToCompare) {
  for (const int row : {kRow, kRow14, kRow30}) ForgetDay(row);
  AddStorage();
  DiskStatsToHist(house.imports);
  EXPECT_EQ(Trends(), kOfTheProduct);
  EXPECT_EQ(FixTrends(), Lines{"0|0"});
  ExpectNoEvent();
}

}  // namespace
}  // namespace quillon
