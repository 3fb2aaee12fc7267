// Lines of the debug dumps, where words show their number.
#pragma once

#include <string>

namespace quillon {

// What a dump tells of a panel, "VolumeHead=W12" and so on: the numbers of its words, the top and
// the middle of its axis.
inline std::string PanelLines(const std::string& panel, int head, int left, int right,
                              const std::string& top, const std::string& middle) {
  const auto word = [](int number) { return "=W" + std::to_string(number) + "\r\n"; };
  return panel + "Head" + word(head) + panel + "NameLeft" + word(left) + panel + "NameRight" +
         word(right) + panel + "YaxisMax=" + top + "\r\n" + panel + "YaxisHalf=" + middle + "\r\n";
}

// The figures and bars of a missing day, as they stand behind what names the day.
inline std::string DashFields(int series) {
  std::string fields;
  for (int i = 0; i < series; ++i) fields += "\t-\t1";
  return fields;
}

// The names of the fields of a switch port, and the values of rows that no report has filled
// yet: 25 of them, of which two are numbers.
inline const std::string kSwitchRowNames =
    "recNo\tdevice\tipAddr\tvlanID\tifIndex\tifDescr\tifSpeed\tifAlias\tifAdmin\tifOper\t"
    "inHCOctetsMb24H\tinHCOctetsMb24HF\toutHCOctetsMb24H\toutHCOctetsMb24HF\t"
    "inBroadCastPpm24H\tinBroadCastPpm24HF\tinMultiCastPpm24H\tinMultiCastPpm24HF\t"
    "inErrorsTot24H\tinErrorsTot24HF\toutErrorsTot24H\toutErrorsTot24HF\t"
    "userMacAddr\tuserIpAddr\tuserLastSeen";

inline std::string EmptySwitchRows(int count) {
  std::string rows;
  for (int i = 0; i < count; ++i) rows += "0\t\t\t\t0" + std::string(20, '\t') + "\r\n";
  return rows;
}

}  // namespace quillon
