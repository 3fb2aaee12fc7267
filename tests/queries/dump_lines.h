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

}  // namespace quillon
