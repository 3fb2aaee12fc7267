// The two rotations of the demonstration: control rows and filled day tables.
#pragma once

#include <chrono>
#include <vector>

#include "import/schema/sqlite_file.h"
#include "quillondb/demo/network.h"
#include "quillondb/demo/servers.h"

namespace quillon {

// Fills the day tables, which have to be empty, and stamps their control rows as the imports up
// to yesterday's would have left them.
void WriteDayTables(const SqliteFile& history, const std::vector<DemoPort>& ports,
                    const std::vector<DemoStorage>& storages, std::chrono::local_days today);

}  // namespace quillon
