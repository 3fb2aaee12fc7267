// The hourly pass: when it runs, what it calls in which order, and what keeps a second one
// out of it.
#include "service/hourly_pass.h"

#include <gtest/gtest.h>

#include "service/console_requests.h"
#include "support/sanitized.h"
#include "support/scattered_memory.h"
#include "support/service_house.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;

class HourlyPassTest : public testing::Test {
 protected:
  HourlyPassTest() { house.service.LastHour = 11; }

  // The jobs' calls of a pass at that time of the present day.
  Lines PassAt(int hour, int minute, int second = 0) {
    DateTimeParts now = PartsOf(house.clock.Now());
    now.hour = hour;
    now.minute = minute;
    now.second = second;
    house.clock.Set(MakeDateTime(now));
    return Pass();
  }
  Lines Pass() {
    house.jobCalls.clear();
    HourlyPass(house.service);
    return house.jobCalls;
  }

  // Something for each cleaner to take away.
  void SeedOldFiles() const {
    house.installation.Write("Debug/AppEventWeb.txt", kOldEvent);
    house.installation.Write("Debug/WebServices.txt", "of yesterday");
  }
  bool EventsAreAged() const { return house.installation.Read("Debug/AppEventWeb.txt").empty(); }
  bool FolderIsCleared() const { return !house.installation.Exists("Debug/WebServices.txt"); }
  void ExpectCleaned(bool cleaned) const {
    EXPECT_EQ(EventsAreAged(), cleaned);
    EXPECT_EQ(FolderIsCleared(), cleaned);
  }

  static constexpr const char* kOldEvent = "2023-01-01 00:00:00\t3\tm_p\tof last year\r\n";

  ServiceHouse house;
};

TEST_F(HourlyPassTest, GivesBackTheMemoryThatItsWorkNeeded) {
  if (kSanitized) GTEST_SKIP() << "another allocator";
  const ScatteredMemory memory;
  const long before = ScatteredMemory::OfProcess();
  PassAt(12, 0);
  EXPECT_LT(ScatteredMemory::OfProcess(), before - ScatteredMemory::kFreeKilobytes / 2);
}

TEST_F(HourlyPassTest, RunsOnceAnHour) {
  EXPECT_EQ(PassAt(11, 59, 59), Lines{});
  EXPECT_EQ(PassAt(12, 0), Lines{"Import"});
  EXPECT_EQ(house.service.LastHour, 12);
  EXPECT_EQ(PassAt(12, 0, 30), Lines{});
  EXPECT_EQ(PassAt(12, 59, 59), Lines{});
  EXPECT_EQ(PassAt(13, 0, 29), Lines{"Import"});
  EXPECT_EQ(house.service.LastHour, 13);
}

TEST_F(HourlyPassTest, HoursThatWereMissedAreNotMadeUpFor) {
  EXPECT_EQ(PassAt(20, 15), Lines{"Import"});
  EXPECT_EQ(house.service.LastHour, 20);
  EXPECT_EQ(PassAt(20, 16), Lines{});
}

TEST_F(HourlyPassTest, TickOfTheSameHourDoesNothingAtAll) {
  SeedOldFiles();
  house.SetGeneral("DebugMode", "1");
  PassAt(11, 30);
  EXPECT_FALSE(house.settings.DebugMode);
  ExpectCleaned(false);
  EXPECT_EQ(house.clock.slept(), std::chrono::milliseconds(0));
}

TEST_F(HourlyPassTest, WithoutAnImportThereAreNeitherPagesNorMails) {
  EXPECT_EQ(PassAt(12, 0), Lines{"Import"});
}

TEST_F(HourlyPassTest, ImportIsFollowedByPagesAndMails) {
  house.importIsDue = true;
  EXPECT_EQ(PassAt(12, 0), (Lines{"Import", "AutoCreate", "MailReports"}));
}

TEST_F(HourlyPassTest, ImportOfAnEarlierHourDoesNotCount) {
  house.importIsDue = true;
  PassAt(12, 0);
  house.importIsDue = false;
  EXPECT_EQ(PassAt(13, 0), Lines{"Import"});
}

TEST_F(HourlyPassTest, FlagIsDownWhenTheImportIsCalled) {
  bool flagBefore = true;
  house.jobs.Import = [&](bool& done) { flagBefore = done; };
  PassAt(12, 0);
  EXPECT_FALSE(flagBefore);
}

