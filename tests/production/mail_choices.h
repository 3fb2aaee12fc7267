// The reports that a receiver can choose: the word of each, the end of its page's name and the
// column that its list is sorted by.
#pragma once

#include <string>
#include <string_view>

namespace quillon {

struct ChosenReport {
  const char* word;
  const char* fileEnd;
  const char* field;  // none for the summary

  // `kind` is "access" or "trunk".
  std::string File(std::string_view kind) const {
    return "switch-" + std::string(kind) + "-port-" + fileEnd;
  }
};

// In the order in which the words are looked for.
inline constexpr ChosenReport kChosenReports[] = {
    {"Summary", "summary.htm", ""},
    {"InVolume", "top10-involume.htm", "InHCOctetsMb24H"},
    {"OutVolume", "top10-outvolume.htm", "OutHCOctetsMb24H"},
    {"InBroadcast", "top10-inbroadcast.htm", "InBroadCastPpm24H"},
    {"InMulticast", "top10-inmulticast.htm", "InMultiCastPpm24H"},
    {"InErrors", "top10-inerrors.htm", "InErrorsTot24H"},
    {"OutErrors", "top10-outerrors.htm", "OutErrorsTot24H"},
};

}  // namespace quillon
