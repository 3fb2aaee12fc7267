// The top-10 pages: the twelve switch lists, which are built on demand and stored, and
// the pages of disks and memory, which are served from the cache only.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "render/switch_tables.h"
#include "support/site.h"
#include "web/expected_pages.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

// The six lists of a kind, in the order of the metric columns. The port that leads a
// list has its number.
struct List {
  const char* metric;
  int headWord;
  int leader;
};
constexpr std::array<List, 6> kLists = {{{"involume", 6, 1},
                                         {"outvolume", 7, 2},
                                         {"inbroadcast", 8, 3},
                                         {"inmulticast", 9, 4},
                                         {"inerrors", 10, 5},
                                         {"outerrors", 11, 6}}};

struct Kind {
  const char* name;
  const char* isTrunk;
  int reportWord;
  char prefix;  // of the names of its devices
};
constexpr std::array<Kind, 2> kKinds = {{{"access", "0", 2, 'a'}, {"trunk", "1", 3, 't'}}};

// The six devices of a kind in the order of the list that `leader` leads: each metric
// has its figures fall from its leader on, around the six.
Names Devices(char prefix, int leader) {
  Names names;
  for (int place = 0; place < 6; ++place) {
    names.push_back(prefix + std::to_string((leader - 1 + place) % 6 + 1));
  }
  return names;
}

std::string InsertPort(const Kind& kind, int port) {
  std::string sql = "INSERT INTO VLAN VALUES (" + std::to_string(port) + ", '" + kind.prefix +
                    std::to_string(port) + "', '10.0.0.1', 1, 5, 'Port', '100', 'alias', 'up'," +
                    " 'up', " + kind.isTrunk + ", '2024-05-02 03:00:00', '2024-05-02 03:00:00'";
  for (int metric = 1; metric <= 6; ++metric) {
    sql += ", " + std::to_string(900 - 100 * ((port - metric + 6) % 6));
  }
  return sql + ");";
}

std::string PageName(const Kind& kind, const std::string& metric) {
  return std::string("switch-") + kind.name + "-port-top10-" + metric + ".htm";
}

// The devices of a page from top to bottom, by their links to the charts.
Names DevicesOf(const std::string& page, const std::string& pageName) {
  Names names;
  std::size_t at = 0;
  while ((at = page.find("<a href=hist45-", at)) != std::string::npos) {
    const std::size_t linkEnd = page.find('>', at);
    const std::string link = page.substr(at, linkEnd - at);
    EXPECT_EQ(link.substr(link.size() - pageName.size() - 3), "-5-" + pageName);
    names.push_back(page.substr(linkEnd + 1, page.find('<', linkEnd) - linkEnd - 1));
    at = linkEnd;
  }
  return names;
}

class Top10Routes : public testing::Test {
 protected:
  Top10Routes() {
    site.NumberWords("word");
    site.period = {"period start", "period end"};
  }

  // Stored in an order that is that of no list.
  void SeedPorts() const {
    std::string sql;
    for (const Kind& kind : kKinds) {
      for (const int port : {4, 2, 6, 1, 5, 3}) sql += InsertPort(kind, port);
    }
    site.installation.Sql("Reports.mdb", sql);
  }

  std::string Stored(const std::string& name) const {
    return site.installation.Read("WebReports/Cache/" + name);
  }
  Names CacheFiles() const { return site.installation.List("WebReports/Cache"); }
  void RemoveReports() const { fs::remove(site.installation.path() + "/Reports.mdb"); }

  // What the page of a list is, by the records of connection 1.
  std::string Page(const RenderContext& render, const Kind& kind, const std::string& name) const {
    std::string page;
    TopHeader_Begin(render, 580, std::string("switch-") + kind.name + "-port-top10", page);
    TopHeader_End(render, page);
    TableHeader_Switch(render, 1, page);
    TableData_Switch(render, 1, kind.name, name, page);
    return page;
  }

  Site site;
};

