// What a production of pages has to come to: the reports and their pages, put together here out of
// the queries and the rendering procedures, which have tests of their own. They run in records and
// on a loop of their own, so a test's site sees nothing of it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "queries/disk_summary.h"
#include "queries/disk_top10.h"
#include "queries/port_name.h"
#include "queries/storage_hist45.h"
#include "queries/switch_hist45.h"
#include "queries/switch_summary.h"
#include "queries/switch_top10.h"
#include "render/device_charts.h"
#include "render/disk_tables.h"
#include "render/page_frame.h"
#include "render/summary_charts.h"
#include "render/switch_tables.h"
#include "support/expected_charts.h"
#include "support/house.h"
#include "support/reporting.h"

namespace quillon {

class ExpectedProduction {
 public:
  // A name in file names, and the column that it stands for.
  struct ListOrder {
    std::string name;
    std::string field;
  };

  static inline const std::vector<ListOrder> kMetrics = {
      {"involume", "InHCOctetsMb24H"},      {"outvolume", "OutHCOctetsMb24H"},
      {"inbroadcast", "InBroadCastPpm24H"}, {"inmulticast", "InMultiCastPpm24H"},
      {"inerrors", "InErrorsTot24H"},       {"outerrors", "OutErrorsTot24H"},
  };

  static inline const std::vector<ListOrder> kDiskColumns = {
      {"totalbytes", "TotalM"},    {"freebytes", "FreeM"},   {"usedbytes", "UsedM"},
      {"usedpercent", "UsedProc"}, {"trend14d", "Trend14d"}, {"trend30d", "Trend30d"},
  };

  struct DiskClass {
    std::int16_t diskType;
    std::string name;
  };

  static inline const std::vector<DiskClass> kDiskClasses = {
      {10, "physical"}, {20, "virtual"}, {30, "windows"}, {40, "unix"}};

  struct SortDirection {
    std::string order;
    std::string name;
  };

  static inline const std::vector<SortDirection> kDirections = {{"ASC", "asc"}, {"DESC", "desc"}};

  static std::string SwitchListFile(const std::string& kind, const std::string& metric) {
    return "switch-" + kind + "-port-top10-" + metric + ".htm";
  }
  static std::string DiskListFile(const std::string& className, const std::string& column,
                                  const std::string& direction) {
    return "disk-" + className + "-top10-" + column + "-" + direction + ".htm";
  }

  struct StoredFile {
    std::string name;
    std::string bytes;
  };

  // Of the settings, words, period and databases that the house has now.
  explicit ExpectedProduction(const House& house)
      : settings_(WithoutFiles(house.settings)),
        clock_(house.clock.Now()),
        render_{reporting_.diagnostics(), settings_,    house.words,
                house.calendar,           house.period, records_},
        queries_{reporting_.diagnostics(),
                 settings_,
                 clock_,
                 loop_,
                 house.words,
                 house.period,
                 records_} {}

  // The list of ports and the charts of each of them.
  void SwitchList(const std::string& kind, const std::string& field, const std::string& file) {
    SwitchTableRecord& record = records_.SwitchTableRep[kSlot];
    for (SwitchTableRow& row : record.rows) row.recNo = 0;
    device_.clear();
    port_.clear();
    SqlTop10SwitchStats(queries_, kSlot, field, kind != "access");
    std::string page =
        Frame(kind == "access" ? "switch-access-port-top10" : "switch-trunk-port-top10");
    TableHeader_Switch(render_, kSlot, page);
    TableData_Switch(render_, kSlot, kind, file, page);
    Add(file, page);
    for (const SwitchTableRow& row : record.rows) {
      if (row.recNo != 0) PortCharts(row.recNo, row.ifIndex);
    }
  }
  void SwitchList(const std::string& kind, const ListOrder& metric) {
    SwitchList(kind, metric.field, SwitchListFile(kind, metric.name));
  }

  // The charts of a port that some list has.
  void PortCharts(std::int32_t recNo, std::int32_t ifIndex) {
    SqlPortNameLookup(queries_, recNo, ifIndex, device_, port_);
    SqHist45SwitchControl(queries_, kSlot, recNo, ifIndex, device_, port_, true);
    Add("hist45-" + std::to_string(recNo) + "-" + std::to_string(ifIndex) + ".htm",
        ExpectedPortCharts(render_, kSlot));
  }

  // `kind` is "access" or "trunk".
  void SwitchSummary(const std::string& kind) { SwitchSummary(kind, SwitchSummaryFileOf(kind)); }
  void SwitchSummary(const std::string& kind, const std::string& file) {
    SqHist45dSwitchSum(queries_, kSlot, kind == "trunk");
    Add(file, Frame("switch-" + kind + "-port-summary") + ChartsOfAllPorts());
  }

