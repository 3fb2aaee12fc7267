// A database that is about to be filled from an old one.
#pragma once

#include <string>
#include <string_view>

#include "import/schema/databases.h"
#include "import/schema/sqlite_file.h"

namespace quillon {

// The database of that file name as a new installation has it, in memory. SnmpcDir is the one of
// the installation: an import does not replace it by what it was made with.
SqliteFile NewInstallationOf(std::string_view fileName, const std::string& directory);

// The file, in a transaction that is undone unless it is committed, and beside it the new one.
struct OpenTarget {
  OpenTarget(const std::string& directory, std::string_view fileName)
      : file(SqliteFile::Open(directory + "/" + std::string(fileName))),
        reference(NewInstallationOf(fileName, directory)),
        transaction(file) {}

  SqliteFile file;
  SqliteFile reference;
  SqliteTransaction transaction;
};

}  // namespace quillon
