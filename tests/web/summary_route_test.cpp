// The summary of all access ports or all trunk ports: built or stored, and the URLs that lead to
// it without naming either.
#include <gtest/gtest.h>

#include <string>

#include "web/chart_site.h"

namespace quillon {
namespace {

const std::string kAccessFile = "switch-access-port-summary.htm";
const std::string kTrunkFile = "switch-trunk-port-summary.htm";
const std::string kAccessKey = "switch-access-port-summary";
const std::string kTrunkKey = "switch-trunk-port-summary";

class SummaryRoutes : public ChartSite {
 protected:
  // The page of a kind as the record of connection 1 has it.
  std::string Page(const std::string& reportKey) const {
    return Summary(site.render, reportKey, 1);
  }
  // The page of a name that is of no kind.
  std::string PageOfNoKind(const RenderContext& render, ConnectionId slot = 1) const {
    std::string page;
    TopHeader_End(render, page);
    return page + ExpectedSummaryCharts(render, slot);
  }
};

TEST_F(SummaryRoutes, ASummaryHasTheFiguresOfItsKindAndIsStoredWithoutItsFooter) {
  const struct {
    std::string key;
    std::string file;
    std::string_view shown;
    std::string_view hidden;
    const char* report;
  } kCases[] = {{kAccessKey, kAccessFile, kAccess, kTrunk, "<td width='190px'>W34</td>"},
                {kTrunkKey, kTrunkFile, kTrunk, kAccess, "<td width='190px'>W35</td>"}};
  for (const auto& row : kCases) {
    const std::string response = Get("hist45d-" + row.file);
    EXPECT_EQ(response, Closed(Page(row.key))) << row.key;
    EXPECT_EQ(Stored(row.file), Page(row.key)) << row.key;
    EXPECT_TRUE(Holds(response, row.shown)) << row.key;
    EXPECT_FALSE(Holds(response, row.hidden)) << row.key;
    EXPECT_TRUE(Holds(response, row.report)) << row.key;
    const std::string mark = "<option selected='selected' value='hist45d-" + row.file + "'>";
    EXPECT_TRUE(Holds(response, mark)) << row.key;
  }
  EXPECT_EQ(CacheFiles(), (Names{kAccessFile, kTrunkFile}));
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SummaryRoutes, AStoredSummaryIsServedWithoutADatabase) {
  RemoveDatabases();
  for (const std::string& file : {kAccessFile, kTrunkFile}) {
    Store(file, "stored \xE4" + file);
    for (const std::string& url : {"hist45d-" + file, file, "select?report=hist45d-" + file}) {
      EXPECT_EQ(Get(url), Closed("stored \xE4" + file)) << url;
    }
    Store(file, "");
    EXPECT_EQ(Get("hist45d-" + file), Closed("")) << "an empty file counts";
  }
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SummaryRoutes, OneSummaryIsStoredForAllOfItsUrls) {
  for (const std::string& url : {"hist45d-" + kTrunkFile, kTrunkFile,
                                 "select?report=hist45d-" + kTrunkFile, "any/x" + kTrunkFile}) {
    const std::string response = Get(url);
    EXPECT_EQ(response, Closed(Page(kTrunkKey))) << url;
    EXPECT_EQ(CacheFiles(), Names{kTrunkFile}) << url;
    site.installation.Remove("WebReports/Cache/" + kTrunkFile);
  }
}

TEST_F(SummaryRoutes, TheNameOfTheFileIsTheRestOfTheUrl) {
  const struct {
    const char* url;
    const char* file;
    const std::string& key;
  } kCases[] = {
      {"hist45d-switch-access-port-summary", "switch-access-port-summary", kAccessKey},
      {"switch-access-port-summary.html?a b", "switch-access-port-summary.html?a b", kAccessKey},
      {"hist45d-switch-trunk-port-summaryx", "switch-trunk-port-summaryx", kTrunkKey},
      {"hist45d-switch-trunk-port-summary.htm?disk-1", "disk-1", kTrunkKey},
      {"disk-x?switch-access-port-summary", "disk-x?switch-access-port-summary", kAccessKey},
      {"switch-trunk-port-summary-switch-access-port-summary",
       "switch-trunk-port-summary-switch-access-port-summary", kAccessKey},
      {"hist45d-switch-?switch-trunk-port-summary", "switch-?switch-trunk-port-summary", kTrunkKey},
  };
  for (const auto& row : kCases) {
    const std::string response = Get(row.url);
    EXPECT_EQ(response, Closed(Page(row.key))) << row.url;
    EXPECT_EQ(CacheFiles(), Names{row.file}) << row.url;
    EXPECT_EQ(Stored(row.file), Page(row.key)) << row.url;
    site.installation.Remove("WebReports/Cache/" + std::string(row.file));
  }
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SummaryRoutes, ANameOfNoKindHasNoHeadAndNoQueryAndIsStored) {
  RemoveDatabases();
  const std::string page = PageOfNoKind(Untouched());
  for (const std::string url :
       {"hist45d-switch-server-port-summary.htm", "hist45d-switch-", "hist45d-switch-x.htm",
        "hist45d-switch-access-port.htm", "hist45d-switch-Access-port-summary.htm",
        "switch-port-summary", "switch-access-port-top10-port-summary.htm",
        "hist45d-switch-trunk-port-top10-inerrors.htm"}) {
    const std::string file = url.substr(url.find("switch"));
    EXPECT_EQ(Get(url), Closed(page)) << url;
    EXPECT_EQ(Stored(file), page) << url;
    EXPECT_EQ(Get(url), Closed(page)) << url;
  }
  EXPECT_EQ(CacheFiles().size(), 8u);
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SummaryRoutes, WithoutTheWordOfSwitchesNothingIsStored) {
  const std::string page = PageOfNoKind(Untouched());
  for (const char* url : {"-port-summary", "x-port-summary.htm", "access-port-summary.htm",
                          "hist45d-access-port-summary.htm", "select?report=-port-summary"}) {
    EXPECT_EQ(Get(url), Closed(page)) << url;
  }
  EXPECT_EQ(CacheFiles(), Names{});
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SummaryRoutes, WithoutTheWordOfSwitchesTheChartsAreThoseThatTheRecordHolds) {
  const auto client = site.Connect();
  site.Exchange(*client, Site::Request("hist45d-" + kTrunkFile));
  RemoveDatabases();
  const std::string response = site.Exchange(*client, Site::Request("-port-summary"));
  EXPECT_EQ(response, Closed(PageOfNoKind(site.render)));
  EXPECT_TRUE(Holds(response, kTrunk));
  EXPECT_TRUE(Holds(response, "<td width='190px'>W35</td>"));
  EXPECT_EQ(CacheFiles(), Names{kTrunkFile});

  const auto other = site.Connect();
  EXPECT_EQ(site.Exchange(*other, Site::Request("-port-summary")),
            Closed(PageOfNoKind(Untouched(), 2)));
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SummaryRoutes, ARequestLineWithoutItsVersionStoresNothing) {
  Store(kAccessFile, "stored");
  const std::string response = Answer("GET /hist45d-" + kAccessFile + "\r\n\r\n");
  EXPECT_EQ(response, Closed(Page(kAccessKey)));
  EXPECT_EQ(CacheFiles(), Names{kAccessFile});
  EXPECT_EQ(Stored(kAccessFile), "stored");
}

TEST_F(SummaryRoutes, TheLogTellsWhatCameFromTheCache) {
  site.settings.DebugMode = true;
  site.Get("hist45d-" + kAccessFile);
  site.Get("hist45d-" + kAccessFile);
  site.Get("-port-summary");
  EXPECT_EQ(FromCache(), (Names{"FF", "FT", "FF"}));
}

TEST_F(SummaryRoutes, WithoutSumsAllDaysAreDashes) {
  History("DELETE FROM VLAN_HistSum");
  const std::string response = Get("hist45d-" + kAccessFile);
  EXPECT_EQ(response, Closed(Page(kAccessKey)));
  EXPECT_TRUE(Holds(response, "<b>Wednesday, May 1</b><br>W49: -<br>W50: -</div>"));
  EXPECT_FALSE(Holds(response, " W44)"));
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SummaryRoutes, WithoutHistoryMdbThePageHasWhatTheRecordHoldsAndIsStored) {
  site.installation.Remove("History.mdb");
  EXPECT_EQ(Get("hist45d-" + kTrunkFile), Closed(Summary(Untouched(), kTrunkKey, 1)));
  EXPECT_EQ(Stored(kTrunkFile), Summary(Untouched(), kTrunkKey, 1));
  EXPECT_EQ(Failures(), Names{"modSelectSql_SqHist45dSwitchSum"});
}

TEST_F(SummaryRoutes, ANameThatIsNoneOfAFileIsSentAndNotStored) {
  MakeDoor(kAccessKey);
  const Names files = CacheFiles();
  for (const std::string& rest :
       Names{"/../../x.htm", "/", "\\x.htm", std::string("\0.htm", 5), std::string(230, 'x')}) {
    site.ForgetEvents();
    const std::string response = Get("hist45d-" + kAccessKey + rest);
    EXPECT_EQ(response, Closed(Page(kAccessKey))) << rest;
    EXPECT_EQ(Failures(), Names{"modHtml_SaveToCache"}) << rest;
    EXPECT_EQ(CacheFiles(), files) << rest;
  }
  EXPECT_FALSE(site.installation.Exists("WebReports/x.htm"));
}

TEST_F(SummaryRoutes, ASummaryThatCannotBeStoredIsSentAllTheSame) {
  RemoveCacheFolder();
  const std::string response = Get("hist45d-" + kTrunkFile);
  EXPECT_EQ(response, Closed(Page(kTrunkKey)));
  EXPECT_EQ(Failures(), Names{"modHtml_SaveToCache"});
}

TEST_F(SummaryRoutes, TheChartsOfAPortLeaveThoseOfTheSummaryAlone) {
  const auto client = site.Connect();
  const std::string first = site.Exchange(*client, Site::Request("-port-summary"));
  site.Exchange(*client, Site::Request("hist45-7-4.htm"));
  EXPECT_EQ(site.Exchange(*client, Site::Request("-port-summary")), first);
}

}  // namespace
}  // namespace quillon