  void DiskList(const DiskClass& diskClass, const ListOrder& column,
                const SortDirection& direction) {
    for (DiskTableRow& row : records_.DiskTableRep[kSlot].rows) row.recNo = 0;
    SqlTop10DiskStats(queries_, kSlot, diskClass.diskType, column.field, direction.order);
    const std::string file = DiskListFile(diskClass.name, column.name, direction.name);
    std::string page = Frame("disk-" + diskClass.name + "-top10");
    TableHeader_Disk(render_, kSlot, page);
    TableData_Disk(render_, kSlot, diskClass.name, direction.order, file, page);
    Add(file, page);
  }

  void MemoryCharts(std::int32_t recNo, const std::string& device) {
    SqlHist45MemControl(queries_, kSlot, recNo, device, true);
    std::string charts;
    for (const ExpectedChart& chart : kMemoryCharts) {
      ChartHeader45_Mem(render_, kSlot, Word(chart.title), Word(chart.left), Word(chart.right),
                        charts);
      ChartData45_Mem(render_, kSlot, chart.kind, charts);
    }
    Add("histdisk45-" + std::to_string(recNo) + "-mem.htm", charts);
  }

  // Names as the database has them; the file's in the charset of the pages.
  void DiskChart(std::int32_t recNo, const std::string& device, const std::string& storDescr,
                 const std::string& file) {
    SqlHist45DiskControl(queries_, kSlot, recNo, device, storDescr, true);
    std::string chart;
    ChartHeader45_Disk(render_, kSlot, Word(80), Word(69), Word(71), chart);
    ChartData45_Disk(render_, kSlot, chart);
    Add(file, chart);
  }

  void DiskSummary(const std::string& file = "disk-mem-summary.htm") {
    SqlHist45dDiskSum(queries_, kSlot);
    std::string charts;
    for (const auto& [chart, secondTitle] : kStorageSums) {
      ChartHeader45d_DiskSum(render_, kSlot, Word(chart.title), Word(secondTitle), Word(chart.left),
                             Word(chart.right), charts);
      ChartData45d_DiskSum(render_, kSlot, chart.kind, charts);
    }
    Add(file, Frame("disk-mem-summary") + charts);
  }

  // The parts of a whole run, in its order; between the lists and the summary of disks stand the
  // charts of storages.
  void AllSwitchPages() {
    for (const std::string kind : {"access", "trunk"}) {
      for (const ListOrder& metric : kMetrics) SwitchList(kind, metric);
    }
    for (const std::string kind : {"access", "trunk"}) SwitchSummary(kind);
  }
  void AllDiskLists() {
    for (const DiskClass& diskClass : kDiskClasses) {
      for (const ListOrder& column : kDiskColumns) {
        for (const SortDirection& direction : kDirections) DiskList(diskClass, column, direction);
      }
    }
  }

  // Every file in the order in which it is stored, some of them more than once.
  const std::vector<StoredFile>& Files() const { return files_; }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const StoredFile& file : files_) names.push_back(file.name);
    return names;
  }
  // What is there in the end.
  std::map<std::string, std::string> Last() const {
    std::map<std::string, std::string> last;
    for (const StoredFile& file : files_) last[file.name] = file.bytes;
    return last;
  }

  static std::string SwitchSummaryFileOf(const std::string& kind) {
    return "switch-" + kind + "-port-summary.htm";
  }

  // The frame of a page and the summary charts, out of the records as they are.
  std::string Frame(const std::string& reportKey) const {
    std::string page;
    TopHeader_Begin(render_, 580, reportKey, page);
    TopHeader_End(render_, page);
    return page;
  }
  std::string ChartsOfAllPorts() const { return ExpectedSummaryCharts(render_, kSlot); }

 private:
  // The slot has no part in what a page says.
  static constexpr ConnectionId kSlot = 3;

  // The charts of a memory; and of all storages, which have two titles each.
  static constexpr ExpectedChart kMemoryCharts[] = {{76, 69, 71, "physical"},
                                                    {77, 69, 71, "virtual"}};
  struct StorageSum {
    ExpectedChart chart;
    int secondTitle;
  };
  static constexpr StorageSum kStorageSums[] = {{{76, 69, 71, "physical"}, 82},
                                                {{77, 69, 71, "virtual"}, 83},
                                                {{78, 69, 71, "windows"}, 84},
                                                {{79, 69, 71, "unix"}, 85}};

  // No event and no dump of this goes into the site's folders.
  static Settings WithoutFiles(Settings settings) {
    settings.AppPath = "/nonexistent";
    settings.DebugMode = false;
    return settings;
  }

  const std::string& Word(int number) const { return render_.LangWord(number); }
  void Add(const std::string& name, const std::string& bytes) { files_.push_back({name, bytes}); }

  Settings settings_;
  TestClock clock_;
  EventLoop loop_{clock_};
  Reporting reporting_{settings_, clock_};
  ReportRecords records_;
  RenderContext render_;
  QueryContext queries_;
  std::string device_;
  std::string port_;
  std::vector<StoredFile> files_;
};

}  // namespace quillon
