// A port's history in figures: which columns it takes, marks of missing ones, axes, bars, words.
// The walk over the days is in switch_hist45_days_test, the display texts of the figures in
// switch_hist45_texts_test, failures and waits in switch_hist45_failure_test.
#include "queries/hist45_fixture.h"

namespace quillon {
namespace {

class SwitchHist45Test : public Hist45Test {
 protected:
  // Reads port 4 of device 7 into position 45, as the report does for each day.
  void ReadDay(const std::string& histTable = "VLAN_Day01") {
    ReusedConnection history(house.settings.ConnHistory);
    SqlHist45SwitchStats(house.queries, history, kSlot, kNewest, histTable, 7, 4);
  }

  // A day of yesterday in place of the one before.
  void OnlyDay(const Columns& differing) const {
    History("DELETE FROM VLAN_HistCtrl; DELETE FROM VLAN_Day01;");
    AddPortHistory(1, differing);
  }
};

TEST_F(SwitchHist45Test, EachColumnHasItsSeries) {
  AddPort("VLAN_Day01");
  ReadDay();
  EXPECT_EQ(Figures(kNewest), (Lines{"6", "5", "4", "3", "2", "1"}));
  EXPECT_EQ(Bars(kNewest), kSixOnes);
  EXPECT_EQ(Figures(44), Lines(6, ""));
  ExpectNoEvent();
}

TEST_F(SwitchHist45Test, DayShowsTextsAndBarsOfItsFigures) {
  AddPortHistory(1);
  ReportPort();
  EXPECT_EQ(Figures(kNewest), (Lines{"6 M", "5 M", "4 W39", "3 W39", "2 W38", "1 W38"}));
  // Axis tops 6, 4 and 2.
  EXPECT_EQ(Bars(kNewest), (Lines{"100", "83", "100", "75", "100", "50"}));
  EXPECT_EQ(Axis(PortRecord().Volume), (Lines{"6 M", "3 M"}));
  EXPECT_EQ(Axis(PortRecord().Broadcast), (Lines{"4", "2"}));
  EXPECT_EQ(Axis(PortRecord().Errors), (Lines{"2", "1"}));
  ExpectNoEvent();
}

TEST_F(SwitchHist45Test, EachDayIsReadFromItsOwnTable) {
  AddPortDay(1, "VLAN_Day30");
  AddPortDay(2, "VLAN_Day07");
  AddPortDay(45, "VLAN_Day08");
  AddPort("VLAN_Day30", {{"InErrorsTot24H", "30"}});
  AddPort("VLAN_Day07", {{"InErrorsTot24H", "7"}});
  AddPort("VLAN_Day08", {{"InErrorsTot24H", "8"}});
  ReportPort();
  EXPECT_EQ(Figures(45)[4], "30 W38");
  EXPECT_EQ(Figures(44)[4], "7 W38");
  EXPECT_EQ(Figures(43), kSixDashes);
  EXPECT_EQ(Figures(1)[4], "8 W38");
}

TEST_F(SwitchHist45Test, OnlyTheRowOfThePortCounts) {
  AddPortHistory(1);
  AddPort("VLAN_Day01", {{"IfIndex", "5"}, {"InHCOctetsMb24H", "500"}});
  AddPort("VLAN_Day01", {{"RecNo", "8"}, {"InHCOctetsMb24H", "800"}});
  AddPort("VLAN_Day01", {{"RecNo", "4"}, {"IfIndex", "7"}, {"InHCOctetsMb24H", "400"}});
  EXPECT_EQ(ReportPort().Volume.Left[kNewest], "6 M");
  EXPECT_EQ(PortRecord().Volume.YaxisMax, "6 M");
}

TEST_F(SwitchHist45Test, FirstStoredRowOfThePortCounts) {
  AddPortHistory(1, {{"InHCOctetsMb24H", "9"}});
  AddPort("VLAN_Day01", {{"InHCOctetsMb24H", "3"}});
  EXPECT_EQ(ReportPort().Volume.Left[kNewest], "9 M");
}

TEST_F(SwitchHist45Test, TrunkPortHasItsHistoryToo) {
  AddPortHistory(1, {{"IsTrunk", "TRUE"}});
  EXPECT_EQ(ReportPort().Volume.Left[kNewest], "6 M");
}

TEST_F(SwitchHist45Test, DayWithoutThePortIsDashes) {
  AddPortDay(1, "VLAN_Day01");
  AddPort("VLAN_Day01", {{"IfIndex", "5"}});
  FillPortDay(kNewest);
  ReadDay();
  EXPECT_EQ(Figures(kNewest), kSixDashes);
  EXPECT_EQ(Bars(kNewest), kSixOnes);
  ReportPort();
  EXPECT_EQ(Figures(kNewest), kSixDashes);
  EXPECT_EQ(Bars(kNewest), kSixOnes);
  EXPECT_EQ(PortRecord().HistTable[kNewest], "VLAN_Day01");
  ExpectNoEvent();
}

TEST_F(SwitchHist45Test, MissingDayIsDashesWhateverStoodThere) {
  AddPortHistory(2);
  FillPortDay(kNewest);
  ReportPort();
  EXPECT_EQ(Figures(kNewest), kSixDashes);
  EXPECT_EQ(Bars(kNewest), kSixOnes);
  EXPECT_EQ(Figures(44)[0], "6 M");
}

TEST_F(SwitchHist45Test, MinusOneIsMissingInVolumesAndMulticastOnly) {
  const Lines raw = {"-", "-", "-1", "-", "-1", "-1"};
  const Lines shown = {"-", "-", "-1 W39", "-", "-1 W38", "-1 W38"};
  const Lines bars = {"1", "1", "-50", "1", "-50", "-50"};  // of an axis top of 2
  const auto& all = PortSeriesInOrder();
  for (std::size_t i = 0; i < all.size(); ++i) {
    OnlyDay({{all[i].name, "-1"}});
    ReadDay();
    EXPECT_EQ(Figures(kNewest)[i], raw[i]) << all[i].name;
    EXPECT_EQ(Bars(kNewest), kSixOnes) << all[i].name;
  }
  OnlyDay({{"InHCOctetsMb24H", "-1"},
           {"OutHCOctetsMb24H", "-1"},
           {"InBroadCastPpm24H", "-1"},
           {"InMultiCastPpm24H", "-1"},
           {"InErrorsTot24H", "-1"},
           {"OutErrorsTot24H", "-1"}});
  ReportPort();
  EXPECT_EQ(Figures(kNewest), shown);
  EXPECT_EQ(Bars(kNewest), bars);
  ExpectNoEvent();
}

TEST_F(SwitchHist45Test, OtherNegativeFiguresAreNumbers) {
  for (const PortSeries& series : PortSeriesInOrder()) {
    OnlyDay({{series.name, "-2"}});
    ReadDay();
    EXPECT_EQ((PortRecord().*series.panel.*series.values)[kNewest], "-2") << series.name;
  }
}

TEST_F(SwitchHist45Test, DayIsStoredAsTheColumnsTexts) {
  AddPort("VLAN_Day01", {{"InHCOctetsMb24H", "2.50"},
                         {"OutHCOctetsMb24H", "123456789012345"},
                         {"InBroadCastPpm24H", "0"},
                         {"InMultiCastPpm24H", "'keiner zählt'"},
                         {"InErrorsTot24H", "''"},
                         {"OutErrorsTot24H", "-0.125"}});
  ReadDay();
  EXPECT_EQ(Figures(kNewest),
            (Lines{"2.5", "123456789012345", "0", "keiner z\xE4hlt", "", "-0.125"}));
  ExpectNoEvent();
}

TEST_F(SwitchHist45Test, HeadsAndLegendsAreWords) {
  const Hist45SwitchRecord& record = ReportPort();
  const auto words = [](const Panel& panel) {
    return Lines{panel.Head, panel.NameLeft, panel.NameRight};
  };
  EXPECT_EQ(words(record.Volume), (Lines{"W12", "W22", "W23"}));
  EXPECT_EQ(words(record.Broadcast), (Lines{"W13", "W24", "W25"}));
  EXPECT_EQ(words(record.Errors), (Lines{"W14", "W26", "W27"}));
}

TEST_F(SwitchHist45Test, DeviceAndPortAreTheCallersAsBytesOfThePagesCharset) {
  struct Case {
    std::string charSet;
    std::string device;
    std::string port;
  };
  const Case cases[] = {{"ISO-8859-1", "Z\xFCrich", "<??? 5>"},
                        {"UTF-8", "Zürich", "<Юг€ 5>"},
                        {"windows-1251", "Z?rich", "<\xDE\xE3\x88 5>"}};
  for (const Case& row : cases) {
    house.settings.CharSet = row.charSet;
    SqHist45SwitchControl(house.queries, kSlot, 7, 4, "Zürich", "<Юг€ 5>", false);
    EXPECT_EQ(PortRecord().Device, row.device) << row.charSet;
    EXPECT_EQ(PortRecord().Port, row.port) << row.charSet;
  }
}

TEST_F(SwitchHist45Test, PortWithoutNamesHasItsHistory) {
  AddPortHistory(1);
  SqHist45SwitchControl(house.queries, kSlot, 7, 4, "n/a", "n/a", false);
  EXPECT_EQ(PortRecord().Device, "n/a");
  EXPECT_EQ(PortRecord().Port, "n/a");
  EXPECT_EQ(Figures(kNewest)[0], "6 M");
}

TEST_F(SwitchHist45Test, OnlyTheSlotAskedForIsWritten) {
  AddPortHistory(1);
  for (const int slot : {1, 15, 20}) {
    const Hist45SwitchRecord& record = ReportPort(false, static_cast<ConnectionId>(slot));
    EXPECT_EQ(record.Device, "Core") << slot;
    EXPECT_EQ(record.Volume.Left[kNewest], "6 M") << slot;
  }
  EXPECT_EQ(house.records.Hist45SwitchRep[2].Device, "");
  EXPECT_EQ(house.records.Hist45SwitchRep[2].Volume.Left[kNewest], "");
}

TEST_F(SwitchHist45Test, NextReportOfASlotStandsInThePlaceOfTheOneBefore) {
  AddPortHistory(1, {{"InHCOctetsMb24H", "900"}, {"InErrorsTot24H", "3000"}});
  ReportPort();
  EXPECT_EQ(PortRecord().Errors.YaxisMax, "3 K");
  History("DELETE FROM VLAN_Day01");
  AddPort("VLAN_Day01");
  ReportPort();
  EXPECT_EQ(Figures(kNewest), (Lines{"6 M", "5 M", "4 W39", "3 W39", "2 W38", "1 W38"}));
  EXPECT_EQ(Axis(PortRecord().Volume), (Lines{"6 M", "3 M"}));
  EXPECT_EQ(Axis(PortRecord().Errors), (Lines{"2", "1"}));
  ExpectNoEvent();
}

}  // namespace
}  // namespace quillon
