// The charts of all ports and of all storages, compared whole with stored blocks.
#include "render/summary_charts.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "render/chart_fixture.h"

namespace quillon {
namespace {

constexpr ConnectionId kOutside[] = {0, 21, -1};

class SummaryCharts : public ChartPrinting {
 protected:
  std::string PortsBand(ConnectionId slot = kSlot) {
    std::string page;
    ChartHeader45d_SwitchSum(house_.render, slot, "Title", "LeftWord", "RightWord", page);
    return page;
  }
  std::string DisksBand(ConnectionId slot = kSlot) {
    std::string page;
    ChartHeader45d_DiskSum(house_.render, slot, "Title", "ReportWord", "LeftWord", "RightWord",
                           page);
    return page;
  }
  std::string PortsChart(std::string_view kind, ConnectionId slot = kSlot) {
    std::string page;
    ChartData45d_SwitchSum(house_.render, slot, kind, page);
    return page;
  }
  std::string DisksChart(std::string_view kind, ConnectionId slot = kSlot) {
    std::string page;
    ChartData45d_DiskSum(house_.render, slot, kind, page);
    return page;
  }

  // The chart of an unknown kind with the disks' third line in its popups.
  static std::string DisksOfUnknownKind() {
    return Replaced(BodyOfUnknownKind(), "<br>: </div>", "<br>: <br>Word86: </div>");
  }

