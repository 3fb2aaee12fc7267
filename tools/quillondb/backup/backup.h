// A copy of all that an installation cannot be made anew from, while the service runs.
#pragma once

#include <string>

#include "platform/date_time.h"
#include "quillondb/backup/files.h"

namespace quillon {

// Makes the directory `target` with the three databases of the installation, its Morvane.ini, the
// files of its site and a manifest of them, all for the caller alone. The databases are verified.
// `target` is there whole afterwards, or on a failure (std::runtime_error) not at all; one that is
// there already is refused. `tell` hears how far it is. The result says in a line what was done.
// Root reads the installation with the rights of its owner; into the installation itself he writes
// with those as well, and has given up his own then.
std::string BackUpInstallation(const std::string& directory, const std::string& target,
                               DateTime now, const Tell& tell);

}  // namespace quillon
