// Names of charts.
#include "render/chart_names.h"

#include <algorithm>

namespace quillon {

std::string PortChartsFile(std::int32_t recNo, std::int32_t ifIndex) {
  return "hist45-" + std::to_string(recNo) + "-" + std::to_string(ifIndex) + ".htm";
}

std::string StorageChartsFile(std::int32_t recNo, std::string_view storage) {
  return "histdisk45-" + std::to_string(recNo) + "-" + std::string(storage) + ".htm";
}

std::string StorageInNames(std::string pageText) {
  std::replace(pageText.begin(), pageText.end(), '/', '_');
  std::replace(pageText.begin(), pageText.end(), ':', '_');
  return pageText;
}

}  // namespace quillon
