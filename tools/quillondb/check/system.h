// What the machine gives the service: room on the disk, names of days and months, the time.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "quillondb/check/unit.h"

namespace quillon {

// Appends a line where the disk of the directory is nearly full, or mounted for reading alone.
void CheckDisk(const std::string& directory, std::vector<std::string>& findings);

// The line on a disk with so many bytes left; empty where they are enough.
std::string SpaceFinding(const std::string& directory, std::uintmax_t bytesLeft);

// Whether systemd runs this: at the start of the service, or by a timer of the operator's. The
// environment is the machine's then, which the service has; else it is that of somebody's terminal.
bool RunsInAUnit();

// Appends a line where the environment names a locale that the machine does not have.
void CheckLocale(std::vector<std::string>& findings);

// Goes by the machine's zone where the unit starts the service, whatever zone a terminal has: the
// marks of the day are of that.
void TakeZoneOf(const InstalledUnit& unit);

}  // namespace quillon
