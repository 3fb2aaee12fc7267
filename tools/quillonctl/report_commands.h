// report: the lists and searches of the site on the terminal, by the queries and records of its
// pages, so that the figures are the same.
#pragma once

#include <cstdint>
#include <string>

#include "quillonctl/output.h"

namespace quillon {

inline constexpr int kDefaultRows = 10;  // as on the pages
inline constexpr int kMostRows = 1000;

// The ports of a kind, "access" or "trunk", with the largest figures of a metric, a name of
// queries/switch_lists.h.
int ReportPorts(const std::string& directory, const std::string& kind, const std::string& metric,
                int rows, OutputForm form);

// The disks of a class, "physical", "virtual", "windows" or "unix", in an order: a word of
// queries/disk_table.h, and "asc" or "desc".
int ReportDisks(const std::string& directory, const std::string& diskClass, const std::string& sort,
                const std::string& direction, int rows, OutputForm form);

// The ports of the devices that match, by name or alias ("IfDescr" or "IfAlias").
int SearchPorts(const std::string& directory, const std::string& device, const std::string& port,
                const std::string& column, int rows, OutputForm form);

// The ports on which matching addresses were seen.
int SearchAddresses(const std::string& directory, const std::string& address, int rows,
                    OutputForm form);

// The disks and memories of the devices that match.
int SearchDisks(const std::string& directory, const std::string& device, const std::string& disk,
                const std::string& sort, const std::string& direction, int rows, OutputForm form);

}  // namespace quillon