TEST_F(Top10Routes, EveryListIsSortedByItsMetricAndHeadedByItsWords) {
  SeedPorts();
  for (const Kind& kind : kKinds) {
    for (const List& list : kLists) {
      const std::string name = PageName(kind, list.metric);
      SCOPED_TRACE(name);
      const std::string page = Site::Body(site.Get(name));
      EXPECT_EQ(DevicesOf(page, name), Devices(kind.prefix, list.leader));
      const std::string head = "<td width='310px'>word" + std::to_string(list.headWord) + "</td>";
      EXPECT_NE(page.find(head), std::string::npos);
      const std::string report =
          "<td width='190px'>word" + std::to_string(kind.reportWord) + "</td>";
      EXPECT_NE(page.find(report), std::string::npos);
      EXPECT_NE(page.find("<td width='200px'>6 (6)</td>"), std::string::npos);
    }
  }
  EXPECT_EQ(CacheFiles().size(), 12u);
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(Top10Routes, AListIsFrameBandAndTableAndIsStoredWithoutItsFooter) {
  SeedPorts();
  for (const Kind& kind : kKinds) {
    for (const List& list : kLists) {
      const std::string name = PageName(kind, list.metric);
      const std::string response = site.Get(name);
      const std::string page = Page(site.render, kind, name);
      EXPECT_EQ(Stored(name), page) << name;
      EXPECT_EQ(response, ClosedResponse(site.render, page)) << name;
    }
  }
}

TEST_F(Top10Routes, TheHeadsOfATableLinkToTheSixListsOfItsKind) {
  for (const Kind& kind : kKinds) {
    const std::string page = Site::Body(site.Get(PageName(kind, "inerrors")));
    int word = 22;
    for (const List& list : kLists) {
      const std::string link = "<a href='" + PageName(kind, list.metric) + "'>word" +
                               std::to_string(word++) + "</th>\r\n";
      EXPECT_NE(page.find(link), std::string::npos) << link;
    }
  }
}

TEST_F(Top10Routes, TheSelectionBoxMarksTheReportOfItsKind) {
  for (const Kind& kind : kKinds) {
    const std::string page = Site::Body(site.Get(PageName(kind, "outvolume")));
    const std::string option =
        "<option selected='selected' value='" + PageName(kind, "inerrors") + "'>";
    EXPECT_NE(page.find(option), std::string::npos) << kind.name;
  }
}

TEST_F(Top10Routes, AStoredListIsServedFromItsFile) {
  SeedPorts();
  for (const Kind& kind : kKinds) {
    const std::string name = PageName(kind, "involume");
    site.Get(name);
    site.installation.Write("WebReports/Cache/" + name, "another page \xE4");
    EXPECT_EQ(site.Get(name), ClosedResponse(site.render, "another page \xE4"));
    EXPECT_EQ(site.Get("select?report=" + name), ClosedResponse(site.render, "another page \xE4"));
    EXPECT_EQ(Stored(name), "another page \xE4");
  }
}

TEST_F(Top10Routes, AnEmptyFileCountsAsAStoredList) {
  SeedPorts();
  site.installation.Write("WebReports/Cache/switch-access-port-top10-involume.htm", "");
  EXPECT_EQ(site.Get("switch-access-port-top10-involume.htm"), ClosedResponse(site.render, ""));
}

TEST_F(Top10Routes, AStoredListNeedsNoDatabase) {
  const std::string first = site.Get("switch-trunk-port-top10-outerrors.htm");
  RemoveReports();
  EXPECT_EQ(site.Get("switch-trunk-port-top10-outerrors.htm"), first);
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(Top10Routes, TheLogTellsWhatCameFromTheCache) {
  site.settings.DebugMode = true;
  site.Get("switch-access-port-top10-involume.htm");
  site.Get("switch-access-port-top10-involume.htm");
  site.installation.Write("WebReports/Cache/disk-mem-summary.htm", "page");
  site.Get("disk-mem-summary.htm");
  Names fromCache;
  for (const std::string& line : SplitLines(site.installation.Read("Debug/WebConnections.txt"))) {
    if (line.find("From Cache: ") != std::string::npos) fromCache.push_back(line);
  }
  EXPECT_EQ(fromCache, (Names{"[1] Table From Cache: False", "[1] Chart From Cache: False",
                              "[1] Table From Cache: True", "[1] Chart From Cache: False",
                              "[1] Table From Cache: True", "[1] Chart From Cache: False"}));
}

TEST_F(Top10Routes, AnUnknownMetricIsInErrorsUnderTheNameOfTheUrl) {
  SeedPorts();
  for (const Kind& kind : kKinds) {
    const std::string start = std::string("switch-") + kind.name + "-port-top10";
    for (const char* rest : {"-temperature.htm", ".htm", "", "-", "-.htm", "-INVOLUME.htm",
                             "-volume.htm", "involume"}) {
      const std::string name = start + rest;
      SCOPED_TRACE(name);
      const std::string page = Site::Body(site.Get(name));
      EXPECT_EQ(DevicesOf(page, name), Devices(kind.prefix, 5));
      EXPECT_NE(page.find("<td width='310px'>word10</td>"), std::string::npos);
      EXPECT_EQ(DevicesOf(Stored(name), name), Devices(kind.prefix, 5));
    }
  }
}

TEST_F(Top10Routes, TheFirstMetricOfTheColumnsThatTheUrlHoldsDecides) {
  SeedPorts();
  const struct {
    const char* name;
    int leader;
  } kCases[] = {
      {"switch-access-port-top10-involumes.htm", 1},
      {"switch-access-port-top10-inerrors.htm?switch-access-port-top10-outvolume", 2},
      {"switch-access-port-top10-outerrors.htm?switch-access-port-top10-inmulticast", 4},
      {"switch-access-port-top10-outerrors.htm?switch-trunk-port-top10-involume", 6},
      {"switch-trunk-port-top10-involume.htm?switch-access-port-top10-inbroadcast", 3},
  };
  for (const auto& row : kCases) {
    const std::string page = Site::Body(site.Get(row.name));
    EXPECT_EQ(DevicesOf(page, row.name), Devices('a', row.leader)) << row.name;
  }
}

TEST_F(Top10Routes, TheFormOfTheSelectionBoxStoresUnderTheSameName) {
  SeedPorts();
  site.Get("select?report=switch-access-port-top10-inerrors.htm");
  EXPECT_EQ(CacheFiles(), Names{"switch-access-port-top10-inerrors.htm"});
}

TEST_F(Top10Routes, ARequestLineWithoutItsVersionStoresNothing) {
  SeedPorts();
  const auto client = site.Connect();
  const std::string request = "GET /switch-access-port-top10-outvolume.htm\r\n\r\n";
  const std::string response = site.Exchange(*client, request);
  EXPECT_EQ(response, ClosedResponse(site.render, Page(site.render, kKinds[0], "")));
  EXPECT_EQ(DevicesOf(response, ""), Devices('a', 2));
  EXPECT_TRUE(CacheFiles().empty());
}

TEST_F(Top10Routes, WithoutPortsTheTableIsEmpty) {
  const std::string name = "switch-access-port-top10-involume.htm";
  const std::string page = Site::Body(site.Get(name));
  EXPECT_NE(page.find("<td width='200px'>0 (0)</td>"), std::string::npos);
  EXPECT_NE(page.find("word27</th>\r\n  </tr>\r\n</table>\r\n<br>\r\n<table"), std::string::npos);
  EXPECT_EQ(CacheFiles(), Names{name});
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(Top10Routes, WithoutReportsMdbThePageHasAnEmptyTableAndThereIsAnEvent) {
  RemoveReports();
  const std::string name = "switch-trunk-port-top10-involume.htm";
  const ReportRecords untouched;
  const RenderContext empty{site.diagnostics, site.settings, site.words,
                            site.calendar,    site.period,   untouched};
  const std::string page = Page(empty, kKinds[1], name);
  EXPECT_EQ(site.Get(name), ClosedResponse(site.render, page));
  EXPECT_EQ(Stored(name), page);
  ASSERT_EQ(site.Events().size(), 1u);
  EXPECT_EQ(site.Events()[0].find("1\tmodSelectSql_SqlTop10SwitchStats\t"), 0u);
}

TEST_F(Top10Routes, APageThatCannotBeStoredIsSentAllTheSame) {
  SeedPorts();
  fs::remove(site.installation.path() + "/WebReports/Cache");
  const std::string name = PageName(kKinds[0], "inerrors");
  EXPECT_EQ(DevicesOf(site.Get(name), name), Devices('a', 5));
  ASSERT_EQ(site.Events().size(), 1u);
  EXPECT_EQ(site.Events()[0].find("1\tmodHtml_SaveToCache\t"), 0u);
}

TEST_F(Top10Routes, RowsOfAnEarlierRequestOnTheConnectionDoNotShow) {
  SeedPorts();
  const auto client = site.Connect();
  const auto get = [&](const std::string& name) {
    return site.Exchange(*client, "GET /" + name + " HTTP/1.1\r\n\r\n");
  };
  EXPECT_EQ(DevicesOf(get(PageName(kKinds[0], "involume")), PageName(kKinds[0], "involume")),
            Devices('a', 1));
  site.installation.Sql("Reports.mdb", "DELETE FROM VLAN WHERE IsTrunk=1 AND RecNo>2");
  const std::string name = PageName(kKinds[1], "involume");
  EXPECT_EQ(DevicesOf(get(name), name), (Names{"t1", "t2"}));
  RemoveReports();
  const std::string missing = PageName(kKinds[1], "outvolume");
  EXPECT_EQ(DevicesOf(get(missing), missing), Names());
}

TEST_F(Top10Routes, EveryRequestEmptiesTheRowsOfItsConnectionOnly) {
  for (const long slot : {1L, 2L}) {
    for (auto& row : site.records.SwitchTableRep[slot].rows) row.recNo = 7;
    for (auto& row : site.records.DiskTableRep[slot].rows) row.recNo = 7;
    site.records.SwitchTableRep[slot].rows[10].device = "sw7";
  }
  site.Get("favicon.ico");
  for (const long slot : {1L, 2L}) {
    const std::int32_t recNo = slot == 1 ? 0 : 7;
    for (const auto& row : site.records.SwitchTableRep[slot].rows) EXPECT_EQ(row.recNo, recNo);
    for (const auto& row : site.records.DiskTableRep[slot].rows) EXPECT_EQ(row.recNo, recNo);
    EXPECT_EQ(site.records.SwitchTableRep[slot].rows[10].device, "sw7");
  }
}

const Names kStoredOnly = {"disk-physical-top10-usedpercent-desc.htm",
                           "disk-virtual-top10-freebytes-asc.htm",
                           "disk-windows-top10-trend14d-desc.htm",
                           "disk-unix-top10-totalbytes-asc.htm", "disk-mem-summary.htm"};

TEST_F(Top10Routes, PagesOfDisksAndMemoryGiveUpBeforeThereIsAFile) {
  const auto client = site.Connect();
  for (const std::string& name : kStoredOnly) {
    EXPECT_EQ(site.Exchange(*client, "GET /" + name + " HTTP/1.1\r\n\r\n"), "") << name;
    EXPECT_EQ(site.Exchange(*client, "GET / HTTP/1.1\r\n\r\n"), DefaultResponse(site.render));
  }
  EXPECT_TRUE(CacheFiles().empty());
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(Top10Routes, PagesOfDisksAndMemoryAreServedFromTheirFiles) {
  for (const std::string& name : kStoredOnly) {
    site.installation.Write("WebReports/Cache/" + name, "stored " + name + " \xE4");
    const std::string expected = ClosedResponse(site.render, "stored " + name + " \xE4");
    EXPECT_EQ(site.Get(name), expected);
    EXPECT_EQ(site.Get("select?report=" + name), expected);
  }
  EXPECT_EQ(site.Get("select?report=hist45d-disk-mem-summary.htm"), site.Get(kStoredOnly.back()));
  EXPECT_EQ(CacheFiles().size(), kStoredOnly.size());
}

TEST_F(Top10Routes, APageOfDisksWithoutAVersionInItsRequestGivesUp) {
  site.installation.Write("WebReports/Cache/disk-mem-summary.htm", "page");
  const auto client = site.Connect();
  EXPECT_EQ(site.Exchange(*client, "GET /disk-mem-summary.htm\r\n\r\n"), "");
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(Top10Routes, LettersOutsideTheCharsetDoNotSurviveTheTripThroughAFile) {
  SeedPorts();
  site.installation.Sql("Reports.mdb", "UPDATE VLAN SET IfAlias = 'B\xC3\xBCro \xD0\x96'");
  const std::string url = PageName(kKinds[0], "involume");
  const std::string built = site.Get(url);
  EXPECT_NE(built.find("B\xFCro ?"), std::string::npos);
  EXPECT_NE(Stored(url).find("B\xFCro ?"), std::string::npos);
  EXPECT_EQ(site.Get(url), built);
}

}  // namespace
}  // namespace quillon
