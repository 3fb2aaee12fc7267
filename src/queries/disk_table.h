// What the disk lists and the disk search have alike: the day table, the heads by sort order, a row
// of DiskTableRep, the dump.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/database.h"
#include "queries/query_context.h"
#include "service/debug_dump.h"

namespace quillon {

// The day table that holds yesterday's storages, and from 23:00 on today's: the first one, in
// stored order, whose control row is of that day. Nothing where there is none.
std::optional<std::string> FindDiskTable(const QueryContext& context, Connection& history);

// A column that a disk table may be sorted by.
struct DiskSort {
  std::string_view word;    // in URLs and forms
  std::string_view column;  // of the day tables
  int ascendingWord;        // numbers of the language file: the table's head
  int otherWord;
};

// All of them, in the order of the columns.
inline constexpr DiskSort kDiskSorts[] = {
    {"totalbytes", "TotalM", 56, 57}, {"freebytes", "FreeM", 58, 59},
    {"usedbytes", "UsedM", 60, 61},   {"usedpercent", "UsedProc", 62, 63},
    {"trend14d", "Trend14d", 64, 65}, {"trend30d", "Trend30d", 66, 67},
};

// By its word, by its column; null where there is none.
const DiskSort* DiskSortByWord(std::string_view word);
const DiskSort* DiskSortByColumn(std::string_view column);

// TableHead by the order; it stays as it was for no sort.
void SetDiskHead(const QueryContext& context, const DiskSort* sort, std::string_view direction,
                 DiskTableRecord& record);

// The texts of a row, from the fields in table order: a null ends it where it stands.
void FillDisk(const QueryContext& context, const Recordset& disk, DiskTableRow& row);

// The lines of a dump from TableHead on.
void DumpDiskTable(const QueryContext& context, const DiskTableRecord& record, DebugDump& dump);

}  // namespace quillon
