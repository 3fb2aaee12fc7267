// Numbers of the words of each panel in the language file: queries put them into the records, pages
// put them over the charts.
#pragma once

namespace quillon {

struct PanelWords {
  int head;
  int left;
  int right;
};

inline constexpr PanelWords kVolumeWords = {12, 22, 23};
inline constexpr PanelWords kBroadcastWords = {13, 24, 25};
inline constexpr PanelWords kErrorsWords = {14, 26, 27};
inline constexpr PanelWords kPortsWords = {48, 49, 50};

inline constexpr PanelWords kPhysicalWords = {76, 69, 71};
inline constexpr PanelWords kVirtualWords = {77, 69, 71};
inline constexpr PanelWords kWindowsWords = {78, 69, 71};
inline constexpr PanelWords kUnixWords = {79, 69, 71};
// Reports of all storages of a kind, by the number of the word.
inline constexpr int kPhysicalReport = 82;
inline constexpr int kVirtualReport = 83;
inline constexpr int kWindowsReport = 84;
inline constexpr int kUnixReport = 85;

inline constexpr PanelWords kDiskWords = {80, 69, 71};

}  // namespace quillon
