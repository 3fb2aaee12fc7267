// Indexes by their columns.
#include "quillondb/check/indexes.h"

#include <fmt/format.h>

#include <algorithm>

namespace quillon {
namespace {

// "VLAN_IfIndex_RecNo".
std::string NameOf(const std::string& table, const std::string& columns) {
  std::string name = table + "_" + columns;
  std::erase(name, ' ');
  std::ranges::replace(name, ',', '_');
  return name;
}

}  // namespace

std::vector<std::string> IndexesOf(const SqliteFile& file, std::string_view table) {
  std::vector<std::string> indexes;
  SqliteStatement rows = file.Prepare(
      "SELECT (SELECT group_concat(name, ', ')"
      " FROM (SELECT name FROM pragma_index_info(i.name) ORDER BY seqno))"
      " FROM pragma_index_list(?1) AS i");
  rows.Bind(1, table);
  while (rows.Step()) indexes.push_back(rows.Text(0));
  return indexes;
}

void CheckIndexes(const SqliteFile& file, const std::string& place, const std::string& table,
                  const std::vector<std::string>& expected, std::vector<std::string>& findings) {
  const std::vector<std::string> indexes = IndexesOf(file, table);
  for (const std::string& columns : expected) {
    if (std::ranges::find(indexes, columns) != indexes.end()) continue;
    findings.push_back(
        fmt::format("{0}{1} has no index on ({2}), so pages are slow; run 'CREATE INDEX {3} ON {1}"
                    " ({2})' in it",
                    place, table, columns, NameOf(table, columns)));
  }
}

}  // namespace quillon
