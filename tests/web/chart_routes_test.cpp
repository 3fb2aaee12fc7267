// The charts of a port under the table from which their link was followed: which files they come
// from and leave, the form without a table, and URLs that are none.
#include "web/chart_routes.h"

#include <gtest/gtest.h>

#include <string>

#include "web/chart_site.h"

namespace quillon {
namespace {

const std::string kTable = "switch-access-port-top10-involume.htm";
const std::string kUrl = "hist45-7-4-" + kTable;
const std::string kChartFile = "hist45-7-4.htm";

class ChartRoutes : public ChartSite {
 protected:
  std::string Charts(ConnectionId slot = 1) const { return ExpectedPortCharts(site.render, slot); }
};

TEST_F(ChartRoutes, ChartsFollowTheStoredTableAndAreStoredByThemselves) {
  Store(kTable, "table \xE4");
  const std::string response = Get(kUrl);
  EXPECT_EQ(response, Closed("table \xE4" + Charts()));
  EXPECT_TRUE(Holds(response, "<td width='190px'>sw7</td>"));
  EXPECT_TRUE(Holds(response, "<td width='200px'>Gi0/1</td>"));
  EXPECT_TRUE(Holds(response, kSeven));
  EXPECT_EQ(Stored(kChartFile), Charts());
  EXPECT_EQ(Stored(kTable), "table \xE4");
  EXPECT_EQ(CacheFiles(), (Names{kChartFile, kTable}));
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(ChartRoutes, StoredChartsAreServedWithoutADatabase) {
  Store(kTable, "table \xE4");
  Store(kChartFile, "chart \xF6");
  RemoveDatabases();
  EXPECT_EQ(Get(kUrl), Closed("table \xE4"
                              "chart \xF6"));
  EXPECT_EQ(Stored(kChartFile), "chart \xF6");
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(ChartRoutes, ChartsThatOneTableBroughtServeTheOthers) {
  const std::string other = "switch-trunk-port-top10-outerrors.htm";
  Store(kTable, "one");
  Store(other, "other");
  Get(kUrl);
  RemoveDatabases();
  EXPECT_EQ(Get("hist45-7-4-" + other), Closed("other" + Stored(kChartFile)));
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(ChartRoutes, AnEmptyChartFileCountsAsStored) {
  Store(kTable, "table");
  Store(kChartFile, "");
  EXPECT_EQ(Get(kUrl), Closed("table"));
  EXPECT_EQ(Stored(kChartFile), "");
}

TEST_F(ChartRoutes, ALinkOfAListLeadsToTheListWithChartsBelow) {
  site.Get(kTable);
  const std::string list = Stored(kTable);
  ASSERT_TRUE(Holds(list, "<a href=" + kUrl + ">sw7</a>"));
  const std::string response = Get(kUrl);
  EXPECT_EQ(response, Closed(list + Charts()));
}

TEST_F(ChartRoutes, ATableThatIsMissingLeavesTheChartsAloneAndAnEmptyFile) {
  const std::string response = Get(kUrl);
  EXPECT_EQ(response, Closed(Charts()));
  EXPECT_TRUE(Holds(Charts(), kSeven));
  EXPECT_EQ(CacheFiles(), (Names{kChartFile, kTable}));
  EXPECT_EQ(Stored(kTable), "");
  EXPECT_EQ(Get(kTable), Closed("")) << "the empty file counts as the list";
  EXPECT_EQ(Get(kUrl), Closed(Stored(kChartFile)));
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(ChartRoutes, TheShortFormIsAPageOfItsOwnThatIsNotStored) {
  const std::string response = Get(kChartFile);
  EXPECT_EQ(response, Closed(PageOfItsOwn(1)));
  EXPECT_TRUE(Holds(response, kSeven));
  EXPECT_EQ(CacheFiles(), Names{});
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(ChartRoutes, TheShortFormIsNotReadFromTheCache) {
  Store(kChartFile, "stored");
  const std::string response = Get(kChartFile);
  EXPECT_EQ(response, Closed(PageOfItsOwn(1)));
  EXPECT_EQ(Stored(kChartFile), "stored");
}

TEST_F(ChartRoutes, AUrlWithoutAWordOfAStoredPageIsAShortForm) {
  for (const char* url :
       {"hist45-7-4-", "hist45-7-4-.htm", "hist45-7-4-search-1.htm", "hist45-7-4-Switch-a.htm",
        "hist45-7-4-disk.htm", "hist45-7-4.html", "hist45-7-4.htm?x.htm", "any/hist45-7-4.htm",
        "xhist45-7-4.htm", "hist45-7-4-hist45-8-5.htm", "select?report=hist45-7-4.htm"}) {
    const std::string response = Get(url);
    EXPECT_EQ(response, Closed(PageOfItsOwn(1))) << url;
    EXPECT_TRUE(Holds(response, kSeven)) << url;
  }
  const std::string withoutVersion = Answer("GET /" + kUrl + "\r\n\r\n");
  EXPECT_EQ(withoutVersion, Closed(PageOfItsOwn(1)));
  EXPECT_EQ(CacheFiles(), Names{});
}

TEST_F(ChartRoutes, TheWordOfTheTableIsLookedForInAllOfTheFirstLine) {
  const struct {
    const char* url;
    const char* table;
  } kCases[] = {
      {"switch-b?hist45-7-4.htm", "switch-b?hist45-7-4.htm"},
      {"hist45-7-4-disk-unix-top10-x.htm", "disk-unix-top10-x.htm"},
      {"hist45-7-4-switch-c-disk-d.htm", "disk-d.htm"},
      {"hist45-7-4-hist45d-switch-access-port-summary.htm", "switch-access-port-summary.htm"},
      {"hist45-7-4-switch-access-port-top10-%2e%2e.htm", "switch-access-port-top10-%2e%2e.htm"},
      {"hist45-7-4-switch a.htm", "switch a.htm"},
      {"select?report=hist45-7-4-switch-e.htm", "switch-e.htm"},
      {"hist45-7-4-switch-f.htm ", "switch-f.htm"},
      {"hist45-7-4-switch-HTTP.htm", "switch"},
  };
  for (const auto& row : kCases) {
    Store(row.table, std::string("table ") + row.table);
    const std::string response = Get(row.url);
    EXPECT_EQ(response, Closed(std::string("table ") + row.table + Stored(kChartFile))) << row.url;
    EXPECT_TRUE(Holds(Stored(kChartFile), kSeven)) << row.url;
  }
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(ChartRoutes, TheNameOfTheChartFileHasTheConvertedNumbers) {
  Store("switch-a.htm", "table");
  for (const char* url : {"hist45-007-0004-switch-a.htm", "hist45-7-004-switch-a.htm",
                          "hist45-00000000000000000007-4-switch-a.htm"}) {
    EXPECT_TRUE(Holds(Get(url), kSeven)) << url;
    EXPECT_EQ(CacheFiles(), (Names{kChartFile, "switch-a.htm"})) << url;
    site.installation.Remove("WebReports/Cache/" + kChartFile);
  }
  Store(kChartFile, "stored");
  EXPECT_EQ(Get("hist45-007-04-switch-a.htm"), Closed("tablestored"));
}

TEST_F(ChartRoutes, TheLargestNumberIsThatOf32Bits) {
  Store("switch-a.htm", "table");
  Get("hist45-2147483647-2147483647-switch-a.htm");
  EXPECT_TRUE(Holds(Stored("hist45-2147483647-2147483647.htm"), "<td width='190px'>n/a</td>"));
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(ChartRoutes, AUrlThatLacksADashOrTheEndOfAPageGivesUp) {
  for (const char* url :
       {"hist45-", "hist45-.htm", "hist45-12.htm", "hist45-12", "hist45-x.htm", "hist45-12-34",
        "hist45-12-", "hist45-12-34.ht", "hist45-12-34.HTM", "hist45-12-34x", "hist45-12-x"}) {
    EXPECT_EQ(Get(url), "") << url;
  }
  EXPECT_EQ(Failures(), Names{});
  EXPECT_EQ(CacheFiles(), Names{});
}

TEST_F(ChartRoutes, ANumberThatIsNoneFailsAndNothingIsSent) {
  Names expected;
  for (const char* url : {"hist45--4.htm",
                          "hist45-7--switch-a.htm",
                          "hist45-7-.htm",
                          "hist45--7-4.htm",
                          "hist45-7--4.htm",
                          "hist45-x-4.htm",
                          "hist45-12x-4.htm",
                          "hist45-7-x.htm",
                          "hist45-7-4x.htm",
                          "hist45-7-4x-switch-a.htm",
                          "hist45-0x7-4.htm",
                          "hist45-7,0-4.htm",
                          "hist45-%37-4.htm",
                          "hist45-7/-4.htm",
                          "hist45-7-../4.htm",
                          "hist45-7-[4].htm",
                          "hist45-12345678901-4.htm",
                          "hist45-2147483648-4.htm",
                          "hist45-7-2147483648-switch-a.htm",
                          "hist45-7-99999999999999999999.htm",
                          "hist45-7-4.htm-switch-a.htm",
                          "hist45-7-4.htm?switch-a.htm",
                          "hist45-7-4?a.htm"}) {
    EXPECT_EQ(Get(url), "") << url;
    expected.emplace_back("frmQuillonWeb_tcpServer_DataIn");
    EXPECT_EQ(Failures(), expected) << url;
  }
  EXPECT_EQ(CacheFiles(), Names{});
}

TEST_F(ChartRoutes, TheFirstNumberIsConvertedBeforeTheSecondOneIsLookedFor) {
  for (const char* url : {"hist45-12x-34", "hist45--", "hist45-99999999999-"}) {
    site.ForgetEvents();
    EXPECT_EQ(Get(url), "") << url;
    EXPECT_EQ(Failures(), Names{"frmQuillonWeb_tcpServer_DataIn"}) << url;
  }
}

TEST_F(ChartRoutes, TheLogTellsWhatCameFromTheCache) {
  site.settings.DebugMode = true;
  Store(kTable, "table");
  site.Get(kUrl);
  site.Get(kUrl);
  site.Get(kChartFile);
  site.Get("hist45-8-5-switch-missing.htm");
  EXPECT_EQ(FromCache(), (Names{"TF", "TT", "FF", "TF"}));
}

TEST_F(ChartRoutes, AnUnknownPortHasNoNamesAndChartsWithoutFigures) {
  const std::string response = Get("hist45-99-1.htm");
  EXPECT_EQ(response, Closed(PageOfItsOwn(1)));
  EXPECT_TRUE(Holds(response, "<td width='190px'>n/a</td>"));
  EXPECT_TRUE(Holds(response, "<td width='200px'>n/a</td>"));
  EXPECT_TRUE(Holds(response, "W22: -<br>W23: -</div>"));
  EXPECT_FALSE(Holds(response, " W44)"));
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(ChartRoutes, WithoutReportsMdbThePortHasNoNamesAndItsFiguresAll) {
  site.installation.Remove("Reports.mdb");
  const std::string response = Get(kChartFile);
  EXPECT_EQ(response, Closed(PageOfItsOwn(1)));
  EXPECT_TRUE(Holds(response, "<td width='190px'></td>"));
  EXPECT_TRUE(Holds(response, "<td width='200px'></td>"));
  EXPECT_TRUE(Holds(response, kSeven));
  EXPECT_EQ(Failures(), Names{"modSelectSql_SqlPortNameLookup"});
}

TEST_F(ChartRoutes, WithoutHistoryMdbThePageHasWhatTheRecordHolds) {
  site.installation.Remove("History.mdb");
  Store(kTable, "table");
  const std::string charts = ExpectedPortCharts(Untouched(), 1);
  EXPECT_EQ(Get(kUrl), Closed("table" + charts));
  EXPECT_EQ(Stored(kChartFile), charts);
  EXPECT_EQ(Failures(), Names{"modSelectSql_SqHist45SwitchControl"});
}

TEST_F(ChartRoutes, ATableWhoseNameIsNoneOfAFileLeavesTheChartsAlone) {
  site.installation.Write("WebReports/secret.htm", "secret");
  MakeDoor("switch");
  for (const std::string& table :
       Names{"switch/../../secret.htm", "switch/..", "switch/", "switch\\..\\x.htm",
             std::string("switch\0.htm", 11), "switch-" + std::string(256, 'x')}) {
    site.ForgetEvents();
    const std::string response = Get("hist45-7-4-" + table);
    EXPECT_EQ(response, Closed(Stored(kChartFile))) << table;
    EXPECT_TRUE(Holds(response, kSeven)) << table;
    EXPECT_EQ(Failures(), Names{"modHtml_ReadFromCache"}) << table;
    EXPECT_EQ(CacheFiles(), (Names{kChartFile, "switch"})) << table;
  }
  EXPECT_EQ(site.installation.Read("WebReports/secret.htm"), "secret");
}

TEST_F(ChartRoutes, WithoutAFolderForPagesTheChartsAreSentAllTheSame) {
  RemoveCacheFolder();
  const std::string response = Get(kUrl);
  EXPECT_EQ(response, Closed(Charts()));
  EXPECT_TRUE(Holds(response, kSeven));
  EXPECT_EQ(Failures(), (Names{"modHtml_SaveToCache", "modHtml_ReadFromCache"}));
}

TEST_F(ChartRoutes, NamesAreStoredInTheCharsetOfThePages) {
  Reports("UPDATE VLAN SET DevName = 'B\xC3\xBCro \xD0\x96 <1> & ''2''' WHERE RecNo = 7");
  Store(kTable, "table");
  const std::string built = Get(kUrl);
  EXPECT_TRUE(Holds(built, "<td width='190px'>B\xFCro ? <1> & '2'</td>"));
  EXPECT_TRUE(Holds(Stored(kChartFile), "<td width='190px'>B\xFCro ? <1> & '2'</td>"));
  EXPECT_EQ(Get(kUrl), built);
}

}  // namespace
}  // namespace quillon
