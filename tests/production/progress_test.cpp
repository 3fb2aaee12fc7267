// What the building of the pages and the run of the mails tell whoever watches them.
#include "production/auto_create.h"
#include "production/auto_create_fixture.h"
#include "production/mail_fixture.h"
#include "production/mail_reports.h"

namespace quillon {
namespace {

// The counts that a site's jobs tell, all of one unit.
class Watcher {
 public:
  Watcher(Site& site, JobUnit unit) {
    site.watch.progress = [this, unit](JobUnit told, int number, int total) {
      EXPECT_EQ(told, unit);
      numbers.push_back(number);
      totals.push_back(total);
      if (onProgress) onProgress(number, total);
    };
  }

  // 1, 2, ... up to that number.
  static std::vector<int> UpTo(int count) {
    std::vector<int> sequence;
    for (int number = 1; number <= count; ++number) sequence.push_back(number);
    return sequence;
  }

  std::vector<int> numbers;
  std::vector<int> totals;
  std::function<void(int number, int total)> onProgress;
};

class AutoCreateProgress : public AutoCreateTest {
 protected:
  static constexpr int kFixedPages = 63;
  static constexpr int kPortCharts = 120;

  void ExpectTotals(int total) const {
    EXPECT_EQ(watcher.totals, std::vector<int>(watcher.numbers.size(), total));
  }
  void ExpectTotalsNeverBelowTheirNumbers() const {
    for (std::size_t n = 0; n < watcher.numbers.size(); ++n) {
      EXPECT_GE(watcher.totals[n], watcher.numbers[n]);
    }
  }

  Watcher watcher{site, JobUnit::kPage};
};

TEST_F(AutoCreateProgress, EachFileIsToldWhenItIsStored) {
  watcher.onProgress = [this](int number, int) {
    EXPECT_EQ(CacheFiles().size(), static_cast<std::size_t>(number));
  };
  AutoCreate(production);
  EXPECT_EQ(watcher.numbers, Watcher::UpTo(kFixedPages));
  ExpectTotals(kFixedPages + kPortCharts);
}

TEST_F(AutoCreateProgress, ServersAndDisksOfTheNewestDayAreExpected) {
  AddNetwork();  // two servers, one of them with memory, and a disk of each
  History(InsertStorageOfDay("Disk_Day02", {{"RecNo", "4711"}}));
  FolderWatch watch(CachePath());
  AutoCreate(production);
  EXPECT_EQ(watcher.numbers, Watcher::UpTo(static_cast<int>(watch.Written().size())));
  ExpectTotals(kFixedPages + kPortCharts + 2 + 2);
}

TEST_F(AutoCreateProgress, MemoryIsNoDisk) {
  AddStorageDays();
  AddStorages({{{"RecNo", "1"}, {"StorDescr", "'Physical'"}, {"Type", "10"}},
               {{"RecNo", "1"}, {"StorDescr", "'Virtual'"}, {"Type", "20"}},
               {{"RecNo", "1"}, {"StorDescr", "'C:'"}},
               {{"RecNo", "1"}, {"StorDescr", "'D:'"}}});
  AutoCreate(production);
  ExpectTotals(kFixedPages + kPortCharts + 1 + 2);
  EXPECT_EQ(watcher.numbers, Watcher::UpTo(kFixedPages + 1 + 2));
}

TEST_F(AutoCreateProgress, WithoutATableOfTheDayNoStoragesAreExpected) {
  AddNetwork();
  site.clock.Set("2024-05-04 12:00:00");
  AutoCreate(production);
  ExpectTotals(kFixedPages + kPortCharts);
  EXPECT_EQ(Failures(), Lines{});
}

// All the charts of ports, and disks that come about behind the look at the table.
TEST_F(AutoCreateProgress, TotalIsNeverBelowTheNumber) {
  constexpr int kLateDisks = 3;
  AddStorageDays();
  AddAccessPorts(10);
  Reports(
      "INSERT INTO VLAN SELECT * FROM VLAN;"
      "UPDATE VLAN SET IsTrunk = TRUE WHERE rowid > 10");
  watcher.onProgress = [this](int number, int) {
    if (number != 1) return;
    for (int disk = 1; disk <= kLateDisks; ++disk) {
      AddDiskNamed("'/" + std::to_string(disk) + "'");
    }
  };
  AutoCreate(production);
  EXPECT_EQ(watcher.numbers, Watcher::UpTo(kFixedPages + kPortCharts + 1 + kLateDisks));
  EXPECT_EQ(watcher.totals.front(), kFixedPages + kPortCharts);
  EXPECT_EQ(watcher.totals.back(), watcher.numbers.back());
  ExpectTotalsNeverBelowTheirNumbers();
}

TEST_F(AutoCreateProgress, CountBeginsAnewWithEachRun) {
  AutoCreate(production);
  watcher.numbers.clear();
  AutoCreate(production);
  EXPECT_EQ(watcher.numbers, Watcher::UpTo(kFixedPages));
}

TEST_F(AutoCreateProgress, PagesThatNobodyWatchesAreBuiltAsWell) {
  site.watch.progress = nullptr;
  AutoCreate(production);
  EXPECT_EQ(CacheFiles().size(), static_cast<std::size_t>(kFixedPages));
  EXPECT_EQ(Failures(), Lines{});
}

class MailProgress : public MailTest {
 protected:
  Watcher watcher{site, JobUnit::kReceiver};
};

TEST_F(MailProgress, EachReceiverWhoIsDueIsToldBeforeHisMail) {
  AddReceiverNamed("Anna");
  AddReceiverNamed("Berta", {{"TimeSchedule", "3"}});  // on the first of a month
  AddReceiverNamed("");
  AddReceiverNamed("Cleo");
  AddReceiverNamed("Dora", {{"Recipient", "''"}});
  watcher.onProgress = [this](int number, int) {
    EXPECT_EQ(Operations("new").size(), static_cast<std::size_t>(number - 1));
  };
  MailReports(production);
  EXPECT_EQ(watcher.numbers, Watcher::UpTo(3));
  EXPECT_EQ(watcher.totals, std::vector<int>(3, 3));
}

TEST_F(MailProgress, MailThatFailsIsCountedToo) {
  AddReceivers(2);
  mails.statuses = std::vector<int>(10, 1);
  MailReports(production);
  EXPECT_EQ(watcher.numbers, Watcher::UpTo(2));
  EXPECT_EQ(EventHeads(), Lines(2, "2\tmodMail_SendMailSMTP"));
}

TEST_F(MailProgress, WithoutReceiversNothingIsTold) {
  AddReceiverNamed("Berta", {{"TimeSchedule", "3"}});
  MailReports(production);
  EXPECT_EQ(watcher.numbers, std::vector<int>{});
}

TEST_F(MailProgress, MailsThatNobodyWatchesGoOutAsWell) {
  site.watch.progress = nullptr;
  AddReceivers(2);
  MailReports(production);
  EXPECT_EQ(Served(), (Lines{"R1", "R2"}));
}

}  // namespace
}  // namespace quillon
