// The hourly pass with the real import behind it: on which pass of a day it imports, and what
// follows. The pass itself is in hourly_pass_test.
#include <gtest/gtest.h>

#include "import/import.h"
#include "import/report_marks.h"
#include "service/hourly_pass.h"
#include "support/refusal.h"
#include "support/report_rows.h"
#include "support/service_house.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;
using std::chrono::minutes;

// At the hour of three, which has had its pass, with statistics of 2024-05-02 that no report has
// ended yet.
class HourlyPassImportTest : public testing::Test {
 protected:
  HourlyPassImportTest() {
    house.installation.Sql("Reports.mdb", InsertPort() + InsertStorage());
    house.jobs.Import = [this](bool& done) {
      house.jobCalls.emplace_back("Import");
      Import(house.imports, done);
    };
    house.service.LastHour = 3;
  }

  // The management product ends its report at that moment.
  void ReportAt(const std::string& moment) {
    house.clock.Set(moment);
    UpdateHistory_Db(house.imports, 3);
  }
  // The jobs' calls of a pass at that moment.
  Lines PassAt(const std::string& moment) {
    house.clock.Set(moment);
    house.jobCalls.clear();
    HourlyPass(house.service);
    return house.jobCalls;
  }

  Lines History(const std::string& select) const {
    return house.installation.Select("History.mdb", select);
  }
  // Each import adds two rows of sums, whatever else it finds.
  std::size_t Imports() const { return History("SELECT * FROM VLAN_HistSum").size() / 2; }

  const Lines kNothing = {"Import"};
  const Lines kAllJobs = {"Import", "AutoCreate", "MailReports"};

  ServiceHouse house;
};

TEST_F(HourlyPassImportTest, FirstPassBehindTheReportImportsAndPagesAndMailsFollow) {
  EXPECT_EQ(PassAt("2024-05-02 04:00:20"), kNothing);
  EXPECT_EQ(Imports(), 0u);
  ReportAt("2024-05-02 04:10:00");
  EXPECT_EQ(PassAt("2024-05-02 04:30:20"), Lines{});
  EXPECT_EQ(PassAt("2024-05-02 05:00:20"), kAllJobs);
  EXPECT_EQ(Imports(), 1u);
  EXPECT_EQ(History("SELECT LastImport FROM General_Info"), Lines{"2024-05-02 05:00:20"});
  EXPECT_EQ(History("SELECT RecNo, IfIndex FROM VLAN_Day01"), Lines{"7|1"});
  EXPECT_EQ(History("SELECT RecNo, StorDescr FROM Disk_Day01"), Lines{"900|C:"});
  EXPECT_EQ(house.Events(), Lines{});
}

TEST_F(HourlyPassImportTest, DayIsImportedOnceOverAllItsPasses) {
  ReportAt("2024-05-02 03:10:00");
  EXPECT_EQ(PassAt("2024-05-02 04:00:20"), kAllJobs);
  for (int hour = 5; hour < 24; ++hour) {
    const std::string text = (hour < 10 ? "0" : "") + std::to_string(hour);
    EXPECT_EQ(PassAt("2024-05-02 " + text + ":00:20"), kNothing) << hour;
  }
  EXPECT_EQ(PassAt("2024-05-03 00:00:20"), kNothing);
  EXPECT_EQ(Imports(), 1u);
}

TEST_F(HourlyPassImportTest, ReportOfTheNextDayIsImportedToo) {
  ReportAt("2024-05-02 03:10:00");
  EXPECT_EQ(PassAt("2024-05-02 04:00:20"), kAllJobs);
  EXPECT_EQ(PassAt("2024-05-03 03:00:20"), kNothing);
  ReportAt("2024-05-03 03:10:00");
  EXPECT_EQ(PassAt("2024-05-03 04:00:20"), kAllJobs);
  EXPECT_EQ(Imports(), 2u);
}

TEST_F(HourlyPassImportTest, ReportOfTheLateEveningIsImportedByTheLastPassOfTheDay) {
  EXPECT_EQ(PassAt("2024-05-02 22:00:20"), kNothing);
  ReportAt("2024-05-02 22:40:00");
  EXPECT_EQ(PassAt("2024-05-02 23:00:20"), kAllJobs);
  EXPECT_EQ(History("SELECT TrafficDate FROM VLAN_HistCtrl LIMIT 1"), Lines{"2024-05-02 00:00:20"});
}

TEST_F(HourlyPassImportTest, ReportBehindTheLastPassOfTheDayIsNeverImported) {
  EXPECT_EQ(PassAt("2024-05-02 23:00:20"), kNothing);
  ReportAt("2024-05-02 23:10:00");
  EXPECT_EQ(PassAt("2024-05-03 00:00:20"), kNothing);
  EXPECT_EQ(PassAt("2024-05-03 01:00:20"), kNothing);
  EXPECT_EQ(Imports(), 0u);
}

TEST_F(HourlyPassImportTest, EveryPassBringsThePeriodUpToDate) {
  house.installation.Sql("History.mdb", "UPDATE General_Info SET ReportStart = 'of before'");
  EXPECT_EQ(PassAt("2024-05-02 04:00:20"), kNothing);
  EXPECT_EQ(house.period.ReportStart, "of before");
  ReportAt("2024-05-02 04:10:00");
  EXPECT_EQ(house.period.ReportStart, "of before");
  PassAt("2024-05-02 05:00:20");
  EXPECT_EQ(house.period.ReportStart, "2024-05-01&nbsp;&nbsp03:00");
  EXPECT_EQ(house.period.ReportEnd, "2024-05-02&nbsp;&nbsp03:00");
}

