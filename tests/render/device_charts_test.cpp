// The charts of one port, of a server's memory and of one disk, compared whole with stored blocks.
#include "render/device_charts.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "render/chart_fixture.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;
using BandProcedure = decltype(&ChartHeader45_Switch);
using ChartProcedure = decltype(&ChartData45_Switch);

// The disk's chart has no kind.
void DiskChart(const RenderContext& context, ConnectionId slot, std::string_view,
               std::string& chart) {
  ChartData45_Disk(context, slot, chart);
}

struct Chart {
  std::string report;  // ends the names of its two procedures
  BandProcedure printBand;
  ChartProcedure printBody;
  std::string kind;
  std::string block;  // stored
};

const Chart kCharts[] = {
    {"Switch", ChartHeader45_Switch, ChartData45_Switch, "volume", "chart_port_volume.html"},
    {"Mem", ChartHeader45_Mem, ChartData45_Mem, "virtual", "chart_memory_virtual.html"},
    {"Disk", ChartHeader45_Disk, DiskChart, "", "chart_disk.html"},
};

const std::string kAwkward[] = {"",
                                "n/a",
                                "O'Neil & \"<b>x</b>\"",
                                "K\xFC"
                                "che \xFF",
                                "&nbsp;",
                                "\r\n"};

class DeviceCharts : public ChartPrinting {
 protected:
  std::string Band(BandProcedure print, ConnectionId slot = kSlot) {
    std::string chart;
    print(house_.render, slot, "Title", "LeftWord", "RightWord", chart);
    return chart;
  }
  std::string Body(ChartProcedure print, std::string_view kind, ConnectionId slot = kSlot) {
    std::string chart;
    print(house_.render, slot, kind, chart);
    return chart;
  }
  std::string PortChart(std::string_view kind) { return Body(ChartData45_Switch, kind); }
  std::string MemoryChart(std::string_view kind) { return Body(ChartData45_Mem, kind); }
  std::string DiskBody() { return Body(DiskChart, ""); }

  const std::string port_ = BodyOf(StoredPiece("chart_port_volume.html"));
  const std::string memory_ = BodyOf(StoredPiece("chart_memory_virtual.html"));
  const std::string disk_ = BodyOf(StoredPiece("chart_disk.html"));
};

// What a regular expression's group matches, place by place.
Lines AllMatches(const std::string& text, const std::string& expression) {
  const std::regex regex(expression);
  Lines matches;
  for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match) {
    matches.push_back((*match)[1]);
  }
  return matches;
}

TEST_F(DeviceCharts, BandAndChartAreAWholeBlock) {
  for (const Chart& chart : kCharts) {
    EXPECT_EQ(StoredPiece(chart.block), Band(chart.printBand) + Body(chart.printBody, chart.kind))
        << chart.report;
  }
  ExpectNoEvent();
}

TEST_F(DeviceCharts, KindOfAPortChoosesThePanelAndTheIds) {
  std::swap(Port().Volume, Port().Broadcast);
  EXPECT_EQ(Replaced(port_, "'c1", "'c2"), PortChart("broadcast"));
  std::swap(Port().Broadcast, Port().Errors);
  EXPECT_EQ(Replaced(port_, "'c1", "'c3"), PortChart("errors"));
}

TEST_F(DeviceCharts, KindOfMemoryChoosesThePanelAndTheIds) {
  std::swap(Memory().Virtual, Memory().Physical);
  EXPECT_EQ(Replaced(memory_, "'c2", "'c1"), MemoryChart("physical"));
}

TEST_F(DeviceCharts, UnknownKindIsAnEmptyChart) {
  Memory().StorageDate = Port().TrafficDate;
  for (const std::string kind : {"", "Volume", "VOLUME", "volume ", " volume", "volumes", "vol",
                                 "multicast", "ports", "physical", "virtual"}) {
    EXPECT_EQ(BodyOfUnknownKind(), PortChart(kind)) << kind;
  }
  for (const std::string kind :
       {"", "Physical", "Virtual", "virtual ", "physical\r\n", "disk", "windows", "volume"}) {
    EXPECT_EQ(BodyOfUnknownKind(), MemoryChart(kind)) << kind;
  }
  ExpectNoEvent();
}

TEST_F(DeviceCharts, ChartsOfAPortPageShareNoId) {
  const Lines ids =
      AllMatches(PortChart("volume") + PortChart("broadcast") + PortChart("errors"), "id='([^']*)");
  Lines expected;
  for (const int base : {100, 200, 300}) {
    for (int day = 1; day <= 45; ++day) expected.push_back("c" + std::to_string(base + day));
  }
  EXPECT_EQ(expected, ids);
}

