// Charts under the result of a search: a link of its table leads to the stored result with the
// charts below.
#include <gtest/gtest.h>

#include <string>

#include "web/search_site.h"

namespace quillon {
namespace {

class SearchCharts : public SearchSite {
 protected:
  static inline const std::vector<Search> kPortSearches = {kMacSearch, kNameSearch, kAliasSearch};

  // The URL of the first link to a chart on a page.
  static std::string FirstUrl(const std::string& page) {
    const Names links = Links(page);
    return links.empty() ? "" : links[0].substr(0, links[0].find('>'));
  }
  std::string Ask(RawClient& client, const std::string& url) {
    return site.Exchange(client, Site::Request(url));
  }
};

TEST_F(SearchCharts, ALinkOfAResultLeadsToTheResultWithThePortsChartsBelow) {
  const auto client = site.Connect();
  for (const Search& search : kPortSearches) {
    const std::string url = FirstUrl(Post(*client, search));
    ASSERT_EQ(url, search.found[0].link + StoredName(search, 1));
    const std::string result = Stored(StoredName(search, 1));
    const std::string response = Ask(*client, url);
    const std::string charts = ExpectedPortCharts(site.render, 1);
    EXPECT_EQ(response, Closed(result + charts)) << url;
    EXPECT_TRUE(Holds(response, search.found[0].device == "sw7" ? kSeven : kEight)) << url;
    EXPECT_EQ(Stored(search.found[0].link.substr(0, 10) + ".htm"), charts) << url;
    EXPECT_EQ(Stored(StoredName(search, 1)), result) << url;
  }
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SearchCharts, StoredChartsAndResultsNeedNoDatabase) {
  const auto client = site.Connect();
  for (const Search& search : kPortSearches) Post(*client, search);
  RemoveDatabases();
  Store("hist45-7-4.htm", "charts");
  for (const Search& search : kPortSearches) {
    EXPECT_EQ(Ask(*client, "hist45-7-4-" + StoredName(search, 1)),
              Closed(Stored(StoredName(search, 1)) + "charts"));
  }
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SearchCharts, ALinkOfADiskSearchLeadsToTheResultWithTheStoredChartBelow) {
  Store("histdisk45-901-_var_log.htm", "chart of a disk");
  Store("histdisk45-901-mem.htm", "chart of memory");
  const auto client = site.Connect();
  const Names links = Links(Post(*client, kDiskSearch));
  const std::string result = Stored("disk-search-1.htm");
  const Names charts = {"chart of a disk", "", "chart of memory"};
  ASSERT_EQ(links.size(), charts.size());
  for (std::size_t i = 0; i < links.size(); ++i) {
    const std::string url = links[i].substr(0, links[i].find('>'));
    EXPECT_EQ(Ask(*client, url), Closed(result + charts[i])) << url;
  }
  EXPECT_EQ(Stored("disk-search-1.htm"), result);
  EXPECT_EQ(CacheFiles(),
            (Names{"disk-search-1.htm", "histdisk45-901-_var_log.htm", "histdisk45-901-mem.htm"}));
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SearchCharts, TheChartsFollowTheLastSearchOfTheConnection) {
  const auto client = site.Connect();
  for (const Search& search : kPortSearches) {
    const std::string url = FirstUrl(Post(*client, search));
    Post(*client, search.name, search.miss);
    const std::string response = Ask(*client, url);
    EXPECT_EQ(Links(response), Names{}) << url;
    EXPECT_TRUE(Holds(response, search.found[0].device == "sw7" ? kSeven : kEight)) << url;
  }
}

TEST_F(SearchCharts, AnotherConnectionReachesTheResultByItsName) {
  const auto first = site.Connect();
  const auto second = site.Connect();
  for (const Search& search : kPortSearches) {
    const std::string url = FirstUrl(Post(*first, search));
    Post(*second, search.name, search.miss);
    const std::string response = Ask(*second, url);
    EXPECT_EQ(Links(response), Links(search, 1, search.found)) << url;
    EXPECT_EQ(Ask(*first, url), response);
  }
}

TEST_F(SearchCharts, AResultThatWasClearedLeavesTheChartsAloneUntilTheNextSearch) {
  const auto client = site.Connect();
  for (const Search& search : kPortSearches) {
    const std::string url = FirstUrl(Post(*client, search));
    site.installation.Remove("WebReports/Cache/" + StoredName(search, 1));
    const std::string response = Ask(*client, url);
    EXPECT_EQ(response, Closed(ExpectedPortCharts(site.render, 1))) << url;
    EXPECT_EQ(Stored(StoredName(search, 1)), "");
    Post(*client, search);
    EXPECT_EQ(Links(Ask(*client, url)), Links(search, 1, search.found)) << url;
    site.installation.Remove("WebReports/Cache/hist45-8-5.htm");
    site.installation.Remove("WebReports/Cache/hist45-7-4.htm");
  }
}

TEST_F(SearchCharts, TheNameOfADiskIsItsLinkWithoutSlashesAndColons) {
  History("DELETE FROM Disk_Day01;" +
          InsertStorageOfDay("Disk_Day01",
                             {{"StorDescr", "'/mnt/B\xC3\xBCro ''a'' [1]: & \xD0\x96'"}}));
  const std::string link = "_mnt_B\xFCro 'a' [1]_ & ?";
  Store("histdisk45-900-" + link + ".htm", "chart");
  const auto client = site.Connect();
  const Names links = Links(Post(*client, kDiskSearch));
  EXPECT_EQ(links, Names{"histdisksearch45-900-" + link + "-disk-search-1.htm>Files"});
  EXPECT_EQ(Ask(*client, "histdisksearch45-900-" + link + "-disk-search-1.htm"),
            Closed(Stored("disk-search-1.htm") + "chart"));
}

TEST_F(SearchCharts, TheLogTellsThatTheResultCameFromTheCache) {
  site.settings.DebugMode = true;
  const auto client = site.Connect();
  const std::string ports = FirstUrl(Post(*client, kNameSearch));
  const std::string disks = FirstUrl(Post(*client, kDiskSearch));
  Store("histdisk45-901-_var_log.htm", "chart");
  for (const std::string& url : {ports, ports, disks}) Ask(*client, url);
  EXPECT_EQ(FromCache(), (Names{"FF", "FF", "TF", "TT", "TT"}));
}

}  // namespace
}  // namespace quillon
