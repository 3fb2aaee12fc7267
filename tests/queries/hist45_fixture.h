// A chart house for the histories of one device: port 4 of device 7 with small figures, the memory
// and the disk "C:" of server 900, each with a day table for every age.
#pragma once

#include "queries/chart_columns.h"
#include "queries/chart_fixture.h"
#include "queries/storage_hist45.h"
#include "queries/switch_hist45.h"

namespace quillon {

using PortSeries = ChartColumn<Hist45SwitchRecord>;

// The series of a port, in the order in which a day is filled.
inline const ChartColumns<Hist45SwitchRecord>& PortSeriesInOrder() {
  static const ChartColumns<Hist45SwitchRecord> series = PortColumns<Hist45SwitchRecord>();
  return series;
}

class Hist45Test : public ChartTest {
 protected:
  static inline const Lines kSixDashes = Lines(6, "-");
  static inline const Lines kSixOnes = Lines(6, "1");
  // A panel's day that is missing: left, its bar, right, its bar, used share.
  static inline const Lines kMissingStorage = {"-", "1", "-", "1", ""};

  // The day tables by age: "VLAN_Day07", "Disk_Day07".
  static std::string PortTable(int age) { return DayTable("VLAN_Day", age); }
  static std::string StorageTable(int age) { return DayTable("Disk_Day", age); }

  // A whole day: its control row and the row of the port, of the disk, of a memory.
  void AddPortHistory(int age, const Columns& differing = {}) const {
    AddPortDay(age, PortTable(age));
    AddPort(PortTable(age), differing);
  }
  void AddDiskHistory(int age, const Columns& differing = {}) const {
    AddDiskDay(age, StorageTable(age));
    AddStorage(StorageTable(age), differing);
  }
  // `storage` is "Physical" or "Virtual".
  void AddMemory(const std::string& histTable, const std::string& storage,
                 Columns differing = {}) const {
    differing["StorDescr"] = "'" + storage + "'";
    AddStorage(histTable, differing);
  }

  Hist45SwitchRecord& ReportPort(bool background = false, ConnectionId slot = kSlot) {
    SqHist45SwitchControl(house.queries, slot, 7, 4, "Core", "Gi0/4", background);
    return house.records.Hist45SwitchRep[slot];
  }
  Hist45MemRecord& ReportMemory(bool background = false, ConnectionId slot = kSlot) {
    SqlHist45MemControl(house.queries, slot, 900, "Files", background);
    return house.records.Hist45MemRep[slot];
  }
  Hist45DiskRecord& ReportDisk(bool background = false, ConnectionId slot = kSlot) {
    SqlHist45DiskControl(house.queries, slot, 900, "Files", "C:", background);
    return house.records.Hist45DiskRep[slot];
  }

  Hist45SwitchRecord& PortRecord() { return house.records.Hist45SwitchRep[kSlot]; }
  Hist45MemRecord& MemoryRecord() { return house.records.Hist45MemRep[kSlot]; }
  Hist45DiskRecord& DiskRecord() { return house.records.Hist45DiskRep[kSlot]; }

  // The six figures and the six bars of a port's day, in series order.
  Lines Figures(int position, ConnectionId slot = kSlot) {
    return ValuesOf(house.records.Hist45SwitchRep[slot], PortSeriesInOrder(), position);
  }
  Lines Bars(int position, ConnectionId slot = kSlot) {
    return BarsOf(house.records.Hist45SwitchRep[slot], PortSeriesInOrder(), position);
  }
  // A storage's day: left, its bar, right, its bar, used share.
  static Lines StorageDay(const Panel& panel, int position) {
    return {panel.Left[position], panel.LeftBar[position], panel.Right[position],
            panel.RightBar[position], panel.Proc[position]};
  }
  // The labels of an axis: top and middle.
  static Lines Axis(const Panel& panel) { return {panel.YaxisMax, panel.YaxisHalf}; }

  // A panel's day as an earlier report left it.
  static void FillDay(Panel& panel, int position, const std::string& text = kBefore) {
    for (Days<std::string>* days : {&panel.Left, &panel.LeftBar, &panel.Right, &panel.RightBar}) {
      (*days)[position] = text;
    }
    panel.Proc[position] = text;
  }
  void FillPortDay(int position) {
    Hist45SwitchRecord& record = PortRecord();
    for (Panel* panel : {&record.Volume, &record.Broadcast, &record.Errors}) {
      FillDay(*panel, position);
    }
  }
};

}  // namespace quillon