TEST_F(DeviceCharts, BandPrintsTheCallersWordsAsTheyAre) {
  for (const Chart& chart : kCharts) {
    for (const std::string& text : kAwkward) {
      std::string band;
      chart.printBand(house_.render, kSlot, "1" + text, "2" + text, "3" + text, band);
      EXPECT_EQ(WithWords(BandOf(StoredPiece(chart.block)), text), band) << chart.report;
    }
  }
}

TEST_F(DeviceCharts, BandPrintsTheNamesOfTheRecordAsTheyAre) {
  for (const std::string& text : kAwkward) {
    for (std::string* device : {&Port().Device, &Memory().Device, &Disk().Device}) *device = text;
    for (std::string* name : {&Port().Port, &Memory().Storage, &Disk().Storage}) *name = text + "/";
    for (const Chart& chart : kCharts) {
      const std::string stored = BandOf(StoredPiece(chart.block));
      const std::string device = AllMatches(stored, "190px'>([^<]*)<").at(0);
      const std::string name = AllMatches(stored, "200px'>([^<]*)<").at(0);
      EXPECT_EQ(Replaced(Replaced(stored, ">" + name + "<", ">" + text + "/<"), ">" + device + "<",
                         ">" + text + "<"),
                Band(chart.printBand))
          << chart.report;
    }
  }
}

TEST_F(DeviceCharts, WordsThatTheLanguageFileLacksShowSo) {
  house_.words = LangWords();
  for (const Chart& chart : kCharts) {
    EXPECT_EQ((Lines{"n/a:", "n/a:"}), AllMatches(Band(chart.printBand), "'50px'>([^<]*)<"))
        << chart.report;
  }
}

TEST_F(DeviceCharts, TextsOfAPanelArePrintedAsTheyAre) {
  for (const std::string& text : kAwkward) {
    Panel& panel = Memory().Virtual;
    std::string expected = memory_;
    const std::pair<std::string*, std::string> places[] = {
        {&panel.YaxisMax, "VirtualTop"},       {&panel.YaxisHalf, "VirtualHalf"},
        {&panel.NameLeft, "VirtualNameLeft"},  {&panel.NameRight, "VirtualNameRight"},
        {&panel.Left[9], "VirtualLeft-9-"},    {&panel.Right[9], "VirtualRight-9-"},
        {&panel.Proc[9], " (VirtualProc-9-)"},
    };
    int number = 0;
    for (const auto& [field, mark] : places) {
      *field = std::to_string(++number) + text;
      expected = Replaced(expected, mark, *field);
    }
    EXPECT_EQ(expected, MemoryChart("virtual"));
  }
}

TEST_F(DeviceCharts, BarIsAsHighAsItsText) {
  for (const std::string height : {"1", "100", "130", "-5", "4 000", ""}) {
    Port().Volume.LeftBar[7] = height;
    Port().Volume.RightBar[45] = height;
    const std::string left = Replaced(port_, "height='1007'", "height='" + height + "'");
    EXPECT_EQ(Replaced(left, "height='1095'", "height='" + height + "'"), PortChart("volume"));
  }
  ExpectNoEvent();
}

TEST_F(DeviceCharts, DayWithoutDataHasShortBarsAndDashes) {
  for (Panel* panel : {&Port().Volume, &Disk().Disk}) {
    panel->LeftBar[1] = panel->RightBar[1] = "1";
    panel->Left[1] = panel->Right[1] = "-";
    panel->Proc[1] = "";
  }
  const std::string bars = "<tr class='chartDataLeft'><td height='1'></td></tr>";
  EXPECT_NE(std::string::npos, PortChart("volume").find(bars));
  EXPECT_NE(std::string::npos,
            PortChart("volume").find("left:88px'><b>Monday, March 18</b><br>VolumeNameLeft: -<br>"
                                     "VolumeNameRight: -</div>\r\n"));
  EXPECT_NE(std::string::npos, DiskBody().find(bars));
  EXPECT_NE(std::string::npos,
            DiskBody().find("left:88px'><b>Thursday, February 1</b><br>DiskNameLeft: -<br>"
                            "DiskNameRight: -</div>\r\n"));
}

TEST_F(DeviceCharts, UnknownShareOfAStorageLeavesNothingBehindTheFigure) {
  Memory().Virtual.Proc[3] = "";
  EXPECT_EQ(Replaced(memory_, " (VirtualProc-3-)", ""), MemoryChart("virtual"));
  Disk().Disk.Proc[3] = "";
  EXPECT_EQ(Replaced(disk_, " (DiskProc-3-)", ""), DiskBody());
}

