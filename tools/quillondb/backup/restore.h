// A backup put back in the place of an installation's databases and files.
#pragma once

#include <string>

#include "quillondb/backup/files.h"
#include "quillondb/backup/restore_leftovers.h"

namespace quillon {

// Puts what the backup in `source` holds into the installation directory, which is made where it is
// missing, with its folders. Refused while the service or another program uses the databases there,
// and, without `replace`, where one of the files is there already. The backup is verified, copied
// into the directory and verified there before anything is put in place. On a failure
// (std::runtime_error) the old files are in place again. A link in the place of a file of the site
// stays where it leads to the backup's bytes. Root reads the backup, and writes with the rights of
// the directory's owner; a backup of that owner, or inside of the installation, he reads with those
// as well, and has given up his own then. The result says in a line what was done.
std::string RestoreInstallation(const std::string& source, const std::string& directory,
                                bool replace, const Tell& tell);

}  // namespace quillon
