// The pages that a mail brings, byte for byte.
#include "production/mail_pages.h"

#include <filesystem>
#include <set>

#include "production/mail_choices.h"
#include "production/mail_fixture.h"

namespace quillon {
namespace {

const std::string kVolumes = "switch-access-port-top10-involume.htm";

class MailPages : public MailTest {
 protected:
  // Builds the pages of these choices, all others being "None".
  void Choose(const Lines& choices) {
    receiver_.Top10Rep.Fill("None");
    for (std::size_t place = 0; place < choices.size(); ++place) {
      receiver_.Top10Rep[static_cast<long>(place) + 1] = choices[place];
    }
    BuildChosenPages(production, receiver_);
  }
  // What became of the choices.
  Lines Places() const { return {receiver_.Top10Rep.begin(), receiver_.Top10Rep.end()}; }

  // Builds the page of a port and tells its name.
  std::string BuildPort(std::int32_t recNo, std::int32_t ifIndex, bool details) {
    receiver_.PortRep = true;
    receiver_.PortRepRecNo = recNo;
    receiver_.PortRepIfIndex = ifIndex;
    receiver_.PortRepDetails = details;
    BuildPortPage(production, receiver_);
    return receiver_.PortRepFile;
  }

  void AddPort(const std::string& device, const std::string& port) const {
    Reports(InsertPort({{"RecNo", "70"},
                        {"IfIndex", "9"},
                        {"DevName", "'" + device + "'"},
                        {"IfDescr", "'" + port + "'"}}));
    History(InsertPortOfDay("VLAN_Day01", {{"RecNo", "70"}, {"IfIndex", "9"}}));
  }

  // Rows of an earlier report in the slot of the pages.
  void LeaveRows() {
    for (SwitchTableRow& row : site.records.SwitchTableRep[kSlot].rows) {
      row.recNo = 99;
      row.device = "left over";
    }
  }
  Lines RowNumbers() {
    Lines numbers;
    for (const SwitchTableRow& row : site.records.SwitchTableRep[kSlot].rows) {
      numbers.push_back(std::to_string(row.recNo));
    }
    return numbers;
  }

