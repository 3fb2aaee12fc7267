// The four searches by their routes: the empty forms, the page of a result and the file that keeps
// it, posts that are none, and searches on several connections.
#include "web/search_routes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "web/search_site.h"

namespace quillon {
namespace {

class SearchRoutes : public SearchSite {
 protected:
  static std::string FormRequest(const Search& search) {
    return Site::Request("select?report=" + search.name);
  }

  // The names of all four results of a connection, sorted.
  static Names StoredNames(int id) {
    Names names;
    for (const Search& search : kSearches) names.push_back(StoredName(search, id));
    std::sort(names.begin(), names.end());
    return names;
  }
};

TEST_F(SearchRoutes, AnEmptyFormIsTheFrameWithTheFormAndNothingMore) {
  RemoveDatabases();
  for (const Search& search : kSearches) {
    const std::string response = Answer(FormRequest(search));
    EXPECT_EQ(response, Response("text/html", FormPage(search, search.empty))) << search.name;
    EXPECT_FALSE(Holds(response, "class='footer'")) << search.name;
    EXPECT_FALSE(Holds(response, "class='tableData'")) << search.name;
    EXPECT_TRUE(Holds(response, " value=''/>\r\n")) << search.name;
    EXPECT_TRUE(Holds(response, "<option selected='selected' value='" + search.name + "'>"));
    EXPECT_TRUE(Holds(response, "<td width='" + std::to_string(search.width) + "px'"));
  }
  EXPECT_EQ(CacheFiles(), Names{});
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SearchRoutes, TheEmptyDiskFormStartsWithTheHighestUsedPercent) {
  EXPECT_TRUE(Holds(Answer(FormRequest(kDiskSearch)),
                    "<option selected='selected' value='usedpercent-desc'>"));
}

TEST_F(SearchRoutes, AnEmptyFormShowsNothingOfTheSearchBefore) {
  const auto client = site.Connect();
  for (const Search& search : kSearches) {
    Post(*client, search);
    EXPECT_EQ(site.Exchange(*client, FormRequest(search)),
              Response("text/html", FormPage(search, search.empty)));
  }
}

TEST_F(SearchRoutes, AResultIsTheFrameWithTheFormTheBandAndTheTable) {
  const auto client = site.Connect();
  for (const Search& search : kSearches) {
    const std::string response = Post(*client, search);
    EXPECT_EQ(response, Closed(Page(search, 1, search.shown))) << search.name;
    EXPECT_EQ(Links(response), Links(search, 1, search.found)) << search.name;
  }
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SearchRoutes, TheBandTellsTheReportAndHowManyOfHowMany) {
  const struct {
    Search search;
    std::string report;
    std::string criteria;
    std::string head;
  } kCases[] = {{kMacSearch, "W5", "2 (2)", "W47"},
                {kNameSearch, "W4", "2 (2)", "W47"},
                {kAliasSearch, "W4", "2 (2)", "W47"},
                {kDiskSearch, "W55", "3 (3)", "W63"}};
  const auto client = site.Connect();
  for (const auto& row : kCases) {
    const std::string page = Post(*client, row.search);
    EXPECT_TRUE(Holds(page, "<td width='190px'>" + row.report + "</td>")) << row.search.name;
    EXPECT_TRUE(Holds(page, "<td width='200px'>" + row.criteria + "</td>")) << row.search.name;
    EXPECT_TRUE(Holds(page, "<td width='310px'>" + row.head + "</td>")) << row.search.name;
  }
}

TEST_F(SearchRoutes, AResultIsStoredWithoutItsEndUnderTheNumberOfItsConnection) {
  const auto first = site.Connect();
  const auto second = site.Connect();
  for (const Search& search : kSearches) {
    Post(*second, search);
    const std::string page = Page(search, 2, search.shown);
    EXPECT_EQ(Stored(StoredName(search, 2)), page);
    EXPECT_TRUE(page.ends_with("</table>\r\n<br>\r\n")) << search.name;
    EXPECT_FALSE(Holds(page, "class='footer'")) << search.name;
  }
  EXPECT_EQ(CacheFiles(), StoredNames(2));
}

TEST_F(SearchRoutes, TheNameOfAResultDoesNotComeFromTheUrl) {
  const auto client = site.Connect();
  for (const Search& search : kSearches) {
    const std::string url = search.name + "?switch-x.htm&disk-x.htm";
    EXPECT_EQ(Links(Post(*client, url, search.body)), Links(search, 1, search.found));
  }
  EXPECT_EQ(CacheFiles(), StoredNames(1));
}

TEST_F(SearchRoutes, TheNextSearchOfAConnectionReplacesTheResultAndLeavesNoRestOfIt) {
  const auto client = site.Connect();
  for (const Search& search : kSearches) {
    Post(*client, search);
    const std::string response = Post(*client, search.name, search.miss);
    EXPECT_EQ(Links(response), Names{}) << search.name;
    EXPECT_EQ(response, Closed(Stored(StoredName(search, 1)))) << search.name;
  }
  EXPECT_EQ(CacheFiles(), StoredNames(1));
}

TEST_F(SearchRoutes, TheNextClientWithTheNumberReplacesTheResultToo) {
  for (const Search& search : kSearches) {
    Answer(PostText(search.name, search.body));
    EXPECT_EQ(Links(Stored(StoredName(search, 1))), Links(search, 1, search.found));
    Answer(PostText(search.name, search.miss));
    EXPECT_EQ(Links(Stored(StoredName(search, 1))), Names{}) << search.name;
  }
}

TEST_F(SearchRoutes, AResultIsNeverServedFromItsFile) {
  const auto client = site.Connect();
  for (const Search& search : kSearches) {
    Store(StoredName(search, 1), "of another day");
    EXPECT_EQ(Links(Post(*client, search)), Links(search, 1, search.found)) << search.name;
    EXPECT_FALSE(Holds(Stored(StoredName(search, 1)), "of another day")) << search.name;
  }
}

TEST_F(SearchRoutes, AStoredResultIsNoPageOfItsOwn) {
  for (const Search& search : kSearches) {
    Store(StoredName(search, 1), "result");
    EXPECT_EQ(Get(StoredName(search, 1)), DefaultResponse(site.render)) << search.name;
  }
}

TEST_F(SearchRoutes, ABodyThatLacksAFieldOrItsLineEndGivesUp) {
  const struct {
    Search search;
    Names bodies;
  } kCases[] = {{kMacSearch, {"", "\r\n", "MacIpName", "MacIpName 02*\r\n", "macipname=02*\r\n"}},
                {kNameSearch,
                 {"", "DeviceName=sw7", "DeviceName=sw7\r\n", "PortName=Gi0/1\r\n",
                  "DeviceName=sw7\nPortName=*", "PortName=Gi0/1\r\nDeviceName=sw7",
                  "DeviceName=sw7\r\nportname=*\r\n"}},
                {kAliasSearch, {"", "DeviceName=sw7", "DeviceName=sw7\r\n", "PortName=Uplink"}},
                {kDiskSearch,
                 {"", "DeviceName=*\r\nDiskName=*\r\n", "DeviceName=*\r\nDiskName=*",
                  "DeviceName=*\r\nOrderBy=usedpercent-desc\r\n",
                  "DiskName=*\r\nOrderBy=usedpercent-desc\r\n",
                  "OrderBy=usedpercent-desc\r\nDeviceName=*\r\nDiskName=*",
                  "DiskName=*\r\nOrderBy=usedpercent-desc\r\nDeviceName=*"}}};
  for (const auto& row : kCases) {
    for (const std::string& body : row.bodies) {
      EXPECT_EQ(Answer(PostText(row.search.name, body)), "") << row.search.name << ": " << body;
    }
  }
  EXPECT_EQ(CacheFiles(), Names{});
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SearchRoutes, TheLastFieldNeedsNoLineEnd) {
  const auto client = site.Connect();
  for (const Search& search : kSearches) {
    const std::string body = search.body.substr(0, search.body.size() - 2);
    EXPECT_EQ(Links(Post(*client, search.name, body)), Links(search, 1, search.found)) << body;
  }
}

TEST_F(SearchRoutes, FieldsAreTakenInAnyOrderAndFromTheHeadToo) {
  const auto client = site.Connect();
  EXPECT_EQ(Links(Post(*client, kNameSearch.name, "PortName=*\r\nDeviceName=sw7\r\n")),
            Links(kNameSearch, 1, {kPorts[0]}));
  EXPECT_EQ(Links(Post(*client, kDiskSearch.name,
                       "OrderBy=usedpercent-asc\r\nDiskName=*\r\nDeviceName=Mail\r\n")),
            Links(kDiskSearch, 1, {kStoragesUsedMostFirst[2], kStoragesUsedMostFirst[0]}));
  const std::string inTheHead =
      "POST /search-device-port-name HTTP/1.1\r\nReferer: DeviceName=sw8\r\n\r\n";
  EXPECT_EQ(Links(site.Exchange(*client, inTheHead + "DeviceName=sw7\r\nPortName=*\r\n")),
            Links(kNameSearch, 1, {kPorts[1]}));
}

TEST_F(SearchRoutes, ABodyInASecondSegmentIsARequestOfItsOwn) {
  for (const Search& search : kSearches) {
    const auto client = site.Connect();
    EXPECT_EQ(site.Exchange(*client, PostText(search.name, "")), "") << search.name;
    EXPECT_EQ(site.Exchange(*client, search.body), DefaultResponse(site.render)) << search.name;
    client->Close();
    site.Settle();
  }
  EXPECT_EQ(CacheFiles(), Names{});
  EXPECT_EQ(Failures(), Names{});
}

TEST_F(SearchRoutes, ABodyWithoutALineEndInASecondSegmentIsAFailure) {
  const auto client = site.Connect();
  EXPECT_EQ(site.Exchange(*client, PostText(kMacSearch.name, "")), "");
  EXPECT_EQ(site.Exchange(*client, "MacIpName=02*"), "");
  EXPECT_EQ(Failures(), Names{"frmQuillonWeb_tcpServer_DataIn"});
  EXPECT_EQ(Links(Post(*client, kMacSearch)), Links(kMacSearch, 1, kMacSearch.found));
}

TEST_F(SearchRoutes, ConnectionsDoNotMix) {
  const auto first = site.Connect();
  const auto second = site.Connect();
  for (const Search& search : {kNameSearch, kAliasSearch}) {
    const auto post = [&](RawClient& client, const std::string& device) {
      return Post(client, search.name, "DeviceName=" + device + "\r\nPortName=*");
    };
    const std::string seven = post(*first, "sw7");
    const std::string eight = post(*second, "sw8");
    EXPECT_EQ(Links(seven), Links(search, 1, {kPorts[0]}));
    EXPECT_EQ(Links(eight), Links(search, 2, {kPorts[1]}));
    EXPECT_EQ(Closed(Stored(StoredName(search, 1))), seven);
    EXPECT_EQ(Closed(Stored(StoredName(search, 2))), eight);
    EXPECT_EQ(post(*first, "sw7"), seven);
  }
}

TEST_F(SearchRoutes, ASearchInsideTheWaitOfAFailedOneIsItsOwn) {
  const auto waiting = site.Connect();
  const auto other = site.Connect();
  InTheWait([&] { other->Send(PostText(kNameSearch.name, kNameSearch.body)); });
  const std::string outer = Post(*waiting, kNameSearch.name, "DeviceName='\r\nPortName=*");
  EXPECT_EQ(outer, Closed(Page(kNameSearch, 1, {"'", "*"})));
  EXPECT_EQ(Links(outer), Names{});
  EXPECT_EQ(other->ReceivedNow(), Closed(Page(kNameSearch, 2, kNameSearch.shown)));
  EXPECT_EQ(Links(other->ReceivedNow()), Links(kNameSearch, 2, kNameSearch.found));
  EXPECT_EQ(Failures(), Names{"modSelectSql_SqlSearchDevicePort"});
}

TEST_F(SearchRoutes, WithoutItsDatabaseAResultIsAnEmptyTableAndOneFailure) {
  const Names procedures = {"modSelectSql_SqlSearchMacIp", "modSelectSql_SqlSearchDevicePort",
                            "modSelectSql_SqlSearchDevicePort", "modSelectSql_SqlSearchDeviceDisk"};
  const auto client = site.Connect();
  for (const Search& search : kSearches) Post(*client, search);
  RemoveDatabases();
  for (const Search& search : kSearches) {
    const std::string response = Post(*client, search);
    EXPECT_EQ(response, Closed(Page(search, 1, search.shown))) << search.name;
    EXPECT_EQ(Links(response), Names{}) << search.name;
    EXPECT_EQ(Stored(StoredName(search, 1)), Page(search, 1, search.shown)) << search.name;
  }
  EXPECT_EQ(Failures(), procedures);
}

TEST_F(SearchRoutes, WithoutAFolderForPagesAResultIsSentAllTheSame) {
  RemoveCacheFolder();
  const auto client = site.Connect();
  for (const Search& search : kSearches) {
    EXPECT_EQ(Links(Post(*client, search)), Links(search, 1, search.found)) << search.name;
  }
  EXPECT_EQ(Failures(), Names(4, "modHtml_SaveToCache"));
}

TEST_F(SearchRoutes, TheLogTellsThatNothingCameFromTheCache) {
  site.settings.DebugMode = true;
  const auto client = site.Connect();
  for (int round = 0; round < 2; ++round) {
    for (const Search& search : kSearches) Post(*client, search);
  }
  EXPECT_EQ(FromCache(), Names(8, "FF"));
}

}  // namespace
}  // namespace quillon
