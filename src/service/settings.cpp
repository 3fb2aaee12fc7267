// Paths below the installation directory.
#include "service/settings.h"

#include <algorithm>

namespace quillon {

std::string PathBelow(const Settings& settings, std::string_view backslashPath) {
  std::string path = settings.AppPath + std::string(backslashPath);
  std::replace(path.begin() + static_cast<std::ptrdiff_t>(settings.AppPath.size()), path.end(),
               '\\', '/');
  return path;
}

}  // namespace quillon