  RepReceiverEntry receiver_;
};

TEST_F(MailPages, AListHasTheShortHeadTheTableAndTheFooter) {
  std::set<std::string> pages;
  for (const char* kind : {"access", "trunk"}) {
    for (const ChosenReport& report : kChosenReports) {
      if (*report.field == '\0') continue;
      const std::string file = report.File(kind);
      Choose({std::string(report.word) + (kind == std::string("access") ? " Access" : "")});
      EXPECT_EQ(Places(), (Lines{file, "None", "None", "None", "None"}));
      EXPECT_EQ(Mailed(file), ListPage(kind, report.field)) << file;
      pages.insert(Mailed(file));
    }
  }
  EXPECT_EQ(pages.size(), 12u);
  EXPECT_EQ(MailFiles().size(), 12u);
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(MailPages, AListIsWholeByItself) {
  Choose({"Access InVolume"});
  const std::string page = Mailed(kVolumes);
  EXPECT_TRUE(page.starts_with("<!DOCTYPE")) << page.substr(0, 40);
  EXPECT_TRUE(page.ends_with("</html>"));
  EXPECT_TRUE(Holds(page, "Quillon Network Reporting"));
  EXPECT_FALSE(Holds(page, "<select")) << "no selector band";
}

TEST_F(MailPages, TheLinksOfAListNameTheFieldInPlaceOfTheFile) {
  Choose({"Access InVolume"});
  EXPECT_TRUE(Holds(Mailed(kVolumes), "InHCOctetsMb24H"));
  EXPECT_FALSE(Holds(Mailed(kVolumes), "-4-" + kVolumes));
}

TEST_F(MailPages, ASummaryHasTheShortHeadTheFourChartsAndTheFooter) {
  Choose({"Access Summary", "Trunk Summary"});
  EXPECT_EQ(Places(), (Lines{"switch-access-port-summary.htm", "switch-trunk-port-summary.htm",
                             "None", "None", "None"}));
  EXPECT_EQ(Mailed("switch-access-port-summary.htm"), SummaryPage("access"));
  EXPECT_EQ(Mailed("switch-trunk-port-summary.htm"), SummaryPage("trunk"));
  EXPECT_NE(SummaryPage("access"), SummaryPage("trunk"));
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(MailPages, EachChoiceBecomesTheNameOfItsPageInItsPlace) {
  Choose({"Trunk OutErrors", "None", "Access InVolume", "Access Summary", "Trunk InMulticast"});
  EXPECT_EQ(Places(),
            (Lines{"switch-trunk-port-top10-outerrors.htm", "None", kVolumes,
                   "switch-access-port-summary.htm", "switch-trunk-port-top10-inmulticast.htm"}));
  EXPECT_EQ(MailFiles(), (Lines{"switch-access-port-summary.htm", kVolumes,
                                "switch-trunk-port-top10-inmulticast.htm",
                                "switch-trunk-port-top10-outerrors.htm"}));
}

TEST_F(MailPages, AChoiceThatNamesNoReportBecomesNone) {
  Choose({"", "Access", "Access involume", "none", "Disk Top 10"});
  EXPECT_EQ(Places(), Lines(5, "None"));
  EXPECT_EQ(MailFiles(), Lines{});
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(MailPages, OneChoiceTwiceIsOnePageInTwoPlaces) {
  Choose({"Access InVolume", "InVolume of Access ports"});
  EXPECT_EQ(Places(), (Lines{kVolumes, kVolumes, "None", "None", "None"}));
  EXPECT_EQ(MailFiles(), Lines{kVolumes});
}

TEST_F(MailPages, NoPageIsOfTheSiteOrInItsCache) {
  Choose({"Access InVolume", "Access Summary"});
  BuildPort(11, 4, true);
  EXPECT_EQ(CacheFiles(), Lines{});
}

TEST_F(MailPages, AListShowsNoRowOfTheListBefore) {
  Reports("UPDATE VLAN SET InOctetsDate = '2024-05-01 03:10:00' WHERE IsTrunk AND RecNo <> 21");
  LeaveRows();
  Choose({"Access InVolume", "Trunk InVolume"});
  EXPECT_EQ(RowNumbers(), (Lines{"21", "0", "0", "0", "0", "0", "0", "0", "0", "0"}));
  EXPECT_EQ(Mailed(kVolumes), ListPage("access", "InHCOctetsMb24H"));
  EXPECT_EQ(Mailed("switch-trunk-port-top10-involume.htm"), ListPage("trunk", "InHCOctetsMb24H"));
  EXPECT_FALSE(Holds(Mailed("switch-trunk-port-top10-involume.htm"), "Desk"));
  EXPECT_FALSE(Holds(Mailed(kVolumes), "left over"));
}

TEST_F(MailPages, ASummaryEmptiesTheTableToo) {
  LeaveRows();
  Choose({"Access Summary"});
  EXPECT_EQ(RowNumbers(), Lines(10, "0"));
}

TEST_F(MailPages, WithoutAChoiceTheTableStays) {
  LeaveRows();
  Choose({});
  EXPECT_EQ(RowNumbers(), Lines(10, "99"));
}

TEST_F(MailPages, AListWithoutPortsIsAPageAllTheSame) {
  Reports("DELETE FROM VLAN");
  Choose({"Access InVolume"});
  EXPECT_EQ(Mailed(kVolumes), ListPage("access", "InHCOctetsMb24H"));
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(MailPages, AListThatFailsIsReportedAndTheOthersAreBuilt) {
  Reports("ALTER TABLE VLAN RENAME COLUMN InErrorsTot24H TO Gone");
  LeaveRows();
  Choose({"Access InErrors", "Access Summary"});
  EXPECT_EQ(Places(), (Lines{"switch-access-port-top10-inerrors.htm",
                             "switch-access-port-summary.htm", "None", "None", "None"}));
  EXPECT_EQ(EventHeads(), Lines{"1\tmodSelectSql_SqlTop10SwitchStats"});
  EXPECT_EQ(Mailed("switch-access-port-summary.htm"), SummaryPage("access"));
  const std::string page = Mailed("switch-access-port-top10-inerrors.htm");
  EXPECT_TRUE(page.ends_with("</html>"));
  EXPECT_FALSE(Holds(page, "left over"));
}

TEST_F(MailPages, APageThatCannotBeSavedKeepsItsNameAndTheOthersAreBuilt) {
  std::filesystem::create_directory(PathOfPage(kVolumes));
  Choose({"Access InVolume", "Trunk InVolume"});
  EXPECT_EQ(EventHeads(), Lines{"1\tmodHtml_SaveForMail"});
  EXPECT_EQ(Places(),
            (Lines{kVolumes, "switch-trunk-port-top10-involume.htm", "None", "None", "None"}));
  EXPECT_EQ(Mailed("switch-trunk-port-top10-involume.htm"), ListPage("trunk", "InHCOctetsMb24H"));
}

TEST_F(MailPages, TheSecondBuildOfAPageReplacesTheFirst) {
  Choose({"Access InVolume"});
  const std::string before = Mailed(kVolumes);
  Reports("DELETE FROM VLAN WHERE RecNo = 12");
  Choose({"Access InVolume"});
  EXPECT_NE(Mailed(kVolumes), before);
  EXPECT_EQ(Mailed(kVolumes), ListPage("access", "InHCOctetsMb24H"));
}

TEST_F(MailPages, WithoutAPortThereIsNoPortPage) {
  receiver_.PortRepFile = "hist45-1-1.htm";
  receiver_.PortRepRecNo = 11;
  receiver_.PortRepIfIndex = 4;
  receiver_.PortRepDetails = true;
  LeaveRows();
  BuildPortPage(production, receiver_);
  EXPECT_EQ(receiver_.PortRepFile, "None");
  EXPECT_EQ(MailFiles(), Lines{});
  EXPECT_EQ(RowNumbers(), Lines(10, "99"));
}

TEST_F(MailPages, APortPageHasTheThreeChartsOfThePort) {
  EXPECT_EQ(BuildPort(11, 4, false), "hist45-11-4.htm");
  EXPECT_EQ(Mailed("hist45-11-4.htm"), PortPage(11, 4, "Desk11", "Gi0/1"));
  EXPECT_EQ(MailFiles(), Lines{"hist45-11-4.htm"});
  EXPECT_FALSE(Holds(Mailed("hist45-11-4.htm"), "<select"));
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(MailPages, WithDetailsThePortsTableStandsAboveItsCharts) {
  EXPECT_EQ(BuildPort(11, 4, true), "hist45-11-4.htm");
  EXPECT_EQ(Mailed("hist45-11-4.htm"),
            PortPage(11, 4, "Desk11", "Gi0/1", Search{"Desk11", "Gi0/1"}));
  EXPECT_NE(Mailed("hist45-11-4.htm"), PortPage(11, 4, "Desk11", "Gi0/1"));
  EXPECT_EQ(RowNumbers()[0], "11");
  EXPECT_EQ(RowNumbers()[1], "0") << "one port was found";
}

TEST_F(MailPages, ThePortsTableIsFreshAndNotThatOfAList) {
  LeaveRows();
  Choose({"Trunk InVolume"});
  BuildPort(11, 4, true);
  EXPECT_EQ(RowNumbers(), (Lines{"11", "0", "0", "0", "0", "0", "0", "0", "0", "0"}));
  EXPECT_EQ(Mailed("hist45-11-4.htm"),
            PortPage(11, 4, "Desk11", "Gi0/1", Search{"Desk11", "Gi0/1"}));
}

TEST_F(MailPages, ThePortIsLookedForWithoutDetailsToo) {
  LeaveRows();
  BuildPort(11, 4, false);
  EXPECT_EQ(RowNumbers(), (Lines{"11", "0", "0", "0", "0", "0", "0", "0", "0", "0"}));
}

TEST_F(MailPages, APortThatIsGoneHasAnEmptyTableAndItsCharts) {
  History(InsertPortOfDay("VLAN_Day01", {{"RecNo", "66"}, {"IfIndex", "3"}}));
  LeaveRows();
  EXPECT_EQ(BuildPort(66, 3, true), "hist45-66-3.htm");
  const std::string page = Mailed("hist45-66-3.htm");
  EXPECT_EQ(page, PortPage(66, 3, "n/a", "n/a", Search{"n/a", "n/a"}));
  EXPECT_FALSE(Holds(page, "left over"));
  EXPECT_FALSE(Holds(page, "Desk"));
  EXPECT_EQ(RowNumbers(), Lines(10, "0"));
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(MailPages, APortWithoutHistoryHasChartsOfDashes) {
  EXPECT_EQ(BuildPort(12, 4, false), "hist45-12-4.htm");
  EXPECT_EQ(Mailed("hist45-12-4.htm"), PortPage(12, 4, "Desk12", "Gi0/1"));
  EXPECT_EQ(site.Events(), Lines{});
}

TEST_F(MailPages, ADeviceWithoutANameIsAnyDeviceInTheTableAndAStarInTheCharts) {
  AddPort("", "Fa9");
  EXPECT_EQ(BuildPort(70, 9, true), "hist45-70-9.htm");
  EXPECT_EQ(Mailed("hist45-70-9.htm"), PortPage(70, 9, "*", "Fa9", Search{"*", "Fa9"}));
}

TEST_F(MailPages, NamesBeyondAsciiAreFoundAndShownInTheCharset) {
  AddPort("Zürich", "Büro 1");
  EXPECT_EQ(BuildPort(70, 9, true), "hist45-70-9.htm");
  const std::string page = Mailed("hist45-70-9.htm");
  EXPECT_EQ(page, PortPage(70, 9, "Zürich", "Büro 1", Search{"Z\xFCrich", "B\xFCro 1"}));
  EXPECT_TRUE(Holds(page, "Z\xFCrich"));
  EXPECT_TRUE(Holds(page, "B\xFCro 1"));
  EXPECT_EQ(RowNumbers()[0], "70") << "found";
}

TEST_F(MailPages, ANameThatTheCharsetLacksIsFoundAllTheSame) {
  AddPort("Łódź", "Gi1");
  BuildPort(70, 9, true);
  EXPECT_EQ(RowNumbers()[0], "70") << "found";
  EXPECT_EQ(Mailed("hist45-70-9.htm"), PortPage(70, 9, "Łódź", "Gi1", Search{"", "Gi1"}));
  EXPECT_TRUE(Holds(Mailed("hist45-70-9.htm"),
                    "?\xF3"
                    "d?"));
}

TEST_F(MailPages, AQuoteInANameFailsTheSearchAlone) {
  AddPort("O''Hara", "Gi1");
  EXPECT_EQ(BuildPort(70, 9, false), "hist45-70-9.htm");
  EXPECT_EQ(EventHeads(), Lines{"1\tmodSelectSql_SqlSearchDevicePort"});
  EXPECT_EQ(Mailed("hist45-70-9.htm"), PortPage(70, 9, "O'Hara", "Gi1"));
}

TEST_F(MailPages, WithoutHistoryAPortPageIsReportedAndBuilt) {
  site.installation.Remove("History.mdb");
  EXPECT_EQ(BuildPort(11, 4, true), "hist45-11-4.htm");
  EXPECT_EQ(EventHeads(), Lines{"1\tmodSelectSql_SqHist45SwitchControl"});
  const std::string page = Mailed("hist45-11-4.htm");
  EXPECT_TRUE(Holds(page, "Desk11"));
  EXPECT_TRUE(page.ends_with("</html>"));
}

TEST_F(MailPages, ThePausesAreThoseOfTheBackground) {
  const auto before = site.clock.slept();
  BuildPort(11, 4, false);
  // Ten milliseconds for each day and twenty more for each that has a table.
  EXPECT_EQ(site.clock.slept() - before, std::chrono::milliseconds(45 * 10 + 2 * 20));
}

TEST_F(MailPages, RequestsAreAnsweredWhileAPageIsBuilt) {
  const auto client = site.Connect();
  client->Send(Site::Request("switch-access-port-top10-involume.htm"));
  BuildPort(11, 4, true);
  EXPECT_TRUE(client->ReceivedNow().starts_with("HTTP/1.0 200 OK\r\n"));
  EXPECT_EQ(CacheFiles(), Lines{kVolumes});
  EXPECT_EQ(Mailed("hist45-11-4.htm"),
            PortPage(11, 4, "Desk11", "Gi0/1", Search{"Desk11", "Gi0/1"}));
}

TEST_F(MailPages, AStopLeavesThePageWhereItStands) {
  site.loop.Post([this] { site.loop.Quit(); });
  EXPECT_THROW(BuildPort(11, 4, true), LoopEnded);
  EXPECT_EQ(MailFiles(), Lines{});
  EXPECT_EQ(site.Events(), Lines{});
}

}  // namespace
}  // namespace quillon
