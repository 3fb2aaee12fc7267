// Which installation is meant, and with whose rights it is touched.
#pragma once

#include <string>

namespace quillon {

// The installation directory without a slash at its end: the one that is given, else that of the
// program. Fails where it holds no settings database.
//
// Called by root, the process takes over the rights of whom the installation belongs to, for good:
// what it writes is then the service's own, and no link of that user's leads root anywhere.
std::string EnterInstallation(const std::string& given);

}  // namespace quillon
