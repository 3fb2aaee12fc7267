// The fields of a row of the table records, by name and in record order, for whoever shows whole
// rows. The names are those of the structs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "queries/records/disk_table.h"
#include "queries/records/switch_table.h"

namespace quillon {

// A field holds a text or a number.
template <typename Row>
struct RecordField {
  std::string_view name;
  std::string Row::*text = nullptr;
  std::int32_t Row::*number = nullptr;

  std::string Value(const Row& row) const {
    return text != nullptr ? row.*text : std::to_string(row.*number);
  }
};

inline constexpr RecordField<SwitchTableRow> kSwitchFields[] = {
    {"recNo", nullptr, &SwitchTableRow::recNo},
    {"device", &SwitchTableRow::device},
    {"ipAddr", &SwitchTableRow::ipAddr},
    {"vlanID", &SwitchTableRow::vlanID},
    {"ifIndex", nullptr, &SwitchTableRow::ifIndex},
    {"ifDescr", &SwitchTableRow::ifDescr},
    {"ifSpeed", &SwitchTableRow::ifSpeed},
    {"ifAlias", &SwitchTableRow::ifAlias},
    {"ifAdmin", &SwitchTableRow::ifAdmin},
    {"ifOper", &SwitchTableRow::ifOper},
    {"inHCOctetsMb24H", &SwitchTableRow::inHCOctetsMb24H},
    {"inHCOctetsMb24HF", &SwitchTableRow::inHCOctetsMb24HF},
    {"outHCOctetsMb24H", &SwitchTableRow::outHCOctetsMb24H},
    {"outHCOctetsMb24HF", &SwitchTableRow::outHCOctetsMb24HF},
    {"inBroadCastPpm24H", &SwitchTableRow::inBroadCastPpm24H},
    {"inBroadCastPpm24HF", &SwitchTableRow::inBroadCastPpm24HF},
    {"inMultiCastPpm24H", &SwitchTableRow::inMultiCastPpm24H},
    {"inMultiCastPpm24HF", &SwitchTableRow::inMultiCastPpm24HF},
    {"inErrorsTot24H", &SwitchTableRow::inErrorsTot24H},
    {"inErrorsTot24HF", &SwitchTableRow::inErrorsTot24HF},
    {"outErrorsTot24H", &SwitchTableRow::outErrorsTot24H},
    {"outErrorsTot24HF", &SwitchTableRow::outErrorsTot24HF},
    {"userMacAddr", &SwitchTableRow::userMacAddr},
    {"userIpAddr", &SwitchTableRow::userIpAddr},
    {"userLastSeen", &SwitchTableRow::userLastSeen},
};

inline constexpr RecordField<DiskTableRow> kDiskFields[] = {
    {"recNo", nullptr, &DiskTableRow::recNo}, {"device", &DiskTableRow::device},
    {"storDescr", &DiskTableRow::storDescr},  {"totalM", &DiskTableRow::totalM},
    {"freeM", &DiskTableRow::freeM},          {"usedM", &DiskTableRow::usedM},
    {"usedProc", &DiskTableRow::usedProc},    {"trend14d", &DiskTableRow::trend14d},
    {"trend30d", &DiskTableRow::trend30d},
};

// The names as one line, tab-separated.
template <typename Row, std::size_t N>
std::string FieldNames(const RecordField<Row> (&fields)[N]) {
  std::string line;
  for (const RecordField<Row>& field : fields) {
    if (&field != fields) line += '\t';
    line += field.name;
  }
  return line;
}

// The values of a row in the same order, tab-separated.
template <typename Row, std::size_t N>
std::string FieldValues(const RecordField<Row> (&fields)[N], const Row& row) {
  std::string line;
  for (const RecordField<Row>& field : fields) {
    if (&field != fields) line += '\t';
    line += field.Value(row);
  }
  return line;
}

}  // namespace quillon
