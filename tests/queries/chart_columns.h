// The columns of the history that a chart shows, each with its place in the record.
#pragma once

#include <string>
#include <vector>

#include "queries/records/report_records.h"

namespace quillon {

// A column and what it fills.
template <typename Record>
struct ChartColumn {
  std::string name;
  Panel Record::*panel;
  Days<std::string> Panel::*values;
  Days<std::string> Panel::*bars;  // null where the column has none
};

template <typename Record>
using ChartColumns = std::vector<ChartColumn<Record>>;

// The figures of ports, in the order in which a day is filled.
template <typename Record>
ChartColumns<Record> PortColumns() {
  return {
      {"InHCOctetsMb24H", &Record::Volume, &Panel::Left, &Panel::LeftBar},
      {"OutHCOctetsMb24H", &Record::Volume, &Panel::Right, &Panel::RightBar},
      {"InBroadCastPpm24H", &Record::Broadcast, &Panel::Left, &Panel::LeftBar},
      {"InMultiCastPpm24H", &Record::Broadcast, &Panel::Right, &Panel::RightBar},
      {"InErrorsTot24H", &Record::Errors, &Panel::Left, &Panel::LeftBar},
      {"OutErrorsTot24H", &Record::Errors, &Panel::Right, &Panel::RightBar},
  };
}

// What the record has of a day, column by column.
template <typename Record>
std::vector<std::string> ValuesOf(const Record& record, const ChartColumns<Record>& columns,
                                  int position) {
  std::vector<std::string> values;
  for (const auto& column : columns) {
    values.push_back((record.*column.panel.*column.values)[position]);
  }
  return values;
}
template <typename Record>
std::vector<std::string> BarsOf(const Record& record, const ChartColumns<Record>& columns,
                                int position) {
  std::vector<std::string> bars;
  for (const auto& column : columns) {
    if (column.bars != nullptr) bars.push_back((record.*column.panel.*column.bars)[position]);
  }
  return bars;
}

}  // namespace quillon