TEST_F(DeviceCharts, SundaysAloneAreHeadCells) {
  // Days of March 2024, Monday to Sunday, and the first Sunday of a chart that begins there.
  const std::pair<int, int> rows[] = {{18, 7}, {19, 6}, {20, 5}, {21, 4},
                                      {22, 3}, {23, 2}, {24, 1}};
  for (const auto& [firstDay, firstSunday] : rows) {
    SCOPED_TRACE(firstDay);
    Port().TrafficDate = DatesFrom(2024, 3, firstDay);
    Lines sundays;
    for (int day = firstSunday; day <= 45; day += 7) sundays.push_back(std::to_string(100 + day));
    const std::string chart = PortChart("volume");
    EXPECT_EQ(sundays, AllMatches(chart, "<th><table width='14px'>.*popupShow\\('c(\\d+)'.*</th>"));
    EXPECT_EQ(45 - sundays.size(),
              AllMatches(chart, "<td>(<table width='14px'>).*</td>\r\n").size());
  }
}

TEST_F(DeviceCharts, SlotWithoutAReportShowsTheZeroDate) {
  const std::string days =
      "<td><table width='14px'>.*(>30<)/a></table></td>\r\n"
      ".*<b>Saturday, December 30</b><br>: <br>: </div>\r\n";
  for (const Chart& chart : kCharts) {
    EXPECT_EQ(Lines(45, ">30<"), AllMatches(Body(chart.printBody, chart.kind, 2), days))
        << chart.report;
    EXPECT_EQ(Lines{""}, AllMatches(Band(chart.printBand, 2), "190px'>([^<]*)<")) << chart.report;
  }
  ExpectNoEvent();
}

TEST_F(DeviceCharts, SlotsDoNotMix) {
  house_.records.Hist45SwitchRep[1] = Port();
  house_.records.Hist45MemRep[1] = Memory();
  house_.records.Hist45DiskRep[1] = Disk();
  Port() = Hist45SwitchRecord();
  Memory() = Hist45MemRecord();
  Disk() = Hist45DiskRecord();
  for (const Chart& chart : kCharts) {
    EXPECT_EQ(StoredPiece(chart.block),
              Band(chart.printBand, 1) + Body(chart.printBody, chart.kind, 1))
        << chart.report;
  }
}

TEST_F(DeviceCharts, BlocksAreAppendedBehindWhatIsThere) {
  std::string text = "<!-- before -->";
  std::string expected = text;
  for (const Chart& chart : kCharts) {
    chart.printBand(house_.render, kSlot, "Title", "LeftWord", "RightWord", text);
    chart.printBody(house_.render, kSlot, chart.kind, text);
    expected += StoredPiece(chart.block);
  }
  EXPECT_EQ(expected, text);
}

class DeviceChartSlots : public DeviceCharts {
 protected:
  static constexpr ConnectionId kOutside[] = {0, 21, -1};

  // Expects that the procedure fails for such slots and leaves this much of the text.
  void ExpectRest(const std::string& rest, const std::string& procedure, ChartProcedure print,
                  std::string_view kind) {
    for (const ConnectionId slot : kOutside) {
      SCOPED_TRACE(procedure + " of slot " + std::to_string(slot) + ": " + std::string(kind));
      house_.ForgetEvents();
      EXPECT_EQ(rest, Body(print, kind, slot));
      ExpectFailureOf(procedure);
    }
  }
};

TEST_F(DeviceChartSlots, BandEndsBeforeTheNameOfTheDevice) {
  for (const Chart& chart : kCharts) {
    const std::string stored = BandOf(StoredPiece(chart.block));
    for (const ConnectionId slot : kOutside) {
      SCOPED_TRACE(chart.report + " of slot " + std::to_string(slot));
      house_.ForgetEvents();
      EXPECT_EQ(stored.substr(0, PlaceOf(stored, "        <td width='190px'>")),
                Band(chart.printBand, slot));
      ExpectFailureOf("ChartHeader45_" + chart.report);
    }
  }
}

TEST_F(DeviceChartSlots, ChartOfAKindEndsWhereItPicksThePanel) {
  for (const std::string kind : {"volume", "broadcast", "errors"}) {
    ExpectRest("", "ChartData45_Switch", ChartData45_Switch, kind);
  }
  for (const std::string kind : {"physical", "virtual"}) {
    ExpectRest("", "ChartData45_Mem", ChartData45_Mem, kind);
  }
  ExpectRest("", "ChartData45_Disk", DiskChart, "");
}

TEST_F(DeviceChartSlots, ChartOfUnknownKindEndsBeforeItsFirstDate) {
  const std::string empty = BodyOfUnknownKind();
  const std::string rest = empty.substr(0, PlaceOf(empty, "    <td><table width='14px'>"));
  ExpectRest(rest, "ChartData45_Switch", ChartData45_Switch, "Volume");
  ExpectRest(rest, "ChartData45_Mem", ChartData45_Mem, "");
}

TEST_F(DeviceChartSlots, TextBeforeTheFailureStays) {
  std::string text = "<!-- before -->";
  ChartData45_Switch(house_.render, 21, "volume", text);
  EXPECT_EQ("<!-- before -->", text);
}

}  // namespace
}  // namespace quillon