TEST_F(HourlyPassTest, SettingsAreReadBeforeTheImport) {
  house.SetGeneral("DebugMode", "1");
  house.SetGeneral("DatumFormat", "DD/MM/YYYY");
  std::string inTheImport;
  house.jobs.Import = [&](bool&) {
    inTheImport =
        house.settings.DatumFormat + (house.settings.SendAppEvents ? " traps" : " no traps");
    EXPECT_TRUE(house.settings.DebugMode);
  };
  PassAt(12, 0);
  EXPECT_EQ(inTheImport, "DD/MM/YYYY traps");
}

TEST_F(HourlyPassTest, DebugModeOfTheTableTakesEffectAtThePassAndNotBefore) {
  PassAt(12, 0);
  house.SetGeneral("DebugMode", "1");
  for (const int minute : {1, 30, 59}) {
    PassAt(12, minute);
    EXPECT_FALSE(house.settings.DebugMode) << minute;
  }
  PassAt(13, 0);
  EXPECT_TRUE(house.settings.DebugMode);
  house.SetGeneral("DebugMode", "0");
  PassAt(13, 59);
  EXPECT_TRUE(house.settings.DebugMode);
  PassAt(14, 0);
  EXPECT_FALSE(house.settings.DebugMode);
}

TEST_F(HourlyPassTest, SettingsThatCannotBeReadDoNotKeepTheJobsFromRunning) {
  house.importIsDue = true;
  house.installation.Sql("Quillon.mdb", "DELETE FROM Settings_General");
  EXPECT_EQ(PassAt(12, 0), (Lines{"Import", "AutoCreate", "MailReports"}));
  EXPECT_EQ(house.Events(), Lines{"1\tmodQuillonWeb_RefreshSettings\tQuillon.mdb: no current row"});
  EXPECT_EQ(house.service.LastHour, 12);
}

TEST_F(HourlyPassTest, FirstPassAfterMidnightCleansOnce) {
  house.service.LastHour = 23;
  SeedOldFiles();
  EXPECT_EQ(PassAt(0, 0, 20), Lines{"Import"});
  ExpectCleaned(true);
  EXPECT_EQ(house.service.LastHour, 0);
  SeedOldFiles();
  PassAt(0, 0, 50);
  PassAt(1, 0, 20);
  ExpectCleaned(false);
}

TEST_F(HourlyPassTest, PassOfALaterHourCleansNothing) {
  SeedOldFiles();
  PassAt(12, 0);
  PassAt(23, 0);
  ExpectCleaned(false);
}

TEST_F(HourlyPassTest, CleaningIsTheLastWorkOfThePass) {
  house.service.LastHour = 23;
  house.importIsDue = true;
  SeedOldFiles();
  bool reached = false;
  house.jobs.MailReports = [&] {
    reached = true;
    ExpectCleaned(false);
    EXPECT_EQ(house.service.LastHour, 23);
  };
  PassAt(0, 0);
  EXPECT_TRUE(reached);
  ExpectCleaned(true);
}

// A line without a date makes the first cleaner report, and its half second is the look
// between the two.
TEST_F(HourlyPassTest, EventsAreAgedBeforeTheFolderIsCleared) {
  house.service.LastHour = 23;
  SeedOldFiles();
  house.installation.Write("Debug/AppEventWeb.txt", "a line without a date\r\n");
  bool clearedInTheWait = true;
  std::int16_t hourInTheWait = -1;
  house.loop.Post([&] {
    clearedInTheWait = FolderIsCleared();
    hourInTheWait = house.service.LastHour;
  });
  PassAt(0, 0);
  EXPECT_FALSE(clearedInTheWait);
  EXPECT_EQ(hourInTheWait, 23);
  EXPECT_TRUE(FolderIsCleared());
  EXPECT_EQ(house.service.LastHour, 0);
  ASSERT_EQ(house.Events().size(), 1u);
  EXPECT_TRUE(house.Events()[0].starts_with("1\tmodQuillonWeb_ClearDebugDir_AEW\t"));
}

TEST_F(HourlyPassTest, ClockThatIsPutBackAnHourCountsAsAChangeOfDay) {
  SeedOldFiles();
  EXPECT_EQ(PassAt(10, 30), Lines{"Import"});
  ExpectCleaned(true);
  EXPECT_EQ(house.service.LastHour, 10);
}

