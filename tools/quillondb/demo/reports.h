// The newest statistics of the demonstration, as the management product leaves them.
#pragma once

#include <vector>

#include "import/schema/sqlite_file.h"
#include "platform/date_time.h"
#include "quillondb/demo/network.h"
#include "quillondb/demo/servers.h"

namespace quillon {

// Fills VLAN, MAC and HostDiskInfo, which have to be empty, for a report that ended at `now`.
void WriteReports(const SqliteFile& reports, const std::vector<DemoPort>& ports,
                  const std::vector<DemoStorage>& storages, DateTime now);

}  // namespace quillon
