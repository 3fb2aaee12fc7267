// How the databases of the installation are reached.
#pragma once

#include <string>
#include <string_view>

#include "service/settings.h"

namespace quillon {

// The connection string of a database file below AppPath, "\Quillon.mdb" say.
std::string ConnectionString(const Settings& settings, std::string_view file);

}  // namespace quillon
