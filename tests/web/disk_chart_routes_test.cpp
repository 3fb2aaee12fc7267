// The chart of a disk or of a server's memory under the page from which its link was followed:
// both come from the cache alone, so the databases are gone.
#include <gtest/gtest.h>

#include <string>

#include "web/chart_site.h"

namespace quillon {
namespace {

class DiskChartRoutes : public ChartSite {
 protected:
  DiskChartRoutes() { RemoveDatabases(); }

  // Expects that the URL gives the stored page and below it the stored chart of this name.
  void ExpectChart(const std::string& url, const std::string& page, const std::string& chart) {
    Store(page, "page " + page);
    Store(chart, "chart " + chart);
    const Names files = CacheFiles();
    EXPECT_EQ(Get(url), Closed("page " + page + "chart " + chart)) << url;
    EXPECT_EQ(CacheFiles(), files) << url;
  }
};

TEST_F(DiskChartRoutes, TheStoredChartFollowsTheStoredPage) {
  const struct {
    const char* url;
    const char* page;
    const char* chart;
  } kCases[] = {
      {"histdisk45-900-C_-disk-windows-top10-usedpercent-desc.htm",
       "disk-windows-top10-usedpercent-desc.htm", "histdisk45-900-C_.htm"},
      {"histdisk45-900-_-disk-unix-top10-trend30d-asc.htm", "disk-unix-top10-trend30d-asc.htm",
       "histdisk45-900-_.htm"},
      {"histdisk45-900-_var_log-disk-unix-top10-a.htm", "disk-unix-top10-a.htm",
       "histdisk45-900-_var_log.htm"},
      {"histdisk45-900-mem-disk-physical-top10-a.htm", "disk-physical-top10-a.htm",
       "histdisk45-900-mem.htm"},
      {"histdisksearch45-900-C_-disk-search-3.htm", "disk-search-3.htm", "histdisk45-900-C_.htm"},
      {"histdisksearch45-900-mem-disk-search-19.htm", "disk-search-19.htm",
       "histdisk45-900-mem.htm"},
      {"select?report=histdisk45-1-D_-disk-a.htm", "disk-a.htm", "histdisk45-1-D_.htm"},
      {"any/histdisksearch45-1-D_-disk-a.htm", "disk-a.htm", "histdisk45-1-D_.htm"},
      {"histdisk45-2147483647-E_-disk-a.htm", "disk-a.htm", "histdisk45-2147483647-E_.htm"},
  };
  for (const auto& row : kCases) ExpectChart(row.url, row.page, row.chart);
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(DiskChartRoutes, TheNameOfADiskIsTakenAsItStands) {
  for (const std::string& disk : Names{"My Disk (D_)",
                                       "My%20Disk",
                                       "%2e%2e",
                                       "[C_]",
                                       "a[!b]*?",
                                       "..",
                                       ".",
                                       "",
                                       "it's",
                                       "\"quoted\"",
                                       "<b>&amp;",
                                       "\xE4\xF6\xFC",
                                       "\xC3\xA4",
                                       "a-b",
                                       "-",
                                       "a+b",
                                       "C__Label_Serial Number 1a2b",
                                       "x.htm",
                                       "switch",
                                       "MEM"}) {
    ExpectChart("histdisk45-900-" + disk + "-disk-a.htm", "disk-a.htm",
                "histdisk45-900-" + disk + ".htm");
    ExpectChart("histdisksearch45-900-" + disk + "-disk-search-1.htm", "disk-search-1.htm",
                "histdisk45-900-" + disk + ".htm");
  }
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(DiskChartRoutes, TheNameEndsAtItsFirstDashDiskDash) {
  ExpectChart("histdisk45-900-a-disk-b-disk-c.htm", "disk-b-disk-c.htm", "histdisk45-900-a.htm");
  ExpectChart("histdisk45-900--disk-c.htm", "disk-c.htm", "histdisk45-900-.htm");
}

TEST_F(DiskChartRoutes, APageIsNamedFromTheFirstDiskDashOnAlsoInsideOfADisksName) {
  ExpectChart("histdisk45-900-_mnt_disk-1-disk-unix-top10-a.htm", "disk-1-disk-unix-top10-a.htm",
              "histdisk45-900-_mnt_disk-1.htm");
  ExpectChart("histdisk45-900-disk-disk-a.htm", "disk-disk-a.htm", "histdisk45-900-disk.htm");
}

TEST_F(DiskChartRoutes, TheNameOfTheChartFileHasTheConvertedNumber) {
  ExpectChart("histdisk45-0900-C_-disk-a.htm", "disk-a.htm", "histdisk45-900-C_.htm");
  ExpectChart("histdisksearch45-007-C_-disk-a.htm", "disk-a.htm", "histdisk45-7-C_.htm");
  ExpectChart("histdisk45-00000000000000000000-C_-disk-a.htm", "disk-a.htm", "histdisk45-0-C_.htm");
}

TEST_F(DiskChartRoutes, WithoutAStoredChartThePageStandsAlone) {
  Store("disk-a.htm", "page \xE4");
  Store("histdisksearch45-900-C_.htm", "no chart file");
  for (const char* url : {"histdisk45-900-C_-disk-a.htm", "histdisksearch45-900-C_-disk-a.htm",
                          "histdisk45-900-mem-disk-a.htm"}) {
    EXPECT_EQ(Get(url), Closed("page \xE4")) << url;
  }
  EXPECT_EQ(CacheFiles(), (Names{"disk-a.htm", "histdisksearch45-900-C_.htm"}));
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(DiskChartRoutes, WithoutAStoredPageTheChartStandsAloneAndAnEmptyFileIsLeft) {
  Store("histdisk45-900-C_.htm", "chart");
  EXPECT_EQ(Get("histdisk45-900-C_-disk-unix-top10-a.htm"), Closed("chart"));
  EXPECT_EQ(CacheFiles(), (Names{"disk-unix-top10-a.htm", "histdisk45-900-C_.htm"}));
  EXPECT_EQ(Stored("disk-unix-top10-a.htm"), "");
  EXPECT_EQ(Get("disk-unix-top10-a.htm"), Closed("")) << "the empty file counts as the page";
}

TEST_F(DiskChartRoutes, WithoutBothThePageIsItsFooter) {
  EXPECT_EQ(Get("histdisk45-900-C_-disk-a.htm"), Closed(""));
  EXPECT_EQ(CacheFiles(), Names{"disk-a.htm"});
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(DiskChartRoutes, ARequestLineWithoutItsVersionNamesNoPageAndNoChart) {
  Store("disk-a.htm", "page");
  Store("histdisk45-900-C_.htm", "chart");
  for (const char* url : {"histdisk45-900-C_-disk-a.htm", "histdisksearch45-900-C_-disk-a.htm"}) {
    EXPECT_EQ(Answer("GET /" + std::string(url) + "\r\n\r\n"), Closed("")) << url;
  }
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(DiskChartRoutes, AUrlThatLacksADashOrItsPageGivesUp) {
  for (const std::string& route : Names{"histdisk45-", "histdisksearch45-"}) {
    for (const char* rest :
         {"", ".htm", "900", "900.htm", "x", "900-C_.htm", "900-mem.htm", "900-disk-a.htm",
          "900-C_-DISK-a.htm", "900-C_-disk", "900-C_-search-1.htm", "900-C_ disk-a.htm",
          "900-C_-disk_a.htm", "900-"}) {
      EXPECT_EQ(Get(route + rest), "") << route + rest;
    }
  }
  EXPECT_EQ(Failures(), Names{});
  EXPECT_EQ(CacheFiles(), Names{});
}

TEST_F(DiskChartRoutes, ANumberThatIsNoneFailsAlsoWhereThePageIsMissing) {
  Names expected;
  for (const std::string& route : Names{"histdisk45-", "histdisksearch45-"}) {
    for (const char* rest :
         {"-C_-disk-a.htm", "-900-C_-disk-a.htm", "x-C_-disk-a.htm", "900x-C_-disk-a.htm",
          "12345678901-C_-disk-a.htm", "2147483648-C_-disk-a.htm", "%39-C_-disk-a.htm", "x-C_.htm",
          "99999999999-C_.htm", "-", "9/0-C_-disk-a.htm", "disk-a.htm"}) {
      EXPECT_EQ(Get(route + rest), "") << route + rest;
      expected.emplace_back("frmQuillonWeb_tcpServer_DataIn");
      EXPECT_EQ(Failures(), expected) << route + rest;
    }
  }
  EXPECT_EQ(CacheFiles(), Names{});
}

TEST_F(DiskChartRoutes, AVersionInTheNameOfADiskStandsBeforeThePageAndFails) {
  Store("disk-a.htm", "page");
  EXPECT_EQ(Get("histdisk45-900-HTTP-disk-a.htm"), "");
  EXPECT_EQ(Failures(), Names{"frmQuillonWeb_tcpServer_DataIn"});
}

TEST_F(DiskChartRoutes, NoWayLeadsOutOfTheFolder) {
  site.installation.Write("WebReports/secret.htm", "secret");
  Store("disk-a.htm", "page");
  for (const char* door : {"histdisk45-900-", "histdisk45-900-x", "disk-x"}) MakeDoor(door);
  const Names files = CacheFiles();
  for (const std::string& disk : Names{"/../../secret", "x/../../secret", "x\\..\\..\\secret", "x/",
                                       "/", std::string("x\0", 2), std::string(300, 'x')}) {
    EXPECT_EQ(Get("histdisk45-900-" + disk + "-disk-a.htm"), Closed("page")) << disk;
  }
  EXPECT_EQ(Failures(), Names{});
  for (const std::string& page :
       Names{"disk-x/../../secret.htm", "disk-x/../disk-a.htm", "disk-x/", "disk-x\\..\\disk-a.htm",
             std::string("disk-a.htm\0", 11), "disk-" + std::string(300, 'x')}) {
    site.ForgetEvents();
    EXPECT_EQ(Get("histdisk45-900-C_-" + page), Closed("")) << page;
    EXPECT_EQ(Failures(), Names{"modHtml_ReadFromCache"}) << page;
  }
  EXPECT_EQ(CacheFiles(), files);
}

TEST_F(DiskChartRoutes, ChartsOfPortsAndSummariesComeFirst) {
  Store("disk-a.htm", "page");
  Store("hist45-7-4.htm", "charts of a port");
  EXPECT_EQ(Get("histdisk45-900-hist45-7-4-disk-a.htm"), Closed("pagecharts of a port"));
  Store("disk-x-port-summary", "summary");
  EXPECT_EQ(Get("histdisk45-900-C_-disk-x-port-summary"), Closed("summary"));
}

TEST_F(DiskChartRoutes, TheLogTellsWhatCameFromTheCache) {
  site.settings.DebugMode = true;
  Store("disk-a.htm", "page");
  Store("histdisk45-900-C_.htm", "chart");
  site.Get("histdisk45-900-C_-disk-a.htm");
  site.Get("histdisksearch45-900-C_-disk-a.htm");
  site.Get("histdisk45-900-D_-disk-a.htm");
  site.Get("histdisk45-900-D_-disk-missing.htm");
  EXPECT_EQ(FromCache(), (Names{"TT", "TT", "TF", "TF"}));
}

}  // namespace
}  // namespace quillon
