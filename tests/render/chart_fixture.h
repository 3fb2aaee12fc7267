// A house whose chart records hold a text of its own in every place: day 7 of the panel Volume is
// "VolumeLeft-7-", so that no panel, side or day can stand in another's place. The bars are numbers
// far beyond a real one, since they are printed and not computed. Every record has dates of its
// own, and word 38 is "Word38".
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <regex>
#include <string>
#include <vector>

#include "support/house.h"
#include "support/stored_text.h"

namespace quillon {

// The two halves of a stored block: the band, and the chart under it.
inline std::string BandOf(const std::string& block) {
  return block.substr(0, PlaceOf(block, "<table width='790px' class='chartData'>"));
}
inline std::string BodyOf(const std::string& block) {
  return block.substr(BandOf(block).size());
}

// The band with other words of the caller: "1" and the text for the title, "2" and "3" for the
// legend.
inline std::string WithWords(std::string band, const std::string& text) {
  band = Replaced(band, ">Title<", ">1" + text + "<");
  band = Replaced(band, ">LeftWord<", ">2" + text + "<");
  return Replaced(band, ">RightWord<", ">3" + text + "<");
}

// The chart of a kind that nobody knows, in the days of the port: a stored one without the texts
// of its panel, and with ids from c1 on.
inline std::string BodyOfUnknownKind() {
  std::string body = BodyOf(StoredPiece("chart_port_volume.html"));
  body = std::regex_replace(body, std::regex("height='1\\d\\d\\d'"), "height=''");
  body = std::regex_replace(body, std::regex("Volume(Top|Half|NameLeft|NameRight)"), "");
  body = std::regex_replace(body, std::regex("Volume(Left|Right)-\\d+-"), "");
  return std::regex_replace(body, std::regex("'c10?(\\d+)'"), "'c$1'");
}

// The left bar of day i is `barsFrom` + i, the right one 50 more.
inline Panel MarkedPanel(const std::string& name, int barsFrom) {
  Panel panel;
  panel.Report = name + "Report";
  panel.Head = name + "Head";
  panel.NameLeft = name + "NameLeft";
  panel.NameRight = name + "NameRight";
  panel.YaxisMax = name + "Top";
  panel.YaxisHalf = name + "Half";
  for (int day = 1; day <= 45; ++day) {
    const std::string mark = "-" + std::to_string(day) + "-";
    panel.Left[day] = name + "Left" + mark;
    panel.LeftBar[day] = std::to_string(barsFrom + day);
    panel.Right[day] = name + "Right" + mark;
    panel.RightBar[day] = std::to_string(barsFrom + 50 + day);
  }
  return panel;
}

// Storages have a share of each day as well.
inline Panel MarkedStorage(const std::string& name, int barsFrom) {
  Panel panel = MarkedPanel(name, barsFrom);
  for (int day = 1; day <= 45; ++day) {
    panel.Proc[day] = " (" + name + "Proc-" + std::to_string(day) + "-)";
  }
  return panel;
}

// And their sums a number of storages.
inline Panel MarkedStorageSum(const std::string& name, int barsFrom) {
  Panel panel = MarkedStorage(name, barsFrom);
  for (int day = 1; day <= 45; ++day) panel.Num[day] = name + "Num-" + std::to_string(day) + "-";
  return panel;
}

// 45 days from the first one on.
inline Days<DateTime> DatesFrom(int year, int month, int dayOfMonth) {
  Days<DateTime> dates;
  for (int day = 1; day <= 45; ++day) {
    dates[day] = MakeDateTime({year, month, dayOfMonth}) + std::chrono::days(day - 1);
  }
  return dates;
}

class ChartPrinting : public testing::Test {
 protected:
  static constexpr ConnectionId kSlot = 20;

  ChartPrinting() {
    house_.NumberWords("Word");
    FillDeviceRecords();
    FillSummaryRecords();
  }

  Hist45SwitchRecord& Port() { return house_.records.Hist45SwitchRep[kSlot]; }
  Hist45MemRecord& Memory() { return house_.records.Hist45MemRep[kSlot]; }
  Hist45DiskRecord& Disk() { return house_.records.Hist45DiskRep[kSlot]; }
  Hist45dSwitchRecord& AllPorts() { return house_.records.Hist45dSwitchRep[kSlot]; }
  Hist45dDiskRecord& AllDisks() { return house_.records.Hist45dDiskRep[kSlot]; }

  // Expects one event, a failure of the procedure that tells more than its name.
  void ExpectFailureOf(const std::string& procedure) const {
    const std::string start = "1\tmodHtml_" + procedure + "\t";
    const std::vector<std::string> events = house_.Events();
    ASSERT_EQ(1u, events.size());
    EXPECT_EQ(start, events[0].substr(0, start.size()));
    EXPECT_LT(start.size(), events[0].size()) << "no description";
  }
  void ExpectNoEvent() const { EXPECT_EQ(house_.Events(), std::vector<std::string>{}); }

  House house_;

 private:
  // The days run over a Sunday, a month and a year; those of the port begin with a Monday.
  void FillDeviceRecords() {
    Port().TrafficDate = DatesFrom(2024, 3, 18);
    Port().Device = "PortDevice";
    Port().Port = "Port 1/24";
    Port().Volume = MarkedPanel("Volume", 1000);
    Port().Broadcast = MarkedPanel("Broadcast", 1100);
    Port().Errors = MarkedPanel("Errors", 1200);

    Memory().StorageDate = DatesFrom(2023, 12, 31);
    Memory().Device = "MemDevice";
    Memory().Storage = "MemStorage";
    Memory().Physical = MarkedStorage("Physical", 2000);
    Memory().Virtual = MarkedStorage("Virtual", 2100);

    Disk().StorageDate = DatesFrom(2024, 2, 1);
    Disk().Device = "DiskDevice";
    Disk().Storage = "DiskStorage";
    Disk().Disk = MarkedStorage("Disk", 3000);
  }

  void FillSummaryRecords() {
    AllPorts().TrafficDate = DatesFrom(2023, 7, 18);
    AllPorts().Report = "PortsReport";
    AllPorts().Volume = MarkedPanel("SumVolume", 4000);
    AllPorts().Broadcast = MarkedPanel("SumBroadcast", 4100);
    AllPorts().Errors = MarkedPanel("SumErrors", 4200);
    AllPorts().Ports = MarkedPanel("SumPorts", 4300);

    AllDisks().StorageDate = DatesFrom(2024, 9, 17);
    AllDisks().Physical = MarkedStorageSum("SumPhysical", 5000);
    AllDisks().Virtual = MarkedStorageSum("SumVirtual", 5100);
    AllDisks().Windows = MarkedStorageSum("SumWindows", 5200);
    AllDisks().Unix = MarkedStorageSum("SumUnix", 5300);
  }
};

}  // namespace quillon
