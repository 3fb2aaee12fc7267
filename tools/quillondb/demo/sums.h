// The sums of each day over all ports and storages of the demonstration.
#pragma once

#include <chrono>
#include <vector>

#include "import/schema/sqlite_file.h"
#include "quillondb/demo/network.h"
#include "quillondb/demo/servers.h"

namespace quillon {

// Fills VLAN_HistSum and Disk_HistSum, oldest day first, with a row or two for each import up to
// yesterday's.
void WriteSums(const SqliteFile& history, const std::vector<DemoPort>& ports,
               const std::vector<DemoStorage>& storages, std::chrono::local_days today);

}  // namespace quillon
