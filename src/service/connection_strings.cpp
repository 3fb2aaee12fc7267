// The form of connection strings.
#include "service/connection_strings.h"

namespace quillon {

std::string ConnectionString(const Settings& settings, std::string_view file) {
  return "Provider=SQLite;Data Source=" + PathBelow(settings, file) +
         ";Persist Security Info=False";
}

}  // namespace quillon