TEST_F(HourlyPassImportTest, PagesAndMailsFindTheDayImported) {
  Lines marks;
  const auto note = [&] { marks.push_back(History("SELECT LastImport FROM General_Info")[0]); };
  house.jobs.AutoCreate = note;
  house.jobs.MailReports = note;
  ReportAt("2024-05-02 03:10:00");
  PassAt("2024-05-02 04:00:20");
  EXPECT_EQ(marks, (Lines{"2024-05-02 04:00:20", "2024-05-02 04:00:20"}));
}

TEST_F(HourlyPassImportTest, DebugModeOfThisPassHoldsForItsImport) {
  house.SetGeneral("DebugMode", "1");
  ReportAt("2024-05-02 03:10:00");
  PassAt("2024-05-02 04:00:20");
  EXPECT_TRUE(house.installation.Exists("Debug/WebSqlFixTrend.txt"));
}

TEST_F(HourlyPassImportTest, StepThatFailsKeepsNeitherPagesNorMailsBack) {
  house.installation.Sql("Reports.mdb", "DROP TABLE HostDiskInfo");
  ReportAt("2024-05-02 03:10:00");
  EXPECT_EQ(PassAt("2024-05-02 04:00:20"), kAllJobs);
  EXPECT_EQ(house.Events().size(), 1u);
  EXPECT_EQ(PassAt("2024-05-02 05:00:20"), kNothing);
  EXPECT_EQ(house.Events().size(), 1u);
}

TEST_F(HourlyPassImportTest, MarkThatCannotBeWrittenLeavesPagesAndMailsToTheNextPass) {
  ReportAt("2024-05-02 03:10:00");
  house.installation.Sql("History.mdb", Refusal("UPDATE", "General_Info"));
  EXPECT_EQ(PassAt("2024-05-02 04:00:20"), kNothing);
  EXPECT_EQ(Imports(), 1u);
  house.installation.Sql("History.mdb", EndOfRefusal("UPDATE", "General_Info"));
  EXPECT_EQ(PassAt("2024-05-02 04:00:50"), Lines{});
  EXPECT_EQ(PassAt("2024-05-02 05:00:20"), kAllJobs);
  EXPECT_EQ(Imports(), 2u);
  EXPECT_EQ(PassAt("2024-05-02 06:00:20"), kNothing);
}

TEST_F(HourlyPassImportTest, TickInsideAnImportsPauseIsDropped) {
  ReportAt("2024-05-02 03:10:00");
  house.loop.Post([&] {
    house.jobCalls.emplace_back("tick");
    EXPECT_TRUE(house.service.jobRunning);
    HourlyPass(house.service);
    house.jobCalls.emplace_back("tick over");
  });
  EXPECT_EQ(PassAt("2024-05-02 04:00:20"),
            (Lines{"Import", "tick", "tick over", "AutoCreate", "MailReports"}));
  EXPECT_EQ(Imports(), 1u);
  EXPECT_FALSE(house.service.jobRunning);
}

TEST_F(HourlyPassImportTest, TickOfTheNextHourInsideAnImportsPauseIsDroppedToo) {
  ReportAt("2024-05-02 03:10:00");
  house.loop.Post([&] {
    house.clock.Advance(minutes(60));
    HourlyPass(house.service);
    EXPECT_EQ(house.service.LastHour, 3);
  });
  EXPECT_EQ(PassAt("2024-05-02 04:30:20"), kAllJobs);
  EXPECT_EQ(house.service.LastHour, 5);
  EXPECT_EQ(Imports(), 1u);
  EXPECT_EQ(PassAt("2024-05-02 05:31:00"), Lines{});
  EXPECT_EQ(PassAt("2024-05-02 06:00:20"), kNothing);
}

TEST_F(HourlyPassImportTest, TickInsideTheEventOfAFailedStepIsDropped) {
  house.installation.Sql("History.mdb", "DROP TABLE VLAN_Day01");
  ReportAt("2024-05-02 03:10:00");
  house.loop.Post([&] { HourlyPass(house.service); });
  EXPECT_EQ(PassAt("2024-05-02 04:00:20"), kAllJobs);
  EXPECT_EQ(Imports(), 1u);
  EXPECT_EQ(house.Events().size(), 2u);
}

TEST_F(HourlyPassImportTest, OperatorsImportOfTheDayLeavesNothingToThePasses) {
  house.service.jobRunning = true;  // as while the button's work runs
  ReportAt("2024-05-02 03:10:00");
  bool result = false;
  Import(house.imports, result);
  EXPECT_TRUE(result);
  EXPECT_EQ(PassAt("2024-05-02 04:00:20"), Lines{});
  house.service.jobRunning = false;
  EXPECT_EQ(PassAt("2024-05-02 04:00:50"), kNothing);
  EXPECT_EQ(Imports(), 1u);
}

TEST_F(HourlyPassImportTest, MissingMarksAreToldAnewByEachPass) {
  house.installation.Sql("History.mdb", "DROP TABLE General_Info");
  EXPECT_EQ(PassAt("2024-05-02 04:00:20"), kNothing);
  EXPECT_EQ(PassAt("2024-05-02 05:00:20"), kNothing);
  EXPECT_EQ(house.Events().size(), 2u);
}

}  // namespace
}  // namespace quillon
