// The marks that stand in for the management product's: display texts by pattern, day and hour,
// and the operator's button, which imports behind them.
#include "import/report_marks.h"

#include "import/night_fixture.h"
#include "support/refusal.h"

namespace quillon {
namespace {

class ReportMarksTest : public ImportNightTest {
 protected:
  ReportMarksTest() {
    SetMark("LastReport", "'2000-01-01 00:00:00'");
    SetMark("ReportStart", "'before'");
    SetMark("ReportEnd", "'before'");
  }

  // "<LastReport>|<ReportStart>|<ReportEnd>" as they are stored.
  std::string Marks() const {
    return History("SELECT LastReport, ReportStart, ReportEnd FROM General_Info")[0];
  }
};

TEST_F(ReportMarksTest, DatesAreInTheDisplayPattern) {
  struct Case {
    const char* pattern;
    const char* texts;
  };
  const Case cases[] = {
      {"YYYY-MM-DD", "2024-05-01&nbsp;&nbsp03:00|2024-05-02&nbsp;&nbsp03:00"},
      {"MM/DD/YYYY", "05/01/2024&nbsp;&nbsp03:00|05/02/2024&nbsp;&nbsp03:00"},
      {"DD/MM/YYYY", "01/05/2024&nbsp;&nbsp03:00|02/05/2024&nbsp;&nbsp03:00"},
  };
  for (const Case& row : cases) {
    house.settings.DatumFormat = row.pattern;
    UpdateHistory_Db(house.imports, 3);
    EXPECT_EQ(Marks(), std::string("2024-05-02 12:00:00|") + row.texts) << row.pattern;
  }
  ExpectNoEvent();
}

TEST_F(ReportMarksTest, HourHasTwoDigits) {
  struct Case {
    std::int16_t hour;
    const char* text;
  };
  const Case cases[] = {{0, "00:00"},  {3, "03:00"},  {9, "09:00"},
                        {10, "10:00"}, {12, "12:00"}, {23, "23:00"}};
  for (const Case& row : cases) {
    UpdateHistory_Db(house.imports, row.hour);
    EXPECT_EQ(Mark("ReportStart"), std::string("2024-05-01&nbsp;&nbsp") + row.text);
    EXPECT_EQ(Mark("ReportEnd"), std::string("2024-05-02&nbsp;&nbsp") + row.text);
  }
}

TEST_F(ReportMarksTest, PeriodStartsOnTheDayOfTwentyThreeHoursAgo) {
  struct Case {
    const char* now;
    const char* start;
    const char* end;
  };
  const Case cases[] = {
      {"2024-05-02 00:00:00", "2024-05-01", "2024-05-02"},
      {"2024-05-02 22:59:59", "2024-05-01", "2024-05-02"},
      {"2024-05-02 23:00:00", "2024-05-02", "2024-05-02"},
      {"2024-05-02 23:59:59", "2024-05-02", "2024-05-02"},
      {"2024-05-01 03:10:00", "2024-04-30", "2024-05-01"},
      {"2024-03-01 03:10:00", "2024-02-29", "2024-03-01"},
      {"2023-03-01 03:10:00", "2023-02-28", "2023-03-01"},
      {"2024-01-01 03:10:00", "2023-12-31", "2024-01-01"},
  };
  for (const Case& row : cases) {
    house.clock.Set(row.now);
    UpdateHistory_Db(house.imports, 3);
    EXPECT_EQ(Marks(), std::string(row.now) + "|" + row.start + "&nbsp;&nbsp03:00|" + row.end +
                           "&nbsp;&nbsp03:00");
  }
}

TEST_F(ReportMarksTest, ReplayedDayIsTheDayOfTheMarks) {
  OverrideReportDate("2014-11-07");
  UpdateHistory_Db(house.imports, 3);
  EXPECT_EQ(Marks(), "2014-11-07 00:00:00|2014-11-06&nbsp;&nbsp03:00|2014-11-07&nbsp;&nbsp03:00");
}

TEST_F(ReportMarksTest, MarkOfTheImportAndThePeriodOfThePagesStayAsTheyWere) {
  house.period = {"start of before", "end of before"};
  UpdateHistory_Db(house.imports, 3);
  EXPECT_EQ(Mark("LastImport"), "2024-05-01 04:00:00");
  EXPECT_EQ(house.period.ReportStart, "start of before");
  EXPECT_EQ(house.period.ReportEnd, "end of before");
  EXPECT_EQ(SleptMs(), 0);
}

TEST_F(ReportMarksTest, NullMarksAreWrittenOver) {
  for (const char* field : {"LastReport", "ReportStart", "ReportEnd"}) SetMark(field, "NULL");
  UpdateHistory_Db(house.imports, 3);
  EXPECT_EQ(Marks(), "2024-05-02 12:00:00|2024-05-01&nbsp;&nbsp03:00|2024-05-02&nbsp;&nbsp03:00");
  ExpectNoEvent();
}

TEST_F(ReportMarksTest, MissingTableIsAFailureOfTheProductsModule) {
  HistorySql("DROP TABLE General_Info");
  UpdateHistory_Db(house.imports, 3);
  ExpectFailure("modClientRep_UpdateHistory_Db", "General_Info");
}

TEST_F(ReportMarksTest, TableWithoutARowIsAFailure) {
  HistorySql("DELETE FROM General_Info");
  UpdateHistory_Db(house.imports, 3);
  ExpectFailure("modClientRep_UpdateHistory_Db", "no current row");
  EXPECT_EQ(History("SELECT * FROM General_Info"), Lines{});
}

TEST_F(ReportMarksTest, MissingFileIsAFailureAndNoneIsMade) {
  house.installation.Remove("History.mdb");
  UpdateHistory_Db(house.imports, 3);
  ExpectFailure("modClientRep_UpdateHistory_Db", "History.mdb");
  EXPECT_FALSE(house.installation.Exists("History.mdb"));
}

TEST_F(ReportMarksTest, MarksThatCannotBeWrittenStayAsTheyWere) {
  HistorySql(Refusal("UPDATE", "General_Info"));
  UpdateHistory_Db(house.imports, 3);
  ExpectFailure("modClientRep_UpdateHistory_Db", "refused");
  EXPECT_EQ(Marks(), "2000-01-01 00:00:00|before|before");
}

TEST_F(ReportMarksTest, SecondPressOfADayRenewsTheMarksAndImportsNothing) {
  AddPort();
  UpdateHistory_Db(house.imports, 3);
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(house.period.ReportStart, "2024-05-01&nbsp;&nbsp03:00");
  const Lines imported = DayTables();

  house.clock.Set("2024-05-02 15:30:00");
  house.settings.DatumFormat = "DD/MM/YYYY";
  UpdateHistory_Db(house.imports, 3);
  EXPECT_FALSE(RunImport());
  EXPECT_EQ(Marks(), "2024-05-02 15:30:00|01/05/2024&nbsp;&nbsp03:00|02/05/2024&nbsp;&nbsp03:00");
  EXPECT_EQ(Mark("LastImport"), "2024-05-02 12:00:00");
  EXPECT_EQ(house.period.ReportStart, "01/05/2024&nbsp;&nbsp03:00");
  EXPECT_EQ(house.period.ReportEnd, "02/05/2024&nbsp;&nbsp03:00");
  EXPECT_EQ(DayTables(), imported);
  EXPECT_EQ(History("SELECT COUNT(*) FROM VLAN_HistSum"), Lines{"2"});
  ExpectNoEvent();
}

}  // namespace
}  // namespace quillon
