// A whole run: which files come about, in which order, with which pauses, and what is in them.
#include "production/auto_create.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "production/auto_create_fixture.h"

namespace quillon {
namespace {

// The pages of every run, in their order; the charts of storages come before the last one.
const std::vector<std::string> kFixedPages = {
    "switch-access-port-top10-involume.htm",
    "switch-access-port-top10-outvolume.htm",
    "switch-access-port-top10-inbroadcast.htm",
    "switch-access-port-top10-inmulticast.htm",
    "switch-access-port-top10-inerrors.htm",
    "switch-access-port-top10-outerrors.htm",
    "switch-trunk-port-top10-involume.htm",
    "switch-trunk-port-top10-outvolume.htm",
    "switch-trunk-port-top10-inbroadcast.htm",
    "switch-trunk-port-top10-inmulticast.htm",
    "switch-trunk-port-top10-inerrors.htm",
    "switch-trunk-port-top10-outerrors.htm",
    "switch-access-port-summary.htm",
    "switch-trunk-port-summary.htm",
    "disk-physical-top10-totalbytes-asc.htm",
    "disk-physical-top10-totalbytes-desc.htm",
    "disk-physical-top10-freebytes-asc.htm",
    "disk-physical-top10-freebytes-desc.htm",
    "disk-physical-top10-usedbytes-asc.htm",
    "disk-physical-top10-usedbytes-desc.htm",
    "disk-physical-top10-usedpercent-asc.htm",
    "disk-physical-top10-usedpercent-desc.htm",
    "disk-physical-top10-trend14d-asc.htm",
    "disk-physical-top10-trend14d-desc.htm",
    "disk-physical-top10-trend30d-asc.htm",
    "disk-physical-top10-trend30d-desc.htm",
    "disk-virtual-top10-totalbytes-asc.htm",
    "disk-virtual-top10-totalbytes-desc.htm",
    "disk-virtual-top10-freebytes-asc.htm",
    "disk-virtual-top10-freebytes-desc.htm",
    "disk-virtual-top10-usedbytes-asc.htm",
    "disk-virtual-top10-usedbytes-desc.htm",
    "disk-virtual-top10-usedpercent-asc.htm",
    "disk-virtual-top10-usedpercent-desc.htm",
    "disk-virtual-top10-trend14d-asc.htm",
    "disk-virtual-top10-trend14d-desc.htm",
    "disk-virtual-top10-trend30d-asc.htm",
    "disk-virtual-top10-trend30d-desc.htm",
    "disk-windows-top10-totalbytes-asc.htm",
    "disk-windows-top10-totalbytes-desc.htm",
    "disk-windows-top10-freebytes-asc.htm",
    "disk-windows-top10-freebytes-desc.htm",
    "disk-windows-top10-usedbytes-asc.htm",
    "disk-windows-top10-usedbytes-desc.htm",
    "disk-windows-top10-usedpercent-asc.htm",
    "disk-windows-top10-usedpercent-desc.htm",
    "disk-windows-top10-trend14d-asc.htm",
    "disk-windows-top10-trend14d-desc.htm",
    "disk-windows-top10-trend30d-asc.htm",
    "disk-windows-top10-trend30d-desc.htm",
    "disk-unix-top10-totalbytes-asc.htm",
    "disk-unix-top10-totalbytes-desc.htm",
    "disk-unix-top10-freebytes-asc.htm",
    "disk-unix-top10-freebytes-desc.htm",
    "disk-unix-top10-usedbytes-asc.htm",
    "disk-unix-top10-usedbytes-desc.htm",
    "disk-unix-top10-usedpercent-asc.htm",
    "disk-unix-top10-usedpercent-desc.htm",
    "disk-unix-top10-trend14d-asc.htm",
    "disk-unix-top10-trend14d-desc.htm",
    "disk-unix-top10-trend30d-asc.htm",
    "disk-unix-top10-trend30d-desc.htm",
    "disk-mem-summary.htm",
};

class AutoCreateRun : public AutoCreateTest {
 protected:
  // Those of the names that belong to no fixed page.
  static Lines Charts(const Lines& names) {
    Lines charts;
    for (const std::string& name : names) {
      if (CountOf(kFixedPages, name) == 0) charts.push_back(name);
    }
    return charts;
  }
  static Lines Sorted(Lines names) {
    std::sort(names.begin(), names.end());
    return names;
  }
};

TEST_F(AutoCreateRun, SixtyThreePagesAreStoredInTheirOrder) {
  ASSERT_EQ(kFixedPages.size(), 63u);
  FolderWatch watch(CachePath());
  AutoCreate(production);
  EXPECT_EQ(watch.Changes().size(), 63u);
  EXPECT_EQ(watch.Written(), kFixedPages);
  EXPECT_EQ(CacheFiles(), Sorted(kFixedPages));
}

TEST_F(AutoCreateRun, WithoutStatisticsTablesAndChartsAreEmpty) {
  const auto wait = WaitOf([this] { AutoCreate(production); });
  ExpectedProduction expected(site);
  expected.AllSwitchPages();
  expected.AllDiskLists();
  expected.DiskSummary();
  ExpectCache(expected.Last());
  EXPECT_EQ(wait, 3 * kSummaryWait);
  EXPECT_EQ(Failures(), Lines{});
}

TEST_F(AutoCreateRun, StatisticsOfAnotherDayAreNone) {
  AddNetwork();
  site.clock.Set("2024-05-03 12:00:00");
  AutoCreate(production);
  EXPECT_EQ(CacheFiles(), Sorted(kFixedPages));
  ExpectedProduction expected(site);
  expected.AllSwitchPages();
  expected.AllDiskLists();
  expected.DiskSummary();
  ExpectCache(expected.Last());
}

TEST_F(AutoCreateRun, EachFileHoldsWhatItsReportGives) {
  AddNetwork();
  AutoCreate(production);
  ExpectedProduction expected(site);
  AddNetworkPages(expected);
  ExpectCache(expected.Last());
  EXPECT_EQ(CacheFiles().size(), 63u + 3 + 2 + 2);
  EXPECT_EQ(Failures(), Lines{});
}

TEST_F(AutoCreateRun, ChartsFollowTheirListAndThoseOfStoragesStandBeforeTheLastPage) {
  AddNetwork();
  FolderWatch watch(CachePath());
  AutoCreate(production);
  Lines expected;
  for (const std::string& page : kFixedPages) {
    if (page == "disk-mem-summary.htm") {
      for (const char* chart : {"histdisk45-17-mem.htm", "histdisk45-900-mem.htm",
                                "histdisk45-17-_var_log.htm", "histdisk45-900-C_.htm"}) {
        expected.emplace_back(chart);
      }
    }
    expected.push_back(page);
    if (page == "switch-access-port-top10-outvolume.htm") {
      expected.insert(expected.end(), {"hist45-8-5.htm", "hist45-7-4.htm"});
    } else if (page.rfind("switch-access-port-top10-", 0) == 0) {
      expected.insert(expected.end(), {"hist45-7-4.htm", "hist45-8-5.htm"});
    } else if (page.rfind("switch-trunk-port-top10-", 0) == 0) {
      expected.emplace_back("hist45-9-1.htm");
    }
  }
  EXPECT_EQ(watch.Written(), expected);
}

TEST_F(AutoCreateRun, APortThatStandsInSeveralListsIsBuiltForEachOfThem) {
  AddNetwork();
  FolderWatch watch(CachePath());
  AutoCreate(production);
  const Lines written = watch.Written();
  for (const char* chart : {"hist45-7-4.htm", "hist45-8-5.htm", "hist45-9-1.htm"}) {
    EXPECT_EQ(CountOf(written, chart), 6) << chart;
  }
}

TEST_F(AutoCreateRun, TheLastBuildOfAChartStands) {
  AddNetwork();
  OnceStored("switch-access-port-top10-outerrors.htm",
             [this] { Reports("UPDATE VLAN SET DevName = 'renamed' WHERE RecNo = 7"); });
  AutoCreate(production);
  EXPECT_TRUE(Holds(Cached("switch-access-port-top10-involume.htm"), "sw7"));
  EXPECT_TRUE(Holds(Cached("hist45-7-4.htm"), "renamed"));
  EXPECT_FALSE(Holds(Cached("hist45-7-4.htm"), "sw7"));
}

TEST_F(AutoCreateRun, OnlyChartsAndSummariesWait) {
  AddNetwork();
  const auto wait = WaitOf([this] { AutoCreate(production); });
  const int portCharts = 6 * 3;  // three ports in six lists each
  const int storageCharts = 4;
  EXPECT_EQ(wait, (portCharts + storageCharts) * ChartWait(2) + 3 * kSummaryWait);
}

TEST_F(AutoCreateRun, PagesEndBeforeTheirFooterAndChartsHaveNoHead) {
  AddNetwork();
  AutoCreate(production);
  std::string footer;
  Page_Footer(site.render, footer);
  std::string end;
  Page_End(site.render, end);
  std::string head;
  TopHeader_MailReport(site.render, head);
  head = head.substr(0, head.find("\r\n"));
  ASSERT_FALSE(footer.empty() || end.empty() || head.empty());
  const Lines names = CacheFiles();
  for (const std::string& name : names) {
    const std::string bytes = Cached(name);
    EXPECT_FALSE(Holds(bytes, footer)) << name;
    EXPECT_FALSE(Holds(bytes, end)) << name;
    EXPECT_EQ(bytes.rfind(head, 0) == 0, CountOf(kFixedPages, name) == 1) << name;
    EXPECT_EQ(Holds(bytes, head), CountOf(kFixedPages, name) == 1) << name;
  }
}

TEST_F(AutoCreateRun, TenPortsOfAListHaveCharts) {
  AddAccessPorts(12);
  AutoCreate(production);
  Lines charts;
  for (int n = 1; n <= 10; ++n) {
    charts.push_back("hist45-" + std::to_string(100 + n) + "-" + std::to_string(n) + ".htm");
  }
  EXPECT_EQ(Charts(CacheFiles()), Sorted(charts));
}

TEST_F(AutoCreateRun, AShorterListShowsNothingOfALongerOneBeforeIt) {
  AddAccessPorts(10);
  Reports(InsertPort({{"RecNo", "9"}, {"IfIndex", "1"}, {"IsTrunk", "TRUE"}}));
  FolderWatch watch(CachePath());
  AutoCreate(production);
  EXPECT_EQ(watch.Written().size(), 63u + 6 * 10 + 6);
  ExpectedProduction expected(site);
  expected.AllSwitchPages();
  for (const auto& [name, bytes] : expected.Last()) ExpectBytes(name, bytes);
  EXPECT_FALSE(Holds(Cached("switch-trunk-port-top10-outerrors.htm"), "hist45-101-"));
}

TEST_F(AutoCreateRun, RowsThatARequestLeftInTheSlotAreNotShown) {
  for (SwitchTableRow& row : site.records.SwitchTableRep[BackgroundSlot].rows) row.recNo = 4711;
  for (DiskTableRow& row : site.records.DiskTableRep[BackgroundSlot].rows) row.recNo = 4712;
  AutoCreate(production);
  EXPECT_EQ(CacheFiles(), Sorted(kFixedPages));
  for (const std::string& name : kFixedPages) {
    EXPECT_FALSE(Holds(Cached(name), "4711")) << name;
    EXPECT_FALSE(Holds(Cached(name), "4712")) << name;
  }
}

TEST_F(AutoCreateRun, ReportsOfConnectionsStayAsTheyAre) {
  AddNetwork();
  for (int slot = 1; slot <= 20; ++slot) {
    if (slot == BackgroundSlot) continue;
    site.records.SwitchTableRep[slot].rows[1].recNo = slot;
    site.records.DiskTableRep[slot].rows[1].recNo = slot;
    site.records.Hist45SwitchRep[slot].Device = "device";
    site.records.Hist45dSwitchRep[slot].Report = "report";
    site.records.Hist45MemRep[slot].Device = "server";
    site.records.Hist45DiskRep[slot].Device = "server";
    site.records.Hist45dDiskRep[slot].Unix.Head = "head";
  }
  AutoCreate(production);
  for (int slot = 1; slot <= 20; ++slot) {
    if (slot == BackgroundSlot) continue;
    EXPECT_EQ(site.records.SwitchTableRep[slot].rows[1].recNo, slot);
    EXPECT_EQ(site.records.DiskTableRep[slot].rows[1].recNo, slot);
    EXPECT_EQ(site.records.Hist45SwitchRep[slot].Device, "device") << slot;
    EXPECT_EQ(site.records.Hist45dSwitchRep[slot].Report, "report") << slot;
    EXPECT_EQ(site.records.Hist45MemRep[slot].Device, "server") << slot;
    EXPECT_EQ(site.records.Hist45DiskRep[slot].Device, "server") << slot;
    EXPECT_EQ(site.records.Hist45dDiskRep[slot].Unix.Head, "head") << slot;
  }
  EXPECT_EQ(site.records.Hist45SwitchRep[BackgroundSlot].Device, "sw9");
  EXPECT_EQ(site.records.Hist45DiskRep[BackgroundSlot].Device, "Files");
}

TEST_F(AutoCreateRun, TheCacheIsEmptiedFirst) {
  const Lines old = {".hidden", "disk-search-3.htm", "hist45-1-1.htm", "no-ending",
                     "~new",    "~new.htm"};
  for (const std::string& name : old) Store(name, "old");
  FolderWatch watch(CachePath());
  AutoCreate(production);
  EXPECT_EQ(CacheFiles(), Sorted(kFixedPages));
  Lines deletions;
  for (const std::string& name : old) deletions.push_back("deleted " + name);
  const Lines& changes = watch.Changes();
  ASSERT_GT(changes.size(), old.size());
  EXPECT_EQ(Sorted(Lines(changes.begin(), changes.begin() + 6)), deletions);
  EXPECT_EQ(changes[6], "written " + kFixedPages[0]);
}

TEST_F(AutoCreateRun, FoldersInTheCacheStay) {
  Block("folder.htm");
  Store("folder.htm/kept.htm", "kept");
  Store("old.htm", "old");
  AutoCreate(production);
  EXPECT_FALSE(IsStored("old.htm"));
  EXPECT_EQ(Cached("folder.htm/kept.htm"), "kept");
  EXPECT_EQ(CacheFiles().size(), 63u + 1);
  EXPECT_EQ(Failures(), Lines{});
}

TEST_F(AutoCreateRun, MailCopiesStay) {
  site.installation.Write("WebReports/Mail/copy.htm", "copy");
  AutoCreate(production);
  EXPECT_EQ(MailFiles(), Lines{"copy.htm"});
  EXPECT_EQ(Mailed("copy.htm"), "copy");
}

TEST_F(AutoCreateRun, ASecondRunGivesTheSameFilesAgain) {
  AddNetwork();
  AutoCreate(production);
  ExpectedProduction expected(site);
  AddNetworkPages(expected);
  AutoCreate(production);
  ExpectCache(expected.Last());
}

TEST_F(AutoCreateRun, ChartsOfWhatIsGoneGoWithTheNextRun) {
  AddNetwork();
  AutoCreate(production);
  Reports("DELETE FROM VLAN WHERE RecNo = 8");
  History("DELETE FROM Disk_Day01 WHERE RecNo = 17");
  AutoCreate(production);
  EXPECT_EQ(Charts(CacheFiles()), (Lines{"hist45-7-4.htm", "hist45-9-1.htm",
                                         "histdisk45-900-C_.htm", "histdisk45-900-mem.htm"}));
}

TEST_F(AutoCreateRun, AReportDateIsReplayed) {
  AddNetwork();
  AddStorages({{{"RecNo", "55"}, {"StorDescr", "'Physical'"}, {"Type", "10"}}});
  Reports(
      InsertPort({{"RecNo", "3"}, {"IfIndex", "2"}, {"InOctetsDate", "'2014-11-07 03:10:00'"}}));
  History(
      "UPDATE Disk_HistCtrl SET StorageDate = '2014-11-06 03:10:00'"
      " WHERE HistTable = 'Disk_Day03';" +
      InsertStorageOfDay("Disk_Day03", {{"RecNo", "77"}, {"DevName", "'Old'"}}));
  site.settings.RepDateOverride = true;
  site.settings.txtRepDate = "2014-11-07";
  AutoCreate(production);
  EXPECT_EQ(Charts(CacheFiles()),
            (Lines{"hist45-3-2.htm", "histdisk45-77-C_.htm", "histdisk45-77-mem.htm"}));
  ExpectedProduction expected(site);
  expected.AllSwitchPages();
  expected.AllDiskLists();
  expected.MemoryCharts(77, "Old");
  expected.DiskChart(77, "Old", "C:", "histdisk45-77-C_.htm");
  expected.DiskSummary();
  ExpectCache(expected.Last());
}

TEST_F(AutoCreateRun, PagesAreInTheirCharset) {
  for (const std::string charSet : {"ISO-8859-1", "UTF-8"}) {
    site.settings.CharSet = charSet;
    Reports("DELETE FROM VLAN;" + InsertPort({{"DevName", "'B\xC3\xBCro \xD0\x96'"}}));
    AutoCreate(production);
    const std::string name = charSet == "UTF-8" ? "B\xC3\xBCro \xD0\x96" : "B\xFCro ?";
    EXPECT_TRUE(Holds(Cached(kFixedPages[0]), name)) << charSet;
    EXPECT_TRUE(Holds(Cached("hist45-7-1.htm"), name)) << charSet;
  }
}

}  // namespace
}  // namespace quillon
