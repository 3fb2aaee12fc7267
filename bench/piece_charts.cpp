// The HTML of the charts without a query: records with figures of 45 days, printed.
#include <benchmark/benchmark.h>

#include <chrono>
#include <string>

#include "platform/clock.h"
#include "render/chart_blocks.h"
#include "reports.h"

namespace {

using namespace quillon;

constexpr ConnectionId kSlot = 1;

// What the charts read, with every day of them filled.
class FullCharts {
 public:
  FullCharts() {
    reports_.words.LangWord.Fill("a word of the site");
    Hist45SwitchRecord& port = reports_.records.Hist45SwitchRep[kSlot];
    port.Device = "switch-00017.example";
    port.Port = "GigabitEthernet0/24";
    Fill(port.TrafficDate);
    Fill(port.Volume);
    Fill(port.Broadcast);
    Fill(port.Errors);
    Hist45dSwitchRecord& summary = reports_.records.Hist45dSwitchRep[kSlot];
    summary.Report = "Access Ports 45 Days";
    Fill(summary.TrafficDate);
    Fill(summary.Volume);
    Fill(summary.Broadcast);
    Fill(summary.Errors);
    Fill(summary.Ports);
  }

  const RenderContext& context() const { return reports_.render; }

 private:
  static void Fill(Days<DateTime>& dates) {
    DateTime date = MakeDateTime({.year = 2024, .month = 3, .day = 18});
    for (DateTime& day : dates) {
      day = date;
      date += std::chrono::days(1);
    }
  }

  static void Fill(Panel& panel) {
    panel.NameLeft = "In Broadcast";
    panel.NameRight = "In Multicast";
    panel.YaxisMax = "13 G";
    panel.YaxisHalf = "6.5 G";
    panel.Left.Fill("1 234 567 per min<br>(20 576 per sec)");
    panel.LeftBar.Fill("95");
    panel.Right.Fill("1 234 per min<br>(21 per sec)");
    panel.RightBar.Fill("37");
  }

  SystemClock clock_;
  Reports reports_{clock_};
};

void PortCharts(benchmark::State& state) {
  const FullCharts charts;
  for (auto _ : state) {
    std::string html;
    PortChartBlocks(charts.context(), kSlot, html);
    benchmark::DoNotOptimize(html);
  }
}

void SummaryCharts(benchmark::State& state) {
  const FullCharts charts;
  for (auto _ : state) {
    std::string html;
    SwitchSummaryBlocks(charts.context(), kSlot, html);
    benchmark::DoNotOptimize(html);
  }
}

BENCHMARK(PortCharts)->Unit(benchmark::kMicrosecond);
BENCHMARK(SummaryCharts)->Unit(benchmark::kMicrosecond);

}  // namespace