  const std::string ports_ = StoredPiece("chart_switch_summary_ports.html");
  const std::string disks_ = StoredPiece("chart_disk_summary_unix.html");
};

TEST_F(SummaryCharts, BandAndChartAreAWholeBlock) {
  EXPECT_EQ(ports_, PortsBand() + PortsChart("ports"));
  EXPECT_EQ(disks_, DisksBand() + DisksChart("unix"));
  ExpectNoEvent();
}

TEST_F(SummaryCharts, KindOfPortsChoosesThePanelAndTheIds) {
  Hist45dSwitchRecord& record = AllPorts();
  const struct {
    std::string kind;
    Panel& panel;
    std::string ids;
  } rows[] = {{"volume", record.Volume, "'c1"},
              {"broadcast", record.Broadcast, "'c2"},
              {"errors", record.Errors, "'c3"},
              {"ports", record.Ports, "'c4"}};
  for (const auto& row : rows) {
    std::swap(row.panel, record.Ports);
    EXPECT_EQ(Replaced(BodyOf(ports_), "'c4", row.ids), PortsChart(row.kind)) << row.kind;
    std::swap(row.panel, record.Ports);
  }
}

TEST_F(SummaryCharts, KindOfDisksChoosesThePanelAndTheIds) {
  Hist45dDiskRecord& record = AllDisks();
  const struct {
    std::string kind;
    Panel& panel;
    std::string ids;
  } rows[] = {{"physical", record.Physical, "'c1"},
              {"virtual", record.Virtual, "'c2"},
              {"windows", record.Windows, "'c3"},
              {"unix", record.Unix, "'c4"}};
  for (const auto& row : rows) {
    std::swap(row.panel, record.Unix);
    EXPECT_EQ(Replaced(BodyOf(disks_), "'c4", row.ids), DisksChart(row.kind)) << row.kind;
    std::swap(row.panel, record.Unix);
  }
}

TEST_F(SummaryCharts, UnknownKindIsAnEmptyChart) {
  AllPorts().TrafficDate = AllDisks().StorageDate = Port().TrafficDate;
  for (const std::string kind :
       {"", "Ports", "ports ", "port", "Volume", "unix", "physical", "multicast"}) {
    EXPECT_EQ(BodyOfUnknownKind(), PortsChart(kind)) << kind;
  }
  for (const std::string kind :
       {"", "Unix", "UNIX", " unix", "disk", "Windows", "volume", "ports", "physical\r\n"}) {
    EXPECT_EQ(DisksOfUnknownKind(), DisksChart(kind)) << kind;
  }
  ExpectNoEvent();
}

TEST_F(SummaryCharts, BandOfPortsPrintsItsTextsAsTheyAre) {
  for (const std::string text : {"", "O'Neil & \"<b>K\xFC", "&nbsp;", "\r\n"}) {
    AllPorts().Report = text;
    std::string page;
    ChartHeader45d_SwitchSum(house_.render, kSlot, "1" + text, "2" + text, "3" + text, page);
    EXPECT_EQ(WithWords(Replaced(BandOf(ports_), "PortsReport", text), text), page);
  }
}

TEST_F(SummaryCharts, BandOfDisksPrintsItsTextsAsTheyAre) {
  for (const std::string text : {"", "O'Neil & \"<b>K\xFC", "&nbsp;", "\r\n"}) {
    std::string page;
    ChartHeader45d_DiskSum(house_.render, kSlot, "1" + text, "4" + text, "2" + text, "3" + text,
                           page);
    EXPECT_EQ(WithWords(Replaced(BandOf(disks_), ">ReportWord<", ">4" + text + "<"), text), page);
  }
}

TEST_F(SummaryCharts, BandOfDisksReadsNoRecord) {
  for (const int slot : {0, 1, 21, -1}) {
    EXPECT_EQ(BandOf(disks_), DisksBand(static_cast<ConnectionId>(slot))) << slot;
  }
  ExpectNoEvent();
}

TEST_F(SummaryCharts, WordsThatTheLanguageFileLacksShowSo) {
  house_.words = LangWords();
  EXPECT_EQ(Replaced(BandOf(ports_), "Word18:", "n/a:"), PortsBand());
  EXPECT_EQ(Replaced(BandOf(disks_), "Word18:", "n/a:"), DisksBand());
  EXPECT_EQ(Replaced(BodyOf(disks_), "<br>Word86: ", "<br>n/a: "), DisksChart("unix"));
}

TEST_F(SummaryCharts, TextsOfAPanelArePrintedAsTheyAre) {
  for (const std::string text : {"", "-", "O'Neil & \"<b>K\xFC", "&nbsp;", "\r\n"}) {
    Panel& panel = AllDisks().Unix;
    std::string expected = BodyOf(disks_);
    const std::pair<std::string*, std::string> places[] = {
        {&panel.YaxisMax, "SumUnixTop"},         {&panel.YaxisHalf, "SumUnixHalf"},
        {&panel.NameLeft, "SumUnixNameLeft"},    {&panel.NameRight, "SumUnixNameRight"},
        {&panel.Left[45], "SumUnixLeft-45-"},    {&panel.Right[45], "SumUnixRight-45-"},
        {&panel.Proc[45], " (SumUnixProc-45-)"}, {&panel.Num[45], "SumUnixNum-45-"},
    };
    int number = 0;
    for (const auto& [field, mark] : places) {
      *field = std::to_string(++number) + text;
      expected = Replaced(expected, mark, *field);
    }
    EXPECT_EQ(expected, DisksChart("unix"));
  }
}

TEST_F(SummaryCharts, BarIsAsHighAsItsText) {
  for (const std::string height : {"1", "130", ""}) {
    AllPorts().Ports.LeftBar[30] = height;
    EXPECT_EQ(Replaced(BodyOf(ports_), "height='4330'", "height='" + height + "'"),
              PortsChart("ports"));
    AllDisks().Unix.RightBar[30] = height;
    EXPECT_EQ(Replaced(BodyOf(disks_), "height='5380'", "height='" + height + "'"),
              DisksChart("unix"));
  }
  ExpectNoEvent();
}

TEST_F(SummaryCharts, DayOfDisksWithoutDataHasThreeDashesAndNoShare) {
  Panel& panel = AllDisks().Windows;
  panel.Left[1] = panel.Right[1] = panel.Num[1] = "-";
  panel.Proc[1] = "";
  EXPECT_NE(std::string::npos,
            DisksChart("windows").find("      <div id='c301' class='popupChart' style='left:88px'>"
                                       "<b>Tuesday, September 17</b><br>SumWindowsNameLeft: -<br>"
                                       "SumWindowsNameRight: -<br>Word86: -</div>\r\n"));
}

TEST_F(SummaryCharts, SundayAtTheBeginningIsAHeadCell) {
  AllPorts().TrafficDate = DatesFrom(2023, 7, 16);
  AllDisks().StorageDate = DatesFrom(2024, 9, 15);
  const std::string place =
      "px'></table></td>\r\n    <th><table width='14px'>"
      "<a href=# onMouseOver=\"popupShow('c401')\" href=# "
      "onMouseOut=\"popupHide('c401')\">";
  EXPECT_NE(std::string::npos, PortsChart("ports").find("55" + place + "16</a></table></th>\r\n"));
  EXPECT_NE(std::string::npos, DisksChart("unix").find("55" + place + "15</a></table></th>\r\n"));
}

TEST_F(SummaryCharts, SlotsDoNotMix) {
  house_.records.Hist45dSwitchRep[1] = AllPorts();
  house_.records.Hist45dDiskRep[1] = AllDisks();
  AllPorts() = Hist45dSwitchRecord();
  AllDisks() = Hist45dDiskRecord();
  EXPECT_EQ(ports_, PortsBand(1) + PortsChart("ports", 1));
  EXPECT_EQ(disks_, DisksBand(1) + DisksChart("unix", 1));
}

TEST_F(SummaryCharts, BlocksAreAppendedBehindWhatIsThere) {
  std::string page = "<!-- before -->";
  ChartHeader45d_SwitchSum(house_.render, kSlot, "Title", "LeftWord", "RightWord", page);
  ChartData45d_SwitchSum(house_.render, kSlot, "ports", page);
  ChartHeader45d_DiskSum(house_.render, kSlot, "Title", "ReportWord", "LeftWord", "RightWord",
                         page);
  ChartData45d_DiskSum(house_.render, kSlot, "unix", page);
  EXPECT_EQ("<!-- before -->" + ports_ + disks_, page);
}

TEST_F(SummaryCharts, BandOfPortsOutsideTheSlotsEndsBeforeTheReport) {
  for (const ConnectionId slot : kOutside) {
    SCOPED_TRACE(slot);
    house_.ForgetEvents();
    EXPECT_EQ(ports_.substr(0, PlaceOf(ports_, "        <td width='190px'>")), PortsBand(slot));
    ExpectFailureOf("ChartHeader45d_SwitchSum");
  }
}

TEST_F(SummaryCharts, ChartOutsideTheSlotsEndsWhereItPicksThePanel) {
  for (const ConnectionId slot : kOutside) {
    SCOPED_TRACE(slot);
    for (const std::string kind : {"volume", "broadcast", "errors", "ports"}) {
      house_.ForgetEvents();
      EXPECT_EQ("", PortsChart(kind, slot)) << kind;
      ExpectFailureOf("ChartData45d_SwitchSum");
    }
    for (const std::string kind : {"physical", "virtual", "windows", "unix"}) {
      house_.ForgetEvents();
      EXPECT_EQ("", DisksChart(kind, slot)) << kind;
      ExpectFailureOf("ChartData45d_DiskSum");
    }
  }
}

TEST_F(SummaryCharts, ChartOfUnknownKindOutsideTheSlotsEndsBeforeItsFirstDate) {
  const std::string empty = BodyOfUnknownKind();
  const std::string rest = empty.substr(0, PlaceOf(empty, "    <td><table width='14px'>"));
  for (const ConnectionId slot : kOutside) {
    SCOPED_TRACE(slot);
    house_.ForgetEvents();
    EXPECT_EQ(rest, PortsChart("Ports", slot));
    ExpectFailureOf("ChartData45d_SwitchSum");
    house_.ForgetEvents();
    EXPECT_EQ(rest, DisksChart("disk", slot));
    ExpectFailureOf("ChartData45d_DiskSum");
  }
}

}  // namespace
}  // namespace quillon
