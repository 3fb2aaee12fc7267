// Another program that keeps a database locked, for less than the five seconds that are waited for
// it and for far longer, in each job of a night and beside requests. Step by step, the import's
// own waits are told in history_locks_test.
#include <memory>
#include <ostream>

#include "service/days_fixture.h"
#include "support/other_writer.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;
using std::chrono::seconds;

struct Lock {
  std::string database;
  std::string job;  // in front of which it begins
  seconds length;

  std::string Name() const {
    return database.substr(0, database.find('.')) + "InThe" + job + "For" +
           std::to_string(length.count()) + "Seconds";
  }
};

std::ostream& operator<<(std::ostream& out, const Lock& lock) {
  return out << lock.Name();
}

std::vector<Lock> Locks(const Lines& databases, const Lines& jobs,
                        const std::vector<seconds>& lengths) {
  std::vector<Lock> locks;
  for (const std::string& database : databases) {
    for (const std::string& job : jobs) {
      for (const seconds length : lengths) locks.push_back({database, job, length});
    }
  }
  return locks;
}

// A night with its pages, and the next one.
class LockedNightTest : public DaysTest, public testing::WithParamInterface<Lock> {
 protected:
  LockedNightTest()
      : other_(OtherWriter::Idle(site.installation.path() + "/" + GetParam().database)) {
    Reports("DELETE FROM VLAN WHERE RecNo NOT IN (11, 21)");  // a port of each kind: few charts
    buildsPages = true;
    onTick = [this] { EndLockInTime(); };
    site.loop.OnTurn([this] { EndLockInTime(); });
  }

  void RunFirstNight() {
    Run("2024-05-02 00:00:00", "2024-05-02 03:30:00");
    onJob = [this](const std::string& job) {
      if (job == GetParam().job) BeginLock();
    };
    Run("2024-05-02 03:30:00", "2024-05-02 12:00:00");
    EXPECT_TRUE(wasLocked_);
    EXPECT_FALSE(other_.isWriting());
    EXPECT_TRUE(site.installation.Exists("WebReports/Cache/disk-mem-summary.htm"));
  }
  void RunSecondNight() {
    buildsPages = false;  // they take their time, and nothing is in their way now
    Run("2024-05-02 12:00:00", "2024-05-03 12:00:00");
  }

  void ExpectWholeNights() {
    EXPECT_EQ(Days(), (Lines{"2024-05-01", "2024-05-02"}));
    EXPECT_EQ(DaysOfSums(), (Lines{"2024-05-01", "2024-05-02"}));
    EXPECT_EQ(sent, (Lines{"2024-05-02 Daily", "2024-05-03 Daily"}));
  }

 private:
  void BeginLock() {
    if (wasLocked_) return;
    wasLocked_ = true;
    end_ = site.clock.Now() + GetParam().length;
    ASSERT_TRUE(other_.Begin());
  }
  void EndLockInTime() {
    if (site.clock.Now() >= end_) other_.End();
  }

  OtherWriter other_;
  bool wasLocked_ = false;
  DateTime end_;
};

// Nothing in a night writes into these two, and readers do not wait for a writer.
class NightThatIsNotHinderedTest : public LockedNightTest {};
INSTANTIATE_TEST_SUITE_P(Readers, NightThatIsNotHinderedTest,
                         testing::ValuesIn(Locks({"Quillon.mdb", "Reports.mdb"},
                                                 {"Import", "Pages", "Mails"},
                                                 {seconds(4), seconds(60)})),
                         [](const auto& lock) { return lock.param.Name(); });
INSTANTIATE_TEST_SUITE_P(ShortLocks, NightThatIsNotHinderedTest,
                         testing::ValuesIn(Locks({"History.mdb"}, {"Import", "Pages", "Mails"},
                                                 {seconds(4)})),
                         [](const auto& lock) { return lock.param.Name(); });
INSTANTIATE_TEST_SUITE_P(BehindTheImport, NightThatIsNotHinderedTest,
                         testing::ValuesIn(Locks({"History.mdb"}, {"Pages", "Mails"},
                                                 {seconds(60)})),
                         [](const auto& lock) { return lock.param.Name(); });

TEST_P(NightThatIsNotHinderedTest, IsWholeWithoutAnEvent) {
  RunFirstNight();
  EXPECT_EQ(site.Events(), Lines{});
  RunSecondNight();
  ExpectWholeNights();
  EXPECT_EQ(site.Events(), Lines{});
}

class NightThatIsHinderedTest : public LockedNightTest {};
INSTANTIATE_TEST_SUITE_P(LongLocks, NightThatIsHinderedTest,
                         testing::ValuesIn(Locks({"History.mdb"}, {"Import"}, {seconds(60)})),
                         [](const auto& lock) { return lock.param.Name(); });

TEST_P(NightThatIsHinderedTest, TellsWhatItCouldNotDoAndTheNextOneIsWhole) {
  RunFirstNight();
  const Lines events = site.Events();
  EXPECT_FALSE(events.empty());
  for (const std::string& event : events) {
    EXPECT_TRUE(Holds(event, "another program has kept the database locked for 5 s")) << event;
  }
  EXPECT_EQ(sent, Lines{"2024-05-02 Daily"});
  RunSecondNight();
  EXPECT_EQ(site.Events(), events);
  EXPECT_EQ(Days(), (Lines{"2024-05-01", "2024-05-02"}));
  EXPECT_EQ(DaysOfSums(), (Lines{"2024-05-01", "2024-05-02"}));
  EXPECT_EQ(sent, (Lines{"2024-05-02 Daily", "2024-05-03 Daily"}));
}

class LockedRequestsTest : public MailTest, public testing::WithParamInterface<std::string> {
 protected:
  struct Answer {
    std::string page;
    std::chrono::milliseconds wait;
  };

  // Of a page that is not stored yet.
  Answer Ask(const std::string& url) {
    for (const std::string& name : CacheFiles()) {
      site.installation.Remove("WebReports/Cache/" + name);
    }
    const auto before = site.clock.slept();
    std::string page = Site::Body(site.Get(url));
    return {std::move(page), site.clock.slept() - before};
  }
};

INSTANTIATE_TEST_SUITE_P(Databases, LockedRequestsTest,
                         testing::Values("Quillon.mdb", "Reports.mdb", "History.mdb"),
                         [](const auto& name) {
                           return name.param.substr(0, name.param.find('.'));
                         });

TEST_P(LockedRequestsTest, PagesAreAnsweredAsEverWhileAnotherProgramWrites) {
  for (const std::string url :
       {"switch-access-port-top10-involume.htm", "hist45d-switch-access-port-summary.htm",
        "hist45-11-4.htm", "select?report=search-device-port-alias"}) {
    const Answer usual = Ask(url);
    const OtherWriter other(site.installation.path() + "/" + GetParam());
    const Answer beside = Ask(url);
    EXPECT_TRUE(other.isWriting());
    EXPECT_FALSE(usual.page.empty()) << url;
    EXPECT_EQ(beside.page, usual.page) << url;
    EXPECT_EQ(beside.wait, usual.wait) << url;
  }
  EXPECT_EQ(site.Events(), Lines{});
}

}  // namespace
}  // namespace quillon
