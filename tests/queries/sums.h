// The sums of ports and of storages in History.mdb, and the summaries that show them: where the two
// differ in their tables, records and procedures.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "queries/chart_columns.h"
#include "queries/disk_summary.h"
#include "queries/switch_summary.h"
#include "support/report_rows.h"

namespace quillon {

// Sums over the ports of a kind: access ports, where nothing else is asked for.
struct PortSums {
  using Record = Hist45dSwitchRecord;
  static constexpr const char* kName = "Ports";
  static constexpr auto kRecords = &ReportRecords::Hist45dSwitchRep;
  static constexpr auto kDates = &Record::TrafficDate;
  static constexpr const char* kTable = "VLAN_HistSum";
  static constexpr const char* kDate = "TrafficDate";
  static constexpr const char* kMark = "Ports";  // shows a small figure as it is stored
  static constexpr const char* kProcedure = "modSelectSql_SqHist45dSwitchSum";

  static void Run(QueryContext& context, ConnectionId slot) {
    SqHist45dSwitchSum(context, slot, false);
  }

  // Columns in the order in which a day is filled.
  static const ChartColumns<Record>& InOrder() {
    static const ChartColumns<Record> columns = [] {
      ChartColumns<Record> all = PortColumns<Record>();
      all.push_back({"Ports", &Record::Ports, &Panel::Left, &Panel::LeftBar});
      all.push_back({"PortsInTraffic", &Record::Ports, &Panel::Right, &Panel::RightBar});
      return all;
    }();
    return columns;
  }

  static const Columns& Ordinary() {
    static const Columns columns = {{"IsTrunk", "FALSE"},       {"InHCOctetsMb24H", "6"},
                                    {"OutHCOctetsMb24H", "5"},  {"InBroadCastPpm24H", "4"},
                                    {"InMultiCastPpm24H", "3"}, {"InErrorsTot24H", "2"},
                                    {"OutErrorsTot24H", "1"},   {"Ports", "20"},
                                    {"PortsInTraffic", "10"}};
    return columns;
  }
};

// Sums over the storages, by their kind.
struct StorageSums {
  using Record = Hist45dDiskRecord;
  static constexpr const char* kName = "Storages";
  static constexpr auto kRecords = &ReportRecords::Hist45dDiskRep;
  static constexpr auto kDates = &Record::StorageDate;
  static constexpr const char* kTable = "Disk_HistSum";
  static constexpr const char* kDate = "StorageDate";
  static constexpr const char* kMark = "NumUnix";
  static constexpr const char* kProcedure = "modSelectSql_SqlHist45dDiskSum";

  static void Run(QueryContext& context, ConnectionId slot) { SqlHist45dDiskSum(context, slot); }

  static const ChartColumns<Record>& InOrder() {
    static const ChartColumns<Record> columns = {
        {"TotalMPhysical", &Record::Physical, &Panel::Left, &Panel::LeftBar},
        {"UsedMPhysical", &Record::Physical, &Panel::Right, &Panel::RightBar},
        {"NumPhysical", &Record::Physical, &Panel::Num, nullptr},
        {"TotalMVirtual", &Record::Virtual, &Panel::Left, &Panel::LeftBar},
        {"UsedMVirtual", &Record::Virtual, &Panel::Right, &Panel::RightBar},
        {"NumVirtual", &Record::Virtual, &Panel::Num, nullptr},
        {"TotalMWindows", &Record::Windows, &Panel::Left, &Panel::LeftBar},
        {"UsedMWindows", &Record::Windows, &Panel::Right, &Panel::RightBar},
        {"NumWindows", &Record::Windows, &Panel::Num, nullptr},
        {"TotalMUnix", &Record::Unix, &Panel::Left, &Panel::LeftBar},
        {"UsedMUnix", &Record::Unix, &Panel::Right, &Panel::RightBar},
        {"NumUnix", &Record::Unix, &Panel::Num, nullptr},
    };
    return columns;
  }

  static const Columns& Ordinary() {
    static const Columns columns = {
        {"TotalMPhysical", "100"}, {"UsedMPhysical", "40"},  {"NumPhysical", "3"},
        {"TotalMVirtual", "200"},  {"UsedMVirtual", "50"},   {"NumVirtual", "4"},
        {"TotalMWindows", "3000"}, {"UsedMWindows", "1500"}, {"NumWindows", "5"},
        {"TotalMUnix", "40000"},   {"UsedMUnix", "10000"},   {"NumUnix", "6"}};
    return columns;
  }
};

// A row of the sums, ordinary but for these columns. The moment and the values are SQL literals.
template <typename Sums>
std::string InsertSums(const std::string& moment, const Columns& differing = {}) {
  return InsertRow(Sums::kTable, With(With(Sums::Ordinary(), {{Sums::kDate, moment}}), differing));
}

// For what both summaries have to do: tests named by their sums.
using BothSums = testing::Types<PortSums, StorageSums>;
struct SumsName {
  template <typename Sums>
  static std::string GetName(int) {
    return Sums::kName;
  }
};

}  // namespace quillon
