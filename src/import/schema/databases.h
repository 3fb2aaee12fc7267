// The three databases of an installation: their file names, what the engine keeps beside them, and
// how each is filled when it is new. Making the files themselves is creation.h.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "import/schema/sqlite_file.h"

namespace quillon {

// One kind of day table: the control table that names them, and the text that makes one.
struct DayTableKind {
  std::string_view controlTable;
  std::string_view dateColumn;       // of the control table
  const std::string_view* tableSql;  // "{table}" stands for the name
};

// The kind of the switches, then that of the disks.
extern const std::array<DayTableKind, 2> kDayTableKinds;

struct Database {
  std::string_view fileName;

  // Makes tables and seed in an empty database. `directory` is the installation's.
  void (*build)(const SqliteFile& file, const std::string& directory);
};

extern const std::array<Database, 3> kDatabases;

// The one with that file name; null where it is no database's.
const Database* FindDatabase(std::string_view fileName);

// The endings of what the engine keeps beside a database. A file that is left behind would be taken
// for the next database's.
inline constexpr std::array<const char*, 3> kSideFiles = {"-wal", "-shm", "-journal"};

// The database's path, and those of its side files.
std::vector<std::string> WithSideFiles(const std::string& database);

// The names of the day tables that a history's control table holds, in stored order.
std::vector<std::string> DayTables(const SqliteFile& history, std::string_view controlTable);

}  // namespace quillon
