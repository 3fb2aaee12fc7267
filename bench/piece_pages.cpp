// Rendering without query, file or socket: the page frame, and a full top-10 table with
// its ten popups.
#include <benchmark/benchmark.h>

#include <string>

#include "platform/clock.h"
#include "render/page_frame.h"
#include "render/switch_tables.h"
#include "reports.h"

namespace {

using namespace quillon;

constexpr ConnectionId kSlot = 1;

// What rendering reads, with every row of a table filled.
class FullTable {
 public:
  FullTable() {
    reports_.settings.CharSet = "ISO-8859-1";
    reports_.words.LangWord.Fill("a word of the site");
    reports_.words.HelpText = std::string(2000, 'h');
    SwitchTableRecord& record = reports_.records.SwitchTableRep[kSlot];
    record.TableCriteria = "10 (214)";
    for (SwitchTableRow& row : record.rows) Fill(row);
  }

  const RenderContext& context() const { return reports_.render; }

 private:
  static void Fill(SwitchTableRow& row) {
    row = {.recNo = 17,
           .device = "switch-00017.example",
           .ipAddr = "10.0.0.17",
           .vlanID = "120",
           .ifIndex = 24,
           .ifDescr = "GigabitEthernet0/24",
           .ifSpeed = "1 G",
           .ifAlias = "Room 3.117, socket 2",
           .ifAdmin = "up",
           .ifOper = "up",
           .inHCOctetsMb24H = "12 G",
           .inHCOctetsMb24HF = "12 G  (1 Mbit/s)",
           .outHCOctetsMb24H = "12 G",
           .outHCOctetsMb24HF = "12 G  (1 Mbit/s)",
           .inBroadCastPpm24H = "1 234",
           .inBroadCastPpm24HF = "1 234 per minute  (21 per second)",
           .inMultiCastPpm24H = "1 234",
           .inMultiCastPpm24HF = "1 234 per minute  (21 per second)",
           .inErrorsTot24H = "2 000 000",
           .inErrorsTot24HF = "2 000 000 in 24 hours  (1389 per minute)",
           .outErrorsTot24H = "2 000 000",
           .outErrorsTot24HF = "2 000 000 in 24 hours  (1389 per minute)",
           .userMacAddr = "02 1B 2C 3D 4E 5F",
           .userIpAddr = "10.100.3.117",
           .userLastSeen = "2024-05-02"};
  }

  SystemClock clock_;
  Reports reports_{clock_};
};

void PageFrame(benchmark::State& state) {
  const FullTable table;
  for (auto _ : state) {
    std::string page;
    TopHeader_Begin(table.context(), kReportPageWidth, "switch-access-port-top10", page);
    TopHeader_End(table.context(), page);
    Page_Footer(table.context(), page);
    Page_End(table.context(), page);
    benchmark::DoNotOptimize(page);
  }
}

void SwitchTable(benchmark::State& state) {
  const FullTable table;
  for (auto _ : state) {
    std::string page;
    TableHeader_Switch(table.context(), kSlot, page);
    TableData_Switch(table.context(), kSlot, "access", "switch-access-port-top10-inerrors.htm",
                     page);
    benchmark::DoNotOptimize(page);
  }
}

BENCHMARK(PageFrame)->Unit(benchmark::kMicrosecond);
BENCHMARK(SwitchTable)->Unit(benchmark::kMicrosecond);

}  // namespace
