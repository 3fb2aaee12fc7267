// The names under which charts are stored, and by which links and requests ask for them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quillon {

// Stands for the storage in the names of memory charts.
inline constexpr std::string_view kMemoryCharts = "mem";

// "hist45-<device>-<interface>.htm".
std::string PortChartsFile(std::int32_t recNo, std::int32_t ifIndex);

// "histdisk45-<device>-<storage>.htm", of a storage as names have it.
std::string StorageChartsFile(std::int32_t recNo, std::string_view storage);

// A storage as names have it: "/" and ":" replaced by "_". The text is bytes of the pages' charset,
// some of which have these two inside of other letters: so it is converted first.
std::string StorageInNames(std::string pageText);

}  // namespace quillon
