// The classes of storages: the field Type of the disk day tables.
#pragma once

#include <cstdint>

#include "platform/database.h"

namespace quillon {

enum class DiskClass : std::int16_t {
  kPhysicalMemory = 10,
  kVirtualMemory = 20,
  kWindowsDisk = 30,
  kUnixDisk = 40,
};

// The class of a storage by its StorDescr. A null is no name of the others: a Unix disk.
DiskClass ClassOf(const Value& storDescr);

}  // namespace quillon
