// A run under which something gives way - databases, files, the disk, the service itself - and
// requests that come while it lasts.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "production/auto_create_fixture.h"
#include "support/file_size_limit.h"

namespace quillon {
namespace {

class AutoCreateFaults : public AutoCreateTest {
 protected:
  AutoCreateFaults() { AddNetwork(); }

  void Run() { AutoCreate(production); }

  // Neighbours that are the same, as one.
  static Lines InShort(Lines lines) {
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    return lines;
  }
  static int FixedPages(const Lines& names) {
    return static_cast<int>(std::count_if(names.begin(), names.end(), [](const std::string& name) {
      return name.rfind("hist", 0) != 0;
    }));
  }
};

TEST_F(AutoCreateFaults, WithoutReportsMdbTheListsOfPortsAreEmpty) {
  site.installation.Remove("Reports.mdb");
  Run();
  EXPECT_EQ(Failures(), Lines(12, "modSelectSql_SqlTop10SwitchStats"));
  ExpectedProduction expected(site);
  AddNetworkPages(expected);
  ExpectCache(expected.Last());
  EXPECT_EQ(CacheFiles().size(), 63u + 4);
}

TEST_F(AutoCreateFaults, WithoutHistoryMdbAllPagesAreThereAndNoChartsOfStorages) {
  site.installation.Remove("History.mdb");
  Run();
  const Lines failures = Failures();
  EXPECT_EQ(InShort(failures),
            (Lines{"modSelectSql_SqHist45SwitchControl", "modSelectSql_SqHist45dSwitchSum",
                   "modSelectSql_SqlTop10DiskStats", "modHtml_AutoCreateChDa45_Mem",
                   "modHtml_AutoCreateChDa45_Disk", "modSelectSql_SqlHist45dDiskSum"}));
  EXPECT_EQ(CountOf(failures, "modSelectSql_SqHist45SwitchControl"), 6 * 3);
  EXPECT_EQ(CountOf(failures, "modSelectSql_SqlTop10DiskStats"), 48);
  EXPECT_EQ(FixedPages(CacheFiles()), 63);
  EXPECT_EQ(CacheFiles().size(), 63u + 3);
  ExpectedProduction expected(site);
  expected.AllSwitchPages();
  expected.AllDiskLists();
  expected.DiskSummary();
  ExpectCache(expected.Last());
}

TEST_F(AutoCreateFaults, WithoutItsFolderEveryFileIsReported) {
  std::filesystem::remove(CachePath());
  Run();
  ExpectedProduction expected(site);
  AddNetworkPages(expected);
  EXPECT_EQ(NotStored(), expected.Names());
}

TEST_F(AutoCreateFaults, AFileInThePlaceOfTheFolderIsNoFolder) {
  std::filesystem::remove(CachePath());
  site.installation.Write("WebReports/Cache", "a file");
  Run();
  ExpectedProduction expected(site);
  AddNetworkPages(expected);
  EXPECT_EQ(NotStored(), expected.Names());
  EXPECT_EQ(site.installation.Read("WebReports/Cache"), "a file");
}

TEST_F(AutoCreateFaults, WhatCannotBeStoredIsReportedInItsOrderAndTheRestIsStored) {
  const Lines blocked = {"switch-access-port-top10-involume.htm",
                         "hist45-9-1.htm",
                         "switch-trunk-port-summary.htm",
                         "disk-physical-top10-totalbytes-asc.htm",
                         "disk-unix-top10-trend30d-desc.htm",
                         "histdisk45-17-mem.htm",
                         "histdisk45-17-_var_log.htm",
                         "disk-mem-summary.htm"};
  for (const std::string& name : blocked) Block(name);
  Run();
  Lines expectedEvents = blocked;
  expectedEvents.insert(expectedEvents.begin() + 1, 5, "hist45-9-1.htm");
  EXPECT_EQ(NotStored(), expectedEvents);
  ExpectedProduction expected(site);
  AddNetworkPages(expected);
  for (const auto& [name, bytes] : expected.Last()) {
    EXPECT_NE(IsStored(name), CountOf(blocked, name) == 1) << name;
    if (IsStored(name)) ExpectBytes(name, bytes);
  }
  EXPECT_EQ(CacheFiles().size(), expected.Last().size());
}

// Nothing deletes a file of the kernel's.
TEST_F(AutoCreateFaults, ACacheThatCannotBeEmptiedEndsTheRun) {
  std::filesystem::remove(CachePath());
  std::filesystem::create_directory_symlink("/proc/self/fdinfo", CachePath());
  EXPECT_EQ(WaitOf([this] { Run(); }), std::chrono::milliseconds(500)) << "of the event";
  EXPECT_EQ(Failures(), Lines{"modHtml_AutoCreate"});
}

TEST_F(AutoCreateFaults, AServerWithoutANameEndsItsWalksAndTheSummaryFollows) {
  AddStorages({{{"RecNo", "500"}, {"DevName", "NULL"}}});
  Run();
  const Lines failures = Failures();
  EXPECT_EQ(CountOf(failures, "modHtml_AutoCreateChDa45_Mem"), 1);
  EXPECT_EQ(CountOf(failures, "modHtml_AutoCreateChDa45_Disk"), 1);
  EXPECT_TRUE(IsStored("histdisk45-17-mem.htm"));
  EXPECT_TRUE(IsStored("histdisk45-17-_var_log.htm"));
  EXPECT_FALSE(IsStored("histdisk45-900-mem.htm"));
  EXPECT_FALSE(IsStored("histdisk45-900-C_.htm"));
  ExpectedProduction expected(site);
  expected.DiskSummary();
  ExpectBytes("disk-mem-summary.htm", expected.Last()["disk-mem-summary.htm"]);
}

TEST_F(AutoCreateFaults, AFigureThatIsMissingEndsEachListOfItsKindOnly) {
  Reports("UPDATE VLAN SET OutErrorsTot24H = NULL WHERE RecNo = 7");
  Run();
  EXPECT_EQ(Failures(), Lines(6, "modSelectSql_SqlTop10SwitchStats"));
  ExpectedProduction expected(site);
  AddNetworkPages(expected);
  ExpectCache(expected.Last());
}

constexpr int kPortCharts = 6 * 3 * (50 + 450 + 2 * 20);  // milliseconds of all waits
constexpr int kSwitchPages = kPortCharts + 2 * 450;

class AutoCreateStop : public AutoCreateFaults, public testing::WithParamInterface<int> {};

TEST_P(AutoCreateStop, TheRunIsLeftInTheWaitInWhichTheServiceEndsAndItsFilesAreWhole) {
  bool stopped = false;
  InTheWait(GetParam(), [&] {
    stopped = true;
    site.loop.Quit();
  });
  EXPECT_THROW(Run(), LoopEnded);
  EXPECT_TRUE(stopped);
  EXPECT_EQ(site.clock.slept(), std::chrono::milliseconds(GetParam()));
  ExpectedProduction expected(site);
  AddNetworkPages(expected);
  const auto whole = expected.Last();
  for (const std::string& name : CacheFiles()) {
    ASSERT_EQ(whole.count(name), 1u) << name;
    ExpectBytes(name, whole.at(name));
  }
  EXPECT_FALSE(CacheFiles().empty());
  EXPECT_LT(CacheFiles().size(), whole.size());
  EXPECT_EQ(Failures(), Lines{});
}

// In the pause before a chart, in its days, behind them, in the summaries, in the charts of memory
// and of disks, in the last page.
INSTANTIATE_TEST_SUITE_P(Waits, AutoCreateStop,
                         testing::Values(10, 50, 300, 540, 550, 5000, kPortCharts + 10,
                                         kSwitchPages, kSwitchPages + 10, kSwitchPages + 600,
                                         kSwitchPages + 2 * 540 + 10, kSwitchPages + 4 * 540 + 10));

TEST_F(AutoCreateFaults, ARunIsLeftInTheWaitOfAnEvent) {
  Block("switch-access-port-top10-involume.htm");
  InTheWait(100, [this] { site.loop.Quit(); });
  EXPECT_THROW(Run(), LoopEnded);
  EXPECT_EQ(CacheFiles(), Lines{"switch-access-port-top10-involume.htm"});
  EXPECT_EQ(NotStored(), Lines{"switch-access-port-top10-involume.htm"});
}

TEST_F(AutoCreateFaults, APageIsAnsweredFromItsFileAsSoonAsItIsStored) {
  const auto client = site.Connect();
  const std::string page = "switch-access-port-top10-involume.htm";
  const std::string list = "disk-unix-top10-totalbytes-desc.htm";
  std::string answer;
  std::string stored;
  std::string listAnswer;
  std::string chartAnswer;
  InTheWait(10, [&] {
    stored = Cached(page);
    answer = site.Exchange(*client, Site::Request(page));
  });
  OnceStored("histdisk45-17-mem.htm", [&] {
    listAnswer = site.Exchange(*client, Site::Request(list));
    chartAnswer = site.Exchange(*client, Site::Request("histdisk45-17-mem-" + list));
  });
  Run();
  EXPECT_FALSE(stored.empty());
  EXPECT_EQ(answer, ClosedResponse(site.render, stored));
  EXPECT_EQ(listAnswer, ClosedResponse(site.render, Cached(list)));
  EXPECT_EQ(chartAnswer,
            ClosedResponse(site.render, Cached(list) + Cached("histdisk45-17-mem.htm")));
  EXPECT_EQ(Failures(), Lines{});
}

TEST_F(AutoCreateFaults, APageThatIsNotThereYetIsBuiltForWhoAsksWhereItsRouteCan) {
  const auto client = site.Connect();
  const std::string list = "switch-trunk-port-top10-outerrors.htm";
  const std::string summary = "switch-access-port-summary.htm";
  ExpectedProduction expected(site);
  AddNetworkPages(expected);
  auto pages = expected.Last();
  std::string listAnswer;
  std::string summaryAnswer;
  InTheWait(10, [&] {
    EXPECT_FALSE(IsStored(list));
    listAnswer = site.Exchange(*client, Site::Request(list));
    EXPECT_TRUE(IsStored(list));
    EXPECT_FALSE(IsStored(summary));
    summaryAnswer = site.Exchange(*client, Site::Request("hist45d-" + summary));
    EXPECT_TRUE(IsStored(summary));
  });
  FolderWatch watch(CachePath());
  Run();
  EXPECT_EQ(listAnswer, ClosedResponse(site.render, pages[list]));
  EXPECT_EQ(summaryAnswer, ClosedResponse(site.render, pages[summary]));
  EXPECT_EQ(CountOf(watch.Written(), list), 2);
  EXPECT_EQ(CountOf(watch.Written(), summary), 2);
  ExpectCache(pages);
}

TEST_F(AutoCreateFaults, APageOfDisksThatIsNotThereYetGetsNoAnswer) {
  const auto client = site.Connect();
  for (const std::string page :
       {"disk-physical-top10-totalbytes-asc.htm", "disk-mem-summary.htm"}) {
    std::optional<std::string> answer;
    InTheWait(10, [&] {
      answer = site.Exchange(*client, Site::Request(page));
      EXPECT_FALSE(IsStored(page));
    });
    Run();
    EXPECT_EQ(answer, "") << page;
    EXPECT_EQ(site.Exchange(*client, Site::Request(page)),
              ClosedResponse(site.render, Cached(page)));
  }
  EXPECT_EQ(Failures(), Lines{});
}

TEST_F(AutoCreateFaults, ManyRequestsDuringARunDoNotChangeItsFiles) {
  ExpectedProduction expected(site);
  AddNetworkPages(expected);
  std::vector<std::unique_ptr<RawClient>> clients;
  const Lines urls = {"",
                      "hist45-8-5.htm",
                      "switch-trunk-port-top10-inerrors.htm",
                      "hist45-7-4-switch-access-port-top10-inerrors.htm",
                      "hist45d-switch-trunk-port-summary.htm",
                      "search-device-disk"};
  for (std::size_t n = 0; n < urls.size(); ++n) clients.push_back(site.Connect());
  int asked = 0;
  for (int moment = 10; moment < 13000; moment += 400) {
    const std::size_t n = static_cast<std::size_t>(moment / 400) % urls.size();
    InTheWait(moment, [&, n] {
      ++asked;
      clients[n]->Send(Site::Request(urls[n]));
    });
  }
  Run();
  site.Settle();
  EXPECT_GT(asked, 20);
  for (std::size_t n = 0; n < urls.size(); ++n) EXPECT_NE(clients[n]->ReceivedNow(), "") << urls[n];
  // An answer that asked for a list before it was there leaves an empty file, until it is stored.
  ExpectCache(expected.Last());
}

// Neither the old charts of a port nor half of the new ones are left where the disk fills up.
TEST_F(AutoCreateFaults, WhereTheDiskIsFullWhatDoesNotFitIsReportedAndGone) {
  constexpr std::size_t kRoom = 40 * 1024;
  const std::string trigger = "switch-access-port-top10-outvolume.htm";
  std::unique_ptr<FileSizeLimit> limit;
  OnceStored(trigger, [&] { limit = std::make_unique<FileSizeLimit>(kRoom); });
  Run();
  limit.reset();

  ExpectedProduction expected(site);
  AddNetworkPages(expected);
  std::map<std::string, std::string> left;
  Lines gone;
  bool full = false;
  for (const StoredFile& file : expected.Files()) {
    if (full && file.bytes.size() > kRoom) {
      left.erase(file.name);
      gone.push_back(file.name);
    } else {
      left[file.name] = file.bytes;
    }
    if (file.name == trigger) full = true;
  }
  ASSERT_FALSE(gone.empty());
  ASSERT_EQ(CountOf(gone, "hist45-7-4.htm"), 5) << "stored in the first list";
  ASSERT_GE(left.size(), 48u);
  EXPECT_EQ(NotStored(), gone);
  ExpectCache(left);
}

}  // namespace
}  // namespace quillon
