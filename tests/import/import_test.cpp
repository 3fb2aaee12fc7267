// The daily import: when it is due, the order of its steps, its marks and its result. Steps that
// fail are in import_failures_test, long runs in many_days_test.
#include "import/import.h"

#include "import/night_fixture.h"
#include "support/refusal.h"

namespace quillon {
namespace {

using std::chrono::minutes;

TEST_F(ImportNightTest, IsDueWhereTheReportIsOfTodayAndTheLastImportIsNot) {
  struct Case {
    const char* lastReport;
    const char* lastImport;
    bool isDue;
  };
  const Case cases[] = {
      {"'2024-05-02 03:10:00'", "'2024-05-01 04:00:00'", true},
      {"'2024-05-02 00:00:00'", "'2024-05-01 23:59:59'", true},
      {"'2024-05-02 23:59:59'", "'2000-01-01 00:00:00'", true},
      {"'2024-05-02'", "'2024-05-01'", true},
      {"'2024-05-02 03:10:00'", "'2023-05-02 04:00:00'", true},
      {"'2024-05-02 03:10:00'", "'2024-04-02 04:00:00'", true},
      {"'2024-05-02 03:10:00'", "'2024-05-03 04:00:00'", true},  // the clock was put back
      {"'2024-05-02 03:10:00'", "'2024-05-02 00:00:00'", false},
      {"'2024-05-02 03:10:00'", "'2024-05-02 23:59:59'", false},
      {"'2024-05-02 03:10:00'", "'2024-05-02'", false},
      {"'2024-05-01 23:59:59'", "'2024-04-30 04:00:00'", false},
      {"'2024-05-01 03:10:00'", "'2024-05-01 04:00:00'", false},
      {"'2024-05-01 03:10:00'", "'2024-05-02 04:00:00'", false},
      {"'2024-05-03 00:00:00'", "'2024-05-01 04:00:00'", false},
      {"'2023-05-02 03:10:00'", "'2024-05-01 04:00:00'", false},
      {"'2000-01-01 00:00:00'", "'2000-01-01 00:00:00'", false},
      {"NULL", "'2024-05-01 04:00:00'", false},
      {"'2024-05-02 03:10:00'", "NULL", false},
      {"NULL", "NULL", false},
      // A mark that is no date leaves it unknown whether the day is done.
      {"'soon'", "'2024-05-01 04:00:00'", false},
      {"''", "'2024-05-01 04:00:00'", false},
      {"'2024-05-32 03:10:00'", "'2024-05-01 04:00:00'", false},
      {"45414.5", "'2024-05-01 04:00:00'", false},
      {"'2024-05-02 03:10:00'", "'never'", false},
      {"'2024-05-02 03:10:00'", "''", false},
      {"'2024-05-02 03:10:00'", "45413.5", false},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(std::string(row.lastReport) + " and " + row.lastImport);
    house.clock.Set("2024-05-02 12:00:00");
    SetMark("LastReport", row.lastReport);
    SetMark("LastImport", row.lastImport);
    HistorySql("DELETE FROM VLAN_HistSum");
    const std::string before = Mark("quote(LastImport)");
    EXPECT_EQ(RunImport(), row.isDue);
    EXPECT_EQ(Mark("quote(LastImport)"), row.isDue ? "'2024-05-02 12:00:00'" : before);
    EXPECT_EQ(History("SELECT COUNT(*) FROM VLAN_HistSum"), Lines{row.isDue ? "2" : "0"});
  }
  ExpectNoEvent();
}

TEST_F(ImportNightTest, WholeDayIsTakenOver) {
  AddPort();
  AddPort({{"IfIndex", "2"}, {"IsTrunk", "TRUE"}, {"InHCOctetsMb24H", "50"}});
  AddStorage();
  AddStorage({{"StorDescr", "'Physical'"}, {"FreeRawM", "30"}, {"UsedRawM", "10"}});
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(History("SELECT * FROM VLAN_Day01"),
            (Lines{"7|1|1|0|3|2|5|4|0", "7|2|1|0|3|2|50|4|1"}));
  EXPECT_EQ(History("SELECT * FROM VLAN_HistCtrl WHERE TrafficDate > '2000-01-02'"),
            Lines{"2024-05-01 13:00:00|VLAN_Day01"});
  EXPECT_EQ(
      History("SELECT * FROM VLAN_HistSum"),
      (Lines{"2024-05-01 12:00:00|0|1|0|3|2|5|4|1|1", "2024-05-01 12:00:00|1|1|0|3|2|50|4|1|1"}));
  EXPECT_EQ(History("SELECT * FROM Disk_Day01"),
            (Lines{"900|Files|C:|30|100|40|60|40|0|0", "900|Files|Physical|10|40|10|30|40|0|0"}));
  EXPECT_EQ(History("SELECT * FROM Disk_HistCtrl WHERE StorageDate > '2000-01-02'"),
            Lines{"2024-05-01 13:00:00|Disk_Day01"});
  EXPECT_EQ(History("SELECT * FROM Disk_HistSum"),
            Lines{"2024-05-01 12:00:00|100|40|0|0|40|10|0|0|1|0|1|0"});
  EXPECT_EQ(History("SELECT * FROM General_Info"),
            Lines{"2024-05-02 03:10:00|2024-05-02 12:00:00||"});
  ExpectNoEvent();
}

TEST_F(ImportNightTest, EmptyReportsAreADayOfZeros) {
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(DayTables(), Lines{});
  EXPECT_EQ(
      History("SELECT * FROM VLAN_HistSum"),
      (Lines{"2024-05-01 12:00:00|0|0|0|0|0|0|0|0|0", "2024-05-01 12:00:00|1|0|0|0|0|0|0|0|0"}));
  EXPECT_EQ(History("SELECT * FROM Disk_HistSum"),
            Lines{"2024-05-01 12:00:00|0|0|0|0|0|0|0|0|0|0|0|0"});
  EXPECT_EQ(History("SELECT HistTable FROM VLAN_HistCtrl WHERE TrafficDate > '2000-01-02'"),
            Lines{"VLAN_Day01"});
  EXPECT_EQ(History("SELECT HistTable FROM Disk_HistCtrl WHERE StorageDate > '2000-01-02'"),
            Lines{"Disk_Day01"});
  ExpectNoEvent();
}

// Triggers note each change of the history as it comes.
TEST_F(ImportNightTest, StepsRunInTheirOrderAndTheMarkComesLast) {
  struct Change {
    const char* event;
    const char* step;
  };
  const Change changes[] = {
      {"DELETE ON VLAN_Day01", "'switch table cleared'"},
      {"INSERT ON VLAN_Day01", "'switch table filled'"},
      {"UPDATE ON VLAN_HistCtrl", "'switch row stamped'"},
      {"DELETE ON VLAN_HistSum", "'switch sums trimmed'"},
      {"INSERT ON VLAN_HistSum",
       "CASE NEW.IsTrunk WHEN 0 THEN 'access sums' ELSE 'trunk sums' END"},
      {"DELETE ON Disk_Day01", "'disk table cleared'"},
      {"INSERT ON Disk_Day01", "'disk table filled'"},
      {"UPDATE ON Disk_HistCtrl", "'disk row stamped'"},
      {"UPDATE ON Disk_Day01", "'trends'"},
      {"DELETE ON Disk_HistSum", "'disk sums trimmed'"},
      {"INSERT ON Disk_HistSum", "'disk sums'"},
      {"UPDATE ON General_Info", "'mark'"},
  };
  AddPort();
  AddStorage();
  HistorySql(
      "INSERT INTO VLAN_Day01 (RecNo) VALUES (1); INSERT INTO Disk_Day01 (RecNo) VALUES (1);"
      "INSERT INTO VLAN_HistSum (TrafficDate) VALUES ('2000-01-01 00:00:00');"
      "INSERT INTO Disk_HistSum (StorageDate) VALUES ('2000-01-01 00:00:00');"
      "CREATE TABLE Steps (Step TEXT)");
  int number = 0;
  for (const Change& change : changes) {
    HistorySql("CREATE TRIGGER Note" + std::to_string(++number) + " AFTER " + change.event +
               " BEGIN INSERT INTO Steps VALUES (" + change.step + "); END");
  }
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(History("SELECT Step FROM Steps ORDER BY rowid"),
            (Lines{"switch table cleared", "switch table filled", "switch row stamped",
                   "switch sums trimmed", "access sums", "trunk sums", "disk table cleared",
                   "disk table filled", "disk row stamped", "trends", "disk sums trimmed",
                   "disk sums", "mark"}));
  ExpectNoEvent();
}

TEST_F(ImportNightTest, ResultIsFalseUnlessTheImportRanToItsEnd) {
  bool result = true;
  SetMark("LastReport", "'2024-05-01 03:10:00'");
  Import(house.imports, result);
  EXPECT_FALSE(result);

  result = true;
  SetMark("ReportStart", "NULL");
  Import(house.imports, result);
  EXPECT_FALSE(result);
}

TEST_F(ImportNightTest, ResultIsFalseWhileTheImportRuns) {
  bool result = true;
  bool inThePause = true;
  house.loop.Post([&] { inThePause = result; });
  Import(house.imports, result);
  EXPECT_FALSE(inThePause);
  EXPECT_TRUE(result);
}

TEST_F(ImportNightTest, SecondPassOfTheDayDoesNothing) {
  AddPort();
  AddStorage();
  EXPECT_TRUE(RunImport());
  const Lines imported = WholeHistory();
  const std::int64_t slept = SleptMs();
  for (const char* later : {"2024-05-02 12:00:01", "2024-05-02 13:00:20", "2024-05-02 23:59:59"}) {
    house.clock.Set(later);
    EXPECT_FALSE(RunImport());
    EXPECT_EQ(WholeHistory(), imported) << later;
  }
  EXPECT_EQ(SleptMs(), slept);
  ExpectNoEvent();
}

TEST_F(ImportNightTest, PeriodIsCopiedWhetherAnImportIsDueOrNot) {
  SetMark("ReportStart", "'2024-05-01&nbsp;&nbsp03:00'");
  SetMark("ReportEnd", "'2024-05-02&nbsp;&nbsp03:00'");
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(house.period.ReportStart, "2024-05-01&nbsp;&nbsp03:00");
  EXPECT_EQ(house.period.ReportEnd, "2024-05-02&nbsp;&nbsp03:00");

  SetMark("ReportStart", "' any text '");
  SetMark("ReportEnd", "''");
  EXPECT_FALSE(RunImport());
  EXPECT_EQ(house.period.ReportStart, " any text ");
  EXPECT_EQ(house.period.ReportEnd, "");
}

TEST_F(ImportNightTest, PeriodIsCopiedWhereAMarkIsNull) {
  SetMark("LastReport", "NULL");
  SetMark("ReportStart", "'start'");
  SetMark("ReportEnd", "'end'");
  EXPECT_FALSE(RunImport());
  EXPECT_EQ(house.period.ReportStart, "start");
  EXPECT_EQ(house.period.ReportEnd, "end");
}

TEST_F(ImportNightTest, PeriodIsInTheCharsetOfThePages) {
  struct Case {
    const char* charSet;
    const char* text;
  };
  const Case cases[] = {
      {"ISO-8859-1", "M\xE4rz ?"},
      {"ISO-8859-15", "M\xE4rz \xA4"},
      {"windows-1252", "M\xE4rz \x80"},
      {"UTF-8", "M\xC3\xA4rz \xE2\x82\xAC"},
  };
  SetMark("ReportStart", "'M\xC3\xA4rz \xE2\x82\xAC'");
  SetMark("ReportEnd", "'bis M\xC3\xA4rz \xE2\x82\xAC'");
  for (const Case& row : cases) {
    house.settings.CharSet = row.charSet;
    RunImport();
    EXPECT_EQ(house.period.ReportStart, row.text) << row.charSet;
    EXPECT_EQ(house.period.ReportEnd, std::string("bis ") + row.text) << row.charSet;
  }
  EXPECT_EQ(Mark("ReportStart"), "M\xC3\xA4rz \xE2\x82\xAC");
}

TEST_F(ImportNightTest, NullStartOfThePeriodEndsThePass) {
  AddPort();
  SetMark("ReportStart", "NULL");
  SetMark("ReportEnd", "'new end'");
  house.period = {"old start", "old end"};
  const Lines before = WholeHistory();
  EXPECT_FALSE(RunImport());
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodImport_Import\tfield ReportStart holds null and not a text"});
  EXPECT_EQ(house.period.ReportStart, "old start");
  EXPECT_EQ(house.period.ReportEnd, "old end");
  EXPECT_EQ(WholeHistory(), before);
}

TEST_F(ImportNightTest, NullEndOfThePeriodEndsThePassBehindTheStart) {
  AddPort();
  SetMark("ReportStart", "'new start'");
  SetMark("ReportEnd", "NULL");
  house.period = {"old start", "old end"};
  const Lines before = WholeHistory();
  EXPECT_FALSE(RunImport());
  EXPECT_EQ(house.Events(),
            Lines{"1\tmodImport_Import\tfield ReportEnd holds null and not a text"});
  EXPECT_EQ(house.period.ReportStart, "new start");
  EXPECT_EQ(house.period.ReportEnd, "old end");
  EXPECT_EQ(WholeHistory(), before);
}

TEST_F(ImportNightTest, NullPeriodIsAFailureWhereNothingIsDueToo) {
  SetMark("LastReport", "'2024-05-01 03:10:00'");
  SetMark("ReportEnd", "NULL");
  EXPECT_FALSE(RunImport());
  ExpectFailure("modImport_Import", "ReportEnd");
}

TEST_F(ImportNightTest, MissingMarksAreAFailure) {
  HistorySql("DROP TABLE General_Info");
  EXPECT_FALSE(RunImport());
  ExpectFailure("modImport_Import", "General_Info");
  EXPECT_EQ(History("SELECT COUNT(*) FROM VLAN_HistSum"), Lines{"0"});
}

TEST_F(ImportNightTest, MarksWithoutARowAreAFailure) {
  HistorySql("DELETE FROM General_Info");
  EXPECT_FALSE(RunImport());
  ExpectFailure("modImport_Import", "no current row");
  EXPECT_EQ(History("SELECT COUNT(*) FROM VLAN_HistSum"), Lines{"0"});
}

TEST_F(ImportNightTest, MissingHistoryIsAFailureAndNoneIsMade) {
  house.installation.Remove("History.mdb");
  EXPECT_FALSE(RunImport());
  ExpectFailure("modImport_Import", "History.mdb");
  EXPECT_FALSE(house.installation.Exists("History.mdb"));
}

TEST_F(ImportNightTest, MarkIsTheMomentAtWhichTheImportEnds) {
  std::string inThePause;
  house.loop.Post([&] {
    inThePause = Mark("LastImport");
    house.clock.Advance(minutes(90));
  });
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(inThePause, "2024-05-01 04:00:00");
  EXPECT_EQ(Mark("LastImport"), "2024-05-02 13:30:00");
  EXPECT_EQ(Mark("LastReport"), "2024-05-02 03:10:00");
}

TEST_F(ImportNightTest, ImportThatRunsPastMidnightIsMarkedWithTheNewDay) {
  house.clock.Set("2024-05-02 23:30:00");
  house.loop.Post([&] { house.clock.Advance(minutes(60)); });
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(Mark("LastImport"), "2024-05-03 00:30:00");
}

TEST_F(ImportNightTest, MarksThatTheProductWritesMeanwhileStay) {
  SetMark("ReportStart", "'of this report'");
  house.loop.Post([&] {
    SetMark("LastReport", "'2024-05-02 12:00:07'");
    SetMark("ReportStart", "'of the next report'");
  });
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(History("SELECT LastReport, LastImport, ReportStart FROM General_Info"),
            Lines{"2024-05-02 12:00:07|2024-05-02 12:00:00|of the next report"});
  EXPECT_EQ(house.period.ReportStart, "of this report");
  ExpectNoEvent();
}

TEST_F(ImportNightTest, ReplayedDayIsTheDayOfTheImport) {
  AddPort({{"InOctetsDate", "'2014-11-07 03:10:00'"}, {"LastUpdate", "'2014-11-07 03:10:00'"}});
  AddPort({{"IfIndex", "2"}});
  OverrideReportDate("2014-11-07");
  EXPECT_FALSE(RunImport());
  SetMark("LastReport", "'2014-11-07 03:10:00'");
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(Mark("LastImport"), "2014-11-07 00:00:00");
  EXPECT_EQ(History("SELECT RecNo, IfIndex FROM VLAN_Day01"), Lines{"7|1"});
  EXPECT_EQ(History("SELECT TrafficDate FROM VLAN_HistCtrl WHERE HistTable = 'VLAN_Day01'"),
            Lines{"2014-11-06 01:00:00"});
  EXPECT_EQ(History("SELECT TrafficDate FROM VLAN_HistSum"),
            (Lines{"2014-11-06 00:00:00", "2014-11-06 00:00:00"}));
  EXPECT_FALSE(RunImport());
  ExpectNoEvent();
}

TEST_F(ImportNightTest, DayOfTheHistoryIsThatOfTwentyThreeHoursAgo) {
  struct Case {
    const char* now;
    const char* control;
    const char* sums;
  };
  const Case cases[] = {
      {"2024-05-02 00:30:00", "2024-05-01 01:30:00", "2024-05-01 00:30:00"},
      {"2024-05-03 22:59:00", "2024-05-02 23:59:00", "2024-05-02 22:59:00"},
      {"2024-05-04 23:00:20", "2024-05-04 00:00:20", "2024-05-03 23:00:20"},
      {"2024-05-05 23:58:00", "2024-05-05 00:58:00", "2024-05-04 23:58:00"},
  };
  AddPort();
  AddStorage();
  int row = 0;
  for (const Case& night : cases) {
    SCOPED_TRACE(night.now);
    house.clock.Set(night.now);
    Report();
    EXPECT_TRUE(RunImport());
    const std::string offset = " LIMIT 1 OFFSET " + std::to_string(row++);
    EXPECT_EQ(History("SELECT TrafficDate FROM VLAN_HistCtrl" + offset), Lines{night.control});
    EXPECT_EQ(History("SELECT StorageDate FROM Disk_HistCtrl" + offset), Lines{night.control});
    EXPECT_EQ(History("SELECT DISTINCT TrafficDate FROM VLAN_HistSum WHERE TrafficDate >= '" +
                      std::string(night.sums) + "'"),
              Lines{night.sums});
    EXPECT_EQ(History("SELECT StorageDate, NumWindows FROM Disk_HistSum WHERE StorageDate >= '" +
                      std::string(night.sums) + "'"),
              Lines{night.sums + std::string("|1")});
  }
  ExpectNoEvent();
}

TEST_F(ImportNightTest, DayAfterAnImportOfTheLastHourIsASecondRowOfThatDay) {
  house.clock.Set("2024-05-02 23:00:20");
  Report();
  EXPECT_TRUE(RunImport());
  house.clock.Set("2024-05-03 04:00:20");
  Report();
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(History("SELECT * FROM VLAN_HistCtrl WHERE TrafficDate > '2000-01-02'"),
            (Lines{"2024-05-02 00:00:20|VLAN_Day01", "2024-05-02 05:00:20|VLAN_Day02"}));
}

TEST_F(ImportNightTest, WithoutAFreeTableOnlyTheSwitchSumsAreAdded) {
  AddPort();
  AddStorage();
  HistorySql(
      "UPDATE VLAN_HistCtrl SET TrafficDate = '2024-03-18 13:00:00';"
      "UPDATE Disk_HistCtrl SET StorageDate = '2024-03-18 13:00:00';");
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(DayTables(), Lines{});
  EXPECT_EQ(History("SELECT IsTrunk, Ports FROM VLAN_HistSum"), (Lines{"0|1", "1|0"}));
  EXPECT_EQ(History("SELECT * FROM Disk_HistSum"), Lines{});
  EXPECT_EQ(Mark("LastImport"), "2024-05-02 12:00:00");
  ExpectNoEvent();
}

TEST_F(ImportNightTest, MarkThatCannotBeWrittenLetsTheNextPassImportAgain) {
  AddPort();
  AddStorage();
  HistorySql(Refusal("UPDATE", "General_Info"));
  EXPECT_FALSE(RunImport());
  ExpectFailure("modImport_Import", "refused");
  EXPECT_EQ(Mark("LastImport"), "2024-05-01 04:00:00");
  HistorySql(EndOfRefusal("UPDATE", "General_Info"));

  house.clock.Set("2024-05-02 13:00:20");
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(History("SELECT * FROM VLAN_HistCtrl WHERE TrafficDate > '2000-01-02'"),
            (Lines{"2024-05-01 13:00:00|VLAN_Day01", "2024-05-01 14:00:20|VLAN_Day02"}));
  EXPECT_EQ(History("SELECT * FROM VLAN_Day02"), History("SELECT * FROM VLAN_Day01"));
  EXPECT_EQ(History("SELECT * FROM VLAN_Day01").size(), 1u);
  EXPECT_EQ(History("SELECT * FROM Disk_HistCtrl WHERE StorageDate > '2000-01-02'"),
            (Lines{"2024-05-01 13:00:00|Disk_Day01", "2024-05-01 14:00:20|Disk_Day02"}));
  EXPECT_EQ(History("SELECT TrafficDate, IsTrunk, Ports FROM VLAN_HistSum"),
            (Lines{"2024-05-01 12:00:00|0|1", "2024-05-01 12:00:00|1|0", "2024-05-01 13:00:20|0|1",
                   "2024-05-01 13:00:20|1|0"}));
  EXPECT_EQ(History("SELECT StorageDate, NumWindows FROM Disk_HistSum"),
            (Lines{"2024-05-01 12:00:00|1", "2024-05-01 13:00:20|1"}));

  house.clock.Set("2024-05-02 14:00:20");
  EXPECT_FALSE(RunImport());
  EXPECT_EQ(house.Events().size(), 1u);
}

TEST_F(ImportNightTest, MarksThatGoMeanwhileAreAFailureAtTheEnd) {
  house.loop.Post([&] { HistorySql("DELETE FROM General_Info"); });
  EXPECT_FALSE(RunImport());
  ExpectFailure("modImport_Import", "no current row");
  EXPECT_EQ(History("SELECT COUNT(*) FROM VLAN_HistSum"), Lines{"2"});
  EXPECT_EQ(History("SELECT COUNT(*) FROM Disk_HistSum"), Lines{"1"});
}

// The marks are the only guard of the import itself; the hourly pass is the one who keeps a
// second one out.
TEST_F(ImportNightTest, ImportInsideAPauseRunsToo) {
  bool inside = false;
  house.loop.Post([&] { inside = RunImport(); });
  EXPECT_TRUE(RunImport());
  EXPECT_TRUE(inside);
  EXPECT_EQ(History("SELECT COUNT(*) FROM VLAN_HistSum"), Lines{"4"});
  EXPECT_EQ(History("SELECT COUNT(*) FROM Disk_HistSum"), Lines{"2"});
  ExpectNoEvent();
}

}  // namespace
}  // namespace quillon
