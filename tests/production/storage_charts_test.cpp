// The charts of servers: which storages have one, under which name, out of which day table, and
// what ends the walk over them.
#include "production/storage_charts.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "production/auto_create_fixture.h"

namespace quillon {
namespace {

constexpr const char* kMemory = "modHtml_AutoCreateChDa45_Mem";
constexpr const char* kDisk = "modHtml_AutoCreateChDa45_Disk";

class StorageCharts : public AutoCreateTest {
 protected:
  StorageCharts() { AddStorageDays(); }

  void Memory() { AutoCreateChDa45_Mem(production); }
  void Disks() { AutoCreateChDa45_Disk(production); }
  void Both() {
    Memory();
    Disks();
  }

  // The names of the files that the action stores, in its order.
  Lines WrittenBy(const std::function<void()>& action) const {
    FolderWatch watch(CachePath());
    action();
    return watch.Written();
  }

  // Expects the chart of a disk of device 17 under this name, byte for byte.
  void ExpectDisk(const std::string& storDescr, const std::string& file) const {
    ExpectedProduction expected(site);
    expected.DiskChart(17, "Files", storDescr, file);
    ExpectBytes(file, expected.Last()[file]);
  }
};

TEST_F(StorageCharts, EachServerHasOneOfItsMemory) {
  AddNetwork();
  AddStorages({{{"RecNo", "55"}, {"DevName", "'NoMemory'"}, {"StorDescr", "'D:'"}}});
  const Lines written = WrittenBy([this] { Memory(); });
  ExpectedProduction expected(site);
  expected.MemoryCharts(17, "Logs");
  expected.MemoryCharts(55, "NoMemory");
  expected.MemoryCharts(900, "Files");
  EXPECT_EQ(written, expected.Names());
  ExpectCache(expected.Last());
  EXPECT_NE(Cached("histdisk45-900-mem.htm"), Cached("histdisk45-55-mem.htm"));
  EXPECT_EQ(Failures(), Lines{});
}

TEST_F(StorageCharts, EachDiskHasOneAndMemoryHasNone) {
  AddNetwork();
  AddStorages({{{"RecNo", "900"}, {"StorDescr", "'D:'"}}});
  const Lines written = WrittenBy([this] { Disks(); });
  ExpectedProduction expected(site);
  expected.DiskChart(17, "Logs", "/var/log", "histdisk45-17-_var_log.htm");
  expected.DiskChart(900, "Files", "C:", "histdisk45-900-C_.htm");
  expected.DiskChart(900, "Files", "D:", "histdisk45-900-D_.htm");
  EXPECT_EQ(written, expected.Names());
  ExpectCache(expected.Last());
  EXPECT_EQ(Failures(), Lines{});
}

TEST_F(StorageCharts, AServerHasAPauseAndTheWaitsOfAReportInTheBackground) {
  AddNetwork();
  EXPECT_EQ(WaitOf([this] { Memory(); }), 2 * ChartWait(2));
  EXPECT_EQ(WaitOf([this] { Disks(); }), 2 * ChartWait(2));
  History(
      "UPDATE Disk_HistCtrl SET StorageDate = '2000-01-01 03:10:00'"
      " WHERE HistTable = 'Disk_Day02'");
  EXPECT_EQ(WaitOf([this] { Memory(); }), 2 * ChartWait(1));
  EXPECT_EQ(WaitOf([this] { Disks(); }), 2 * ChartWait(1));
}

TEST_F(StorageCharts, EachChartIsStoredBeforeThePauseOfTheNext) {
  AddStorages({{{"RecNo", "1"}}, {{"RecNo", "2"}}});
  for (const auto& [action, first] :
       {std::pair<std::function<void()>, std::string>{[this] { Memory(); }, "histdisk45-1-mem.htm"},
        {[this] { Disks(); }, "histdisk45-1-C_.htm"}}) {
    Lines inTheSecond;
    for (const std::string& name : CacheFiles())
      site.installation.Remove("WebReports/Cache/" + name);
    InTheWait(static_cast<int>(ChartWait(2).count()) + 10, [&] { inTheSecond = CacheFiles(); });
    action();
    EXPECT_EQ(inTheSecond, Lines{first});
    EXPECT_EQ(CacheFiles().size(), 2u);
  }
}

TEST_F(StorageCharts, ServersStandInTheOrderOfTheirNumbers) {
  AddStorages({{{"RecNo", "20"}}, {{"RecNo", "3"}}, {{"RecNo", "100"}}, {{"RecNo", "-1"}}});
  EXPECT_EQ(WrittenBy([this] { Memory(); }),
            (Lines{"histdisk45--1-mem.htm", "histdisk45-3-mem.htm", "histdisk45-20-mem.htm",
                   "histdisk45-100-mem.htm"}));
  EXPECT_EQ(WrittenBy([this] { Disks(); }),
            (Lines{"histdisk45--1-C_.htm", "histdisk45-3-C_.htm", "histdisk45-20-C_.htm",
                   "histdisk45-100-C_.htm"}));
}

TEST_F(StorageCharts, DisksOfAServerStandInTheOrderInWhichTheyAreStored) {
  for (const char* disk : {"'D:'", "'/b'", "'C:'", "'/a'"}) AddDiskNamed(disk);
  EXPECT_EQ(WrittenBy([this] { Disks(); }),
            (Lines{"histdisk45-17-D_.htm", "histdisk45-17-_b.htm", "histdisk45-17-C_.htm",
                   "histdisk45-17-_a.htm"}));
}

TEST_F(StorageCharts, AServerOfTwoNamesIsBuiltForEachAndTheSecondStands) {
  AddStorages({{{"RecNo", "5"}, {"DevName", "'Zeta'"}},
               {{"RecNo", "5"}, {"DevName", "'Alpha'"}, {"StorDescr", "'D:'"}},
               {{"RecNo", "5"}, {"DevName", "'Zeta'"}, {"StorDescr", "'E:'"}}});
  EXPECT_EQ(WrittenBy([this] { Memory(); }), Lines(2, "histdisk45-5-mem.htm"));
  EXPECT_TRUE(Holds(Cached("histdisk45-5-mem.htm"), "Alpha"));
  EXPECT_FALSE(Holds(Cached("histdisk45-5-mem.htm"), "Zeta"));
}

TEST_F(StorageCharts, NamesOfAServerThatDifferInCaseAreOne) {
  AddStorages({{{"RecNo", "5"}, {"DevName", "'Files \xC3\xA4'"}},
               {{"RecNo", "5"}, {"DevName", "'FILES \xC3\x84'"}, {"StorDescr", "'D:'"}}});
  EXPECT_EQ(WrittenBy([this] { Memory(); }), Lines{"histdisk45-5-mem.htm"});
}

TEST_F(StorageCharts, AServerOfTheSameNameAsAnotherHasItsOwn) {
  AddStorages({{{"RecNo", "5"}}, {{"RecNo", "6"}}});
  EXPECT_EQ(WrittenBy([this] { Memory(); }),
            (Lines{"histdisk45-5-mem.htm", "histdisk45-6-mem.htm"}));
}

// Comparisons of a select ignore case: such a disk is told from memory nowhere else than there.
TEST_F(StorageCharts, ADiskThatIsCalledLikeMemoryHasNone) {
  for (const char* disk : {"'physical'", "'VIRTUAL'", "'Physical '", "'Virtual Memory'"}) {
    AddDiskNamed(disk);
  }
  EXPECT_EQ(WrittenBy([this] { Disks(); }),
            (Lines{"histdisk45-17-Physical .htm", "histdisk45-17-Virtual Memory.htm"}));
}

TEST_F(StorageCharts, WithoutATableOfYesterdayThereAreNone) {
  AddNetwork();
  for (const char* moment : {"2024-05-02 03:10:00", "2024-04-30 23:59:59", "2023-05-01 03:10:00"}) {
    History("UPDATE Disk_HistCtrl SET StorageDate = '" + std::string(moment) + "'");
    EXPECT_EQ(WaitOf([this] { Both(); }), kNoWait) << moment;
    EXPECT_EQ(CacheFiles(), Lines{}) << moment;
  }
  History("UPDATE Disk_HistCtrl SET StorageDate = NULL");
  Both();
  History("DELETE FROM Disk_HistCtrl");
  Both();
  EXPECT_EQ(CacheFiles(), Lines{});
  EXPECT_EQ(Failures(), Lines{});
}

TEST_F(StorageCharts, YesterdayIsTwentyThreeHoursAgo) {
  AddStorages({{{"RecNo", "1"}}});
  History(InsertStorageOfDay("Disk_Day03", {{"RecNo", "2"}}) +
          "UPDATE Disk_HistCtrl SET StorageDate = '2024-05-02 00:00:00'"
          " WHERE HistTable = 'Disk_Day03'");
  const struct {
    const char* now;
    Lines files;
  } kCases[] = {
      {"2024-05-02 00:00:00", {"histdisk45-1-C_.htm", "histdisk45-1-mem.htm"}},
      {"2024-05-02 22:59:58", {"histdisk45-1-C_.htm", "histdisk45-1-mem.htm"}},
      {"2024-05-02 23:00:00", {"histdisk45-2-C_.htm", "histdisk45-2-mem.htm"}},
      {"2024-05-03 22:00:00", {"histdisk45-2-C_.htm", "histdisk45-2-mem.htm"}},
  };
  for (const auto& row : kCases) {
    for (const std::string& name : CacheFiles())
      site.installation.Remove("WebReports/Cache/" + name);
    site.clock.Set(row.now);
    Memory();
    site.clock.Set(row.now);
    Disks();
    EXPECT_EQ(CacheFiles(), row.files) << row.now;
  }
}

TEST_F(StorageCharts, ThePartOfTheDayDoesNotCount) {
  AddStorages({{{"RecNo", "1"}}});
  for (const char* time : {"00:00:00", "23:59:59"}) {
    History("UPDATE Disk_HistCtrl SET StorageDate = '2024-05-01 " + std::string(time) +
            "' WHERE HistTable = 'Disk_Day01'");
    EXPECT_EQ(WrittenBy([this] { Memory(); }), Lines{"histdisk45-1-mem.htm"}) << time;
  }
}

TEST_F(StorageCharts, OfTwoTablesOfADayTheFirstCounts) {
  AddStorages({{{"RecNo", "1"}}});
  History(InsertStorageOfDay("Disk_Day03", {{"RecNo", "2"}}) +
          "UPDATE Disk_HistCtrl SET StorageDate = '2024-05-01 23:10:00'"
          " WHERE HistTable = 'Disk_Day03'");
  Both();
  EXPECT_EQ(CacheFiles(), (Lines{"histdisk45-1-C_.htm", "histdisk45-1-mem.htm"}));
}

TEST_F(StorageCharts, AReportDateIsReplayed) {
  AddStorages({{{"RecNo", "1"}}});
  History(InsertStorageOfDay("Disk_Day03", {{"RecNo", "2"}}) +
          "UPDATE Disk_HistCtrl SET StorageDate = '2014-11-06 03:10:00'"
          " WHERE HistTable = 'Disk_Day03'");
  site.settings.RepDateOverride = true;
  site.settings.txtRepDate = "2014-11-07";
  Both();
  EXPECT_EQ(CacheFiles(), (Lines{"histdisk45-2-C_.htm", "histdisk45-2-mem.htm"}));
}

TEST_F(StorageCharts, SlashesAndColonsOfADiskAreUnderscoresInItsFile) {
  const std::vector<std::pair<std::string, std::string>> kCases = {
      {"/var/log", "_var_log"},
      {"/", "_"},
      {"C:", "C_"},
      {"//a::b/:", "__a__b__"},
      {"C:/mount", "C__mount"},
      {"My Disk (D:)", "My Disk (D_)"},
      {"", ""},
      {".", "."},
      {"..", ".."},
      {"../../x", ".._.._x"},
      {"~new", "~new"},
      {"*?[a]", "*?[a]"},
      {"a\"b<c>&d|e", "a\"b<c>&d|e"},
      {"a_b-disk-c", "a_b-disk-c"},
      {"%2F", "%2F"},
  };
  for (const auto& [disk, name] : kCases) {
    History("DELETE FROM Disk_Day01");
    AddDiskNamed("'" + disk + "'");
    const std::string file = "histdisk45-17-" + name + ".htm";
    EXPECT_EQ(WrittenBy([this] { Disks(); }), Lines{file}) << disk;
    ExpectDisk(disk, file);
  }
  EXPECT_EQ(Failures(), Lines{});
}

TEST_F(StorageCharts, OfTwoDisksThatBecomeTheSameNameTheSecondStands) {
  AddDiskNamed("'/a/b'");
  AddStorages({{{"RecNo", "17"}, {"StorDescr", "'/a:b'"}, {"TotalM", "777"}, {"UsedM", "7"}}});
  EXPECT_EQ(WrittenBy([this] { Disks(); }), Lines(2, "histdisk45-17-_a_b.htm"));
  ExpectDisk("/a:b", "histdisk45-17-_a_b.htm");
  EXPECT_TRUE(Holds(Cached("histdisk45-17-_a_b.htm"), "777"));
}

TEST_F(StorageCharts, ADiskWithABackslashCannotBeStoredAndTheNextOnesAre) {
  for (const char* disk : {"'/a'", "'C:\\data'", "'\\\\?\\Volume'", "'/z'"}) AddDiskNamed(disk);
  EXPECT_EQ(WrittenBy([this] { Disks(); }),
            (Lines{"histdisk45-17-_a.htm", "histdisk45-17-_z.htm"}));
  EXPECT_EQ(Failures(), Lines(2, "modHtml_SaveToCache"));
  EXPECT_TRUE(Holds(site.Events()[0], "histdisk45-17-C_\\data.htm")) << site.Events()[0];
  EXPECT_EQ(CacheFiles().size(), 2u);
}

// Its name stands in the select of each day.
TEST_F(StorageCharts, ADiskWithAQuoteFailsOnEachDayThatHasATableAndIsStored) {
  AddDiskNamed("'it''s'");
  AddDiskNamed("'/z'");
  ExpectedProduction expected(site);
  expected.DiskChart(17, "Files", "it's", "histdisk45-17-it's.htm");
  expected.DiskChart(17, "Files", "/z", "histdisk45-17-_z.htm");
  EXPECT_EQ(WrittenBy([this] { Disks(); }), expected.Names());
  ExpectCache(expected.Last());
  EXPECT_EQ(Failures(), Lines(2, "modSelectSql_SqlHist45DiskStats"));
}

// A request names the file by bytes in the charset of the page that it came from.
TEST_F(StorageCharts, AFileIsNamedInTheCharsetOfThePages) {
  AddDiskNamed("'/B\xC3\xBCro'");
  Disks();
  EXPECT_EQ(CacheFiles(), Lines{"histdisk45-17-_B\xFCro.htm"});
  ExpectDisk("/B\xC3\xBCro", "histdisk45-17-_B\xFCro.htm");
  EXPECT_TRUE(Holds(Cached("histdisk45-17-_B\xFCro.htm"), "/B\xFCro"));
  site.settings.CharSet = "UTF-8";
  EXPECT_EQ(WrittenBy([this] { Disks(); }), Lines{"histdisk45-17-_B\xC3\xBCro.htm"});
  ExpectDisk("/B\xC3\xBCro", "histdisk45-17-_B\xC3\xBCro.htm");
}

// Its bytes there may be those of a slash, which no file name can have.
TEST_F(StorageCharts, ASlashThatOnlyTheCharsetMakesIsAnUnderscoreToo) {
  site.settings.CharSet = "ISO-2022-JP";
  AddDiskNamed("'\u304F'");
  ExpectedProduction expected(site);
  expected.DiskChart(17, "Files", "\u304F", "histdisk45-17-\x1B$B$_\x1B(B.htm");
  EXPECT_EQ(WrittenBy([this] { Disks(); }), expected.Names());
  ExpectCache(expected.Last());
  EXPECT_TRUE(Holds(expected.Files()[0].bytes, "\x1B$B$/\x1B(B"));
  EXPECT_EQ(Failures(), Lines{});
}

TEST_F(StorageCharts, ADiskWithALetterThatTheCharsetLacksIsFoundAllTheSame) {
  AddStorages({{{"RecNo", "17"}, {"StorDescr", "'/\xD0\x96'"}, {"TotalM", "777"}},
               {{"RecNo", "17"}, {"StorDescr", "'/\xD0\xAE'"}, {"TotalM", "888"}}});
  EXPECT_EQ(WrittenBy([this] { Disks(); }), Lines(2, "histdisk45-17-_?.htm"));
  ExpectDisk("/\xD0\xAE", "histdisk45-17-_?.htm");
  EXPECT_TRUE(Holds(Cached("histdisk45-17-_?.htm"), "888"));
}

TEST_F(StorageCharts, AServersNameIsInTheCharsetOfThePages) {
  AddStorages({{{"RecNo", "17"}, {"DevName", "'B\xC3\xBCro \xD0\x96'"}}});
  Both();
  for (const std::string& name : CacheFiles()) {
    EXPECT_TRUE(Holds(Cached(name), "B\xFCro ?")) << name;
  }
  EXPECT_EQ(CacheFiles().size(), 2u);
}

TEST_F(StorageCharts, ADiskMayHaveTheLongestNameThatAFileCanHave) {
  const std::string longest(255 - std::string("histdisk45-17-.htm").size(), 'a');
  AddDiskNamed("'" + longest + "'");
  AddDiskNamed("'" + longest + "b'");
  AddDiskNamed("'" + longest + longest + longest + "'");
  AddDiskNamed("'/z'");
  EXPECT_EQ(WrittenBy([this] { Disks(); }),
            (Lines{"histdisk45-17-" + longest + ".htm", "histdisk45-17-_z.htm"}));
  EXPECT_EQ(Failures(), Lines(2, "modHtml_SaveToCache"));
  EXPECT_EQ(CacheFiles().size(), 2u);
}

TEST_F(StorageCharts, AStorageWithoutANumberFailsBeforeAllOthers) {
  AddStorages({{{"RecNo", "1"}}, {{"RecNo", "NULL"}}});
  Memory();
  EXPECT_EQ(Failures(), Lines{kMemory});
  Disks();
  EXPECT_EQ(Failures(), (Lines{kMemory, kDisk}));
  EXPECT_EQ(CacheFiles(), Lines{});
}

TEST_F(StorageCharts, AServerWithoutANameEndsTheWalk) {
  AddStorages({{{"RecNo", "1"}}, {{"RecNo", "2"}, {"DevName", "NULL"}}, {{"RecNo", "3"}}});
  Both();
  EXPECT_EQ(Failures(), (Lines{kMemory, kDisk}));
  EXPECT_EQ(CacheFiles(), (Lines{"histdisk45-1-C_.htm", "histdisk45-1-mem.htm"}));
}

// No comparison holds for a null: the select leaves it out.
TEST_F(StorageCharts, AStorageWithoutADescriptionIsPassedOver) {
  AddStorages({{{"RecNo", "1"}}, {{"RecNo", "2"}, {"StorDescr", "NULL"}}, {{"RecNo", "3"}}});
  Both();
  EXPECT_EQ(Failures(), Lines{});
  EXPECT_EQ(CacheFiles(),
            (Lines{"histdisk45-1-C_.htm", "histdisk45-1-mem.htm", "histdisk45-2-mem.htm",
                   "histdisk45-3-C_.htm", "histdisk45-3-mem.htm"}));
}

TEST_F(StorageCharts, ANumberThatIsNoneOrTooLargeEndsTheWalk) {
  for (const char* recNo : {"'seven'", "3000000000"}) {
    site.ForgetEvents();
    History("DELETE FROM Disk_Day01");
    AddStorages({{{"RecNo", recNo}}});
    Both();
    EXPECT_EQ(Failures(), (Lines{kMemory, kDisk})) << recNo;
    EXPECT_EQ(CacheFiles(), Lines{}) << recNo;
  }
}

TEST_F(StorageCharts, ADayWithoutTheNameOfItsTableFails) {
  History("UPDATE Disk_HistCtrl SET HistTable = NULL WHERE HistTable = 'Disk_Day01'");
  Both();
  EXPECT_EQ(Failures(), (Lines{kMemory, kDisk}));
}

TEST_F(StorageCharts, ADayTableThatIsNotThereFails) {
  History("DROP TABLE Disk_Day01");
  Both();
  EXPECT_EQ(Failures(), (Lines{kMemory, kDisk}));
  for (const std::string& event : site.Events()) EXPECT_TRUE(Holds(event, "Disk_Day01")) << event;
  EXPECT_EQ(WaitOf([this] { Both(); }), std::chrono::milliseconds(2 * 500)) << "of the events";
}

TEST_F(StorageCharts, WithoutHistoryMdbEachWalkFailsUnderItsName) {
  site.installation.Remove("History.mdb");
  Both();
  EXPECT_EQ(Failures(), (Lines{kMemory, kDisk}));
  EXPECT_EQ(CacheFiles(), Lines{});
}

TEST_F(StorageCharts, AChartThatCannotBeStoredKeepsNoneOfTheOthersAway) {
  AddStorages({{{"RecNo", "1"}}, {{"RecNo", "2"}}});
  Block("histdisk45-1-mem.htm");
  Block("histdisk45-1-C_.htm");
  Both();
  EXPECT_EQ(NotStored(), (Lines{"histdisk45-1-mem.htm", "histdisk45-1-C_.htm"}));
  EXPECT_TRUE(IsStored("histdisk45-2-mem.htm"));
  EXPECT_TRUE(IsStored("histdisk45-2-C_.htm"));
}

// A walk has the rows that were there at its start; the next one looks anew.
TEST_F(StorageCharts, StoragesThatGoInThePausesOfAWalkDoNotHarmIt) {
  AddStorages({{{"RecNo", "1"}}, {{"RecNo", "2"}}, {{"RecNo", "3"}}});
  InTheWait(10, [this] { History("DELETE FROM Disk_Day01 WHERE RecNo <> 1"); });
  EXPECT_EQ(WrittenBy([this] { Memory(); }),
            (Lines{"histdisk45-1-mem.htm", "histdisk45-2-mem.htm", "histdisk45-3-mem.htm"}));
  EXPECT_EQ(WrittenBy([this] { Disks(); }), Lines{"histdisk45-1-C_.htm"});
  EXPECT_EQ(Failures(), Lines{});
}

}  // namespace
}  // namespace quillon
