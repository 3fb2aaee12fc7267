// The pages of switch ports, each by itself: its bytes, its charts, its pauses, and what a request
// that shares the slot of the records makes of them.
#include "production/switch_pages.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "production/auto_create_fixture.h"

namespace quillon {
namespace {

constexpr const char* kField = "InHCOctetsMb24H";
const std::string kFile = "switch-access-port-top10-involume.htm";

class SwitchPages : public AutoCreateTest {
 protected:
  void List(const std::string& kind = "access", const std::string& field = kField,
            const std::string& file = kFile) {
    AutoCreateTop10_Switch(production, kind, field, file);
  }

  // A client on the connection whose number is that of the slot.
  RawClient& ClientOfTheSlot() {
    while (clients_.size() < static_cast<std::size_t>(BackgroundSlot)) {
      clients_.push_back(site.Connect());
    }
    return *clients_.back();
  }

 private:
  std::vector<std::unique_ptr<RawClient>> clients_;
};

TEST_F(SwitchPages, AListIsStoredWithTheChartsOfItsPorts) {
  AddNetwork();
  for (const std::string kind : {"access", "trunk"}) {
    for (const ListOrder& metric : kMetrics) {
      const std::string file = Expected::SwitchListFile(kind, metric.name);
      FolderWatch watch(CachePath());
      List(kind, metric.field, file);
      ExpectedProduction expected(site);
      expected.SwitchList(kind, metric);
      EXPECT_EQ(watch.Changes().size(), kind == "access" ? 3u : 2u);
      EXPECT_EQ(watch.Written(), expected.Names()) << file;
      for (const auto& [name, bytes] : expected.Last()) ExpectBytes(name, bytes);
    }
  }
  EXPECT_EQ(Failures(), Lines{});
}

// Each metric has a port of its own at its top.
TEST_F(SwitchPages, TheFieldSortsTheList) {
  for (std::size_t n = 0; n < kMetrics.size(); ++n) {
    Reports(InsertPort({{"RecNo", std::to_string(100 + n)}, {kMetrics[n].field, "5000"}}));
  }
  for (std::size_t n = 0; n < kMetrics.size(); ++n) {
    FolderWatch watch(CachePath());
    List("access", kMetrics[n].field);
    const Lines written = watch.Written();
    ASSERT_EQ(written.size(), 1u + kMetrics.size());
    EXPECT_EQ(written[1], "hist45-" + std::to_string(100 + n) + "-1.htm") << kMetrics[n].field;
  }
}

TEST_F(SwitchPages, APageIsOneOfItsKindAndNamesItsFile) {
  AddNetwork();
  List("trunk", kField, "any name.htm");
  ExpectedProduction expected(site);
  expected.SwitchList("trunk", kField, "any name.htm");
  ExpectCache(expected.Last());
  EXPECT_TRUE(Holds(Cached("any name.htm"), "hist45-9-1-any name.htm"));
}

TEST_F(SwitchPages, AnyOtherKindThanAccessListsTrunkPorts) {
  AddNetwork();
  for (const std::string kind : {"Access", "", "uplink"}) {
    List(kind, kField, "a.htm");
    ExpectedProduction expected(site);
    expected.SwitchList(kind, kField, "a.htm");
    ExpectCache(expected.Last());
  }
  EXPECT_EQ(CacheFiles(), (Lines{"a.htm", "hist45-9-1.htm"}));
}

TEST_F(SwitchPages, AListWithoutPortsHasNoChartsAndNoWait) {
  EXPECT_EQ(WaitOf([this] { List(); }), kNoWait);
  EXPECT_EQ(CacheFiles(), Lines{kFile});
}

TEST_F(SwitchPages, TheRowsOfAnEarlierListAreForgotten) {
  AddAccessPorts(10);
  List();
  Reports("DELETE FROM VLAN WHERE RecNo > 102");
  FolderWatch watch(CachePath());
  List("access", kField, "second.htm");
  EXPECT_EQ(watch.Written(), (Lines{"second.htm", "hist45-101-1.htm", "hist45-102-2.htm"}));
  ExpectedProduction expected(site);
  expected.SwitchList("access", kField, "second.htm");
  ExpectBytes("second.htm", expected.Last()["second.htm"]);
}

TEST_F(SwitchPages, ADeviceNumberBelowZeroIsOne) {
  Reports(InsertPort({{"RecNo", "-5"}, {"IfIndex", "-1"}}) + InsertPort({{"RecNo", "0"}}));
  List();
  EXPECT_EQ(CacheFiles(), (Lines{"hist45--5--1.htm", kFile}));
}

TEST_F(SwitchPages, AChartHasAPauseAndTheWaitsOfAReportInTheBackground) {
  AddAccessPorts(3);
  EXPECT_EQ(WaitOf([this] { List(); }), 3 * ChartWait(0));
  AddPortDays();
  EXPECT_EQ(WaitOf([this] { List(); }), 3 * ChartWait(2));
}

TEST_F(SwitchPages, TheListIsStoredBeforeTheFirstPauseAndEachChartBeforeTheNext) {
  AddAccessPorts(2);
  Lines first;
  Lines second;
  InTheWait(10, [&] { first = CacheFiles(); });
  InTheWait(static_cast<int>(ChartWait(0).count()) + 10, [&] { second = CacheFiles(); });
  List();
  EXPECT_EQ(first, Lines{kFile});
  EXPECT_EQ(second, (Lines{"hist45-101-1.htm", kFile}));
}

TEST_F(SwitchPages, TheNamesOfAPortAreLookedUpBehindThePause) {
  AddNetwork();
  InTheWait(50, [this] { Reports("UPDATE VLAN SET DevName = 'renamed' WHERE RecNo = 7"); });
  List();
  EXPECT_TRUE(Holds(Cached(kFile), "sw7"));
  EXPECT_TRUE(Holds(Cached("hist45-7-4.htm"), "renamed"));
}

TEST_F(SwitchPages, APortThatHasGoneMeanwhileHasNoName) {
  AddNetwork();
  InTheWait(50, [this] { Reports("DELETE FROM VLAN WHERE RecNo = 7"); });
  List();
  ExpectedProduction expected(site);
  expected.PortCharts(7, 4);
  ExpectBytes("hist45-7-4.htm", expected.Last()["hist45-7-4.htm"]);
  EXPECT_TRUE(Holds(Cached("hist45-7-4.htm"), "n/a"));
}

TEST_F(SwitchPages, AColumnThatIsNotThereLeavesAnEmptyTable) {
  AddNetwork();
  List("access", "NoSuchColumn");
  ExpectedProduction expected(site);
  expected.SwitchList("access", "NoSuchColumn", kFile);
  ExpectCache(expected.Last());
  EXPECT_EQ(CacheFiles(), Lines{kFile});
  EXPECT_EQ(Failures(), Lines{"modSelectSql_SqlTop10SwitchStats"});
}

// A port is entered into the list up to the figure that it does not have.
TEST_F(SwitchPages, AFigureThatIsMissingEndsTheListBehindItsPort) {
  AddNetwork();
  Reports("UPDATE VLAN SET InErrorsTot24H = NULL WHERE RecNo = 8");
  List();
  ExpectedProduction expected(site);
  expected.SwitchList("access", kField, kFile);
  ExpectCache(expected.Last());
  EXPECT_EQ(CacheFiles(), (Lines{"hist45-7-4.htm", "hist45-8-5.htm", kFile}));
  EXPECT_EQ(Failures(), Lines{"modSelectSql_SqlTop10SwitchStats"});
}

TEST_F(SwitchPages, AChartThatCannotBeStoredKeepsNoneOfTheOthersAway) {
  AddAccessPorts(3);
  Block("hist45-102-2.htm");
  List();
  EXPECT_EQ(NotStored(), Lines{"hist45-102-2.htm"});
  EXPECT_TRUE(IsStored("hist45-101-1.htm"));
  EXPECT_TRUE(IsStored("hist45-103-3.htm"));
}

TEST_F(SwitchPages, AListThatCannotBeStoredHasItsChartsAllTheSame) {
  AddAccessPorts(2);
  Block(kFile);
  List();
  EXPECT_EQ(NotStored(), Lines{kFile});
  EXPECT_TRUE(IsStored("hist45-101-1.htm"));
  EXPECT_TRUE(IsStored("hist45-102-2.htm"));
}

TEST_F(SwitchPages, ASummaryIsThatOfTheKindThatItsFileTells) {
  AddNetwork();
  for (const std::string kind : {"access", "trunk"}) {
    const std::string file = "switch-" + kind + "-port-summary.htm";
    EXPECT_EQ(WaitOf([&] { AutoCreateSum_Switch(production, file); }), kSummaryWait);
    ExpectedProduction expected(site);
    expected.SwitchSummary(kind);
    ExpectBytes(file, expected.Last()[file]);
  }
  EXPECT_NE(Cached("switch-access-port-summary.htm"), Cached("switch-trunk-port-summary.htm"));
  EXPECT_EQ(CacheFiles().size(), 2u);
  EXPECT_EQ(Failures(), Lines{});
}

TEST_F(SwitchPages, TheWordsOfASummaryMayStandAnywhereInItsFile) {
  AddNetwork();
  const struct {
    std::string file;
    std::string kind;
  } kCases[] = {{"my-switch-trunk-port-summary.old.htm", "trunk"},
                {"my-switch-access-port-summary.old.htm", "access"},
                {"switch-trunk-port-summary-switch-access-port-summary.htm", "access"}};
  for (const auto& row : kCases) {
    AutoCreateSum_Switch(production, row.file);
    ExpectedProduction expected(site);
    expected.SwitchSummary(row.kind, row.file);
    ExpectBytes(row.file, expected.Last()[row.file]);
  }
}

TEST_F(SwitchPages, ASummaryOfNoKindAsksForNothing) {
  AddNetwork();
  EXPECT_EQ(WaitOf([this] { AutoCreateSum_Switch(production, "other.htm"); }), kNoWait);
  const ExpectedProduction untouched(site);
  ExpectCache({{"other.htm", untouched.Frame("") + untouched.ChartsOfAllPorts()}});
}

// The first step of any request empties the tables of its connection.
TEST_F(SwitchPages, ARequestOnTheConnectionOfTheSlotEndsTheChartsOfTheList) {
  AddAccessPorts(4);
  RawClient& client = ClientOfTheSlot();
  InTheWait(100, [&] { site.Exchange(client, Site::Request("")); });
  List();
  for (const char* chart : {"hist45-102-2.htm", "hist45-103-3.htm", "hist45-104-4.htm"}) {
    EXPECT_FALSE(IsStored(chart)) << chart;
  }
  EXPECT_EQ(CacheFiles().size(), 2u) << "the list and the chart in which the request came";
}

TEST_F(SwitchPages, AListOnTheConnectionOfTheSlotTakesOverTheCharts) {
  AddAccessPorts(3);
  for (int n = 1; n <= 3; ++n) {
    Reports(InsertPort({{"RecNo", std::to_string(200 + n)},
                        {"IfIndex", "1"},
                        {"IsTrunk", "TRUE"},
                        {kField, std::to_string(100 - n)}}));
  }
  RawClient& client = ClientOfTheSlot();
  const std::string other = "switch-trunk-port-top10-involume.htm";
  InTheWait(100, [&] { site.Exchange(client, Site::Request(other)); });
  List();
  EXPECT_TRUE(IsStored(other));
  EXPECT_TRUE(IsStored("hist45-202-1.htm"));
  EXPECT_TRUE(IsStored("hist45-203-1.htm"));
  EXPECT_FALSE(IsStored("hist45-102-2.htm"));
  EXPECT_FALSE(IsStored("hist45-103-3.htm"));
}

TEST_F(SwitchPages, AChartOnTheConnectionOfTheSlotMixesWithTheOneInWork) {
  AddNetwork();
  Reports("UPDATE VLAN SET IsTrunk = TRUE WHERE RecNo = 8");
  RawClient& client = ClientOfTheSlot();
  InTheWait(100, [&] { site.Exchange(client, Site::Request("hist45-8-5.htm")); });
  List();
  EXPECT_FALSE(Holds(Cached(kFile), "sw8"));
  const std::string record = ExpectedPortCharts(site.render, BackgroundSlot);
  EXPECT_TRUE(Holds(record, "sw8"));
  for (const std::string& name : CacheFiles()) {
    if (name != kFile) ExpectBytes(name, record);
  }
  EXPECT_EQ(CacheFiles().size(), 2u);
}

TEST_F(SwitchPages, RequestsOnOtherConnectionsDoNotMixWithTheChartInWork) {
  AddNetwork();
  const auto client = site.Connect();
  InTheWait(100, [&] { site.Exchange(*client, Site::Request("hist45-8-5.htm")); });
  List();
  ExpectedProduction expected(site);
  expected.SwitchList("access", kField, kFile);
  ExpectCache(expected.Last());
}

}  // namespace
}  // namespace quillon