TEST_F(HourlyPassTest, PassThatRunsPastTheHourIsNotRepeated) {
  SeedOldFiles();
  house.jobs.Import = [&](bool&) {
    house.jobCalls.emplace_back("Import");
    house.loop.DelayMs(20'000);
  };
  EXPECT_EQ(PassAt(12, 59, 50), Lines{"Import"});
  EXPECT_EQ(house.service.LastHour, 13);
  EXPECT_EQ(PassAt(13, 0, 30), Lines{});
  ExpectCleaned(false);
}

TEST_F(HourlyPassTest, DayThatChangesInsideAPassIsCleanedInIt) {
  house.service.LastHour = 22;
  SeedOldFiles();
  house.jobs.Import = [&](bool&) { house.loop.DelayMs(20'000); };
  PassAt(23, 59, 50);
  ExpectCleaned(true);
  EXPECT_EQ(house.service.LastHour, 0);
  SeedOldFiles();
  Pass();
  ExpectCleaned(false);
}

TEST_F(HourlyPassTest, PassAfterMidnightThatRunsPastOneCleansOnce) {
  house.service.LastHour = 23;
  SeedOldFiles();
  house.jobs.Import = [&](bool&) { house.clock.Advance(std::chrono::minutes(65)); };
  PassAt(0, 0, 20);
  ExpectCleaned(true);
  EXPECT_EQ(house.service.LastHour, 1);
  SeedOldFiles();
  PassAt(2, 0);
  ExpectCleaned(false);
}

TEST_F(HourlyPassTest, TickInsideAPassIsDropped) {
  house.jobs.Import = [&](bool&) {
    house.jobCalls.emplace_back("Import");
    EXPECT_TRUE(house.service.jobRunning);
    house.loop.Post([&] { HourlyPass(house.service); });
    house.loop.DelayMs(100);
    EXPECT_EQ(house.service.LastHour, 11);
  };
  EXPECT_EQ(PassAt(12, 0), Lines{"Import"});
  EXPECT_FALSE(house.service.jobRunning);
  EXPECT_EQ(house.service.LastHour, 12);
}

TEST_F(HourlyPassTest, TickOfTheNextHourInsideAPassIsDroppedToo) {
  house.importIsDue = true;
  house.jobs.AutoCreate = [&] {
    house.jobCalls.emplace_back("AutoCreate");
    house.loop.DelayMs(20'000);
    house.loop.Post([&] { HourlyPass(house.service); });
    house.loop.DelayMs(100);
    EXPECT_EQ(house.service.LastHour, 11);
  };
  EXPECT_EQ(PassAt(12, 59, 50), (Lines{"Import", "AutoCreate", "MailReports"}));
  EXPECT_EQ(house.service.LastHour, 13);
}

TEST_F(HourlyPassTest, TickInsideTheEventOfTheSettingsIsDropped) {
  house.installation.Sql("Quillon.mdb", "DELETE FROM Settings_General");
  house.loop.Post([&] { HourlyPass(house.service); });
  EXPECT_EQ(PassAt(12, 0), Lines{"Import"});
  EXPECT_EQ(house.Events().size(), 1u);
}

TEST_F(HourlyPassTest, TickWhileTheOperatorsJobRunsIsDropped) {
  house.service.jobRunning = true;
  EXPECT_EQ(PassAt(12, 0), Lines{});
  EXPECT_EQ(house.service.LastHour, 11);
  EXPECT_TRUE(house.service.jobRunning);
  house.service.jobRunning = false;
  EXPECT_EQ(PassAt(12, 0, 30), Lines{"Import"});
}

TEST_F(HourlyPassTest, TicksInsideTheOperatorsImportAreDroppedAlsoThoseOfTheNextHour) {
  house.service.socketsOpened = true;
  house.jobs.Import = [&](bool&) {
    house.jobCalls.emplace_back("Import");
    for (int tick = 0; tick < 3; ++tick) {
      house.loop.Post([&] { HourlyPass(house.service); });
      house.loop.DelayMs(20'000);
    }
    EXPECT_EQ(house.service.LastHour, 11);
  };
  house.clock.Set("2024-05-02 12:59:50");
  AnswerConsole(house.service, house.operators, house.watch, "import", [](std::string_view) {});
  EXPECT_EQ(house.jobCalls, (Lines{"UpdateHistory_Db 3", "Import"}));
  EXPECT_EQ(house.service.LastHour, 11);
  house.jobs.Import = [](bool&) {};
  Pass();
  EXPECT_EQ(house.service.LastHour, 13);
}

}  // namespace
}  // namespace quillon
