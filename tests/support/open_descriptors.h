// How many descriptors this process has open.
#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>

namespace quillon {

inline std::size_t OpenDescriptors() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors)));
}

}  // namespace quillon
