// Times the top-10 query of access ports inside one fresh process: the first call, which
// pays for everything that a process meets for the first time, and some later ones.
//
//   top10_query DIRECTORY
//
// Prints "call <microseconds>" for each call, then "port <recNo> <ifIndex>" for each row.
#include <fmt/core.h>

#include <cstdio>
#include <string>

#include "in_process.h"
#include "queries/switch_top10.h"
#include "reports.h"

namespace {

using namespace quillon;

constexpr ConnectionId kSlot = 1;
constexpr int kCalls = 4;

class Query {
 public:
  explicit Query(const std::string& directory) : reports_(clock_, SettingsOf(directory)) {}

  Microseconds Run() {
    for (SwitchTableRow& row : reports_.records.SwitchTableRep[kSlot].rows) row.recNo = 0;
    return TimeOf([&] { SqlTop10SwitchStats(reports_.queries, kSlot, "InErrorsTot24H", false); });
  }

  const SwitchTableRecord& record() const { return reports_.records.SwitchTableRep[kSlot]; }

 private:
  SystemClock clock_;
  Reports reports_;
};

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 2) {
    fmt::print(stderr, "usage: top10_query DIRECTORY\n");
    return 2;
  }
  Query query(arguments[1]);
  for (int call = 0; call < kCalls; ++call) {
    fmt::print("call {:.1f}\n", query.Run().count());
    for (const SwitchTableRow& row : query.record().rows) {
      if (row.recNo != 0) continue;
      fmt::print(stderr, "top10_query: the list has an empty row; see Debug/AppEventWeb.txt\n");
      return 1;
    }
  }
  for (const SwitchTableRow& row : query.record().rows) {
    fmt::print("port {} {}\n", row.recNo, row.ifIndex);
  }
  return 0;
}
