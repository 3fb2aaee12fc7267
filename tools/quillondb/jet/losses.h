// What of the old files did not come over, and why.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

class JetLosses {
 public:
  // Something about a table as a whole: "VLAN: the column IfAlias is missing; ...".
  void AddTable(std::string_view table, std::string_view what);

  // A row, from 1 in stored order, for the sake of one of its columns.
  void AddField(std::string_view table, std::int64_t row, std::string_view column,
                std::string_view what);

  bool empty() const { return tables_.empty(); }

  // One line each as a terminal may get it, table by table. Of a table with many, the first 20 are
  // told and the rest is counted.
  std::vector<std::string> Lines() const;

 private:
  struct OfTable {
    std::vector<std::string> lines;
    std::int64_t untold = 0;
  };

  void Add(std::string_view table, std::string_view what);

  std::map<std::string, OfTable, std::less<>> tables_;
};

}  // namespace quillon
