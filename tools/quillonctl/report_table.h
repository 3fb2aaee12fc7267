// The rows of the table records as tables of the output: whole for programs, and a choice of
// columns with short heads for people.
#pragma once

#include "queries/records/disk_table.h"
#include "queries/records/switch_table.h"
#include "quillonctl/output.h"

namespace quillon {

// Every field under its own name, recNo to userLastSeen or trend30d. Empty rows are left out, here
// and below.
OutputTable WholeRows(const SwitchTableRecord& record);
OutputTable WholeRows(const DiskTableRecord& record);

// Ports with their figures.
OutputTable PortFigures(const SwitchTableRecord& record);

// Ports with the addresses for which they were found.
OutputTable PortsOfAddresses(const SwitchTableRecord& record);

OutputTable DiskFigures(const DiskTableRecord& record);

// "10 (214)", as TableCriteria has it, as "10 of 214".
std::string ShownOfAll(const std::string& criteria);

}  // namespace quillon
