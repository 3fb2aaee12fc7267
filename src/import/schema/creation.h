// Makes the databases of a new installation. Folders, Morvane.ini and the stylesheet of an
// installation are made elsewhere.
#pragma once

#include <string>

namespace quillon {

// FileFailure where anything has the name of a database, or of what the engine keeps beside one.
void RefuseExistingDatabases(const std::string& directory);

// Creates Quillon.mdb, Reports.mdb and History.mdb with tables and seed in `directory`; throws
// std::runtime_error with a clear text when one exists already or cannot be written (nothing
// half made is left). The directory has to exist; it becomes the SnmpcDir of the settings as
// an absolute path. The files are readable for their owner alone.
void CreateDatabases(const std::string& directory);

}  // namespace quillon
