// Times chart pages inside one fresh process, query and charts: the first one pays for everything
// that a process meets for the first time. Their pauses are not slept and no event is due, so that
// what is left is their work.
//
//   chart_reports DIRECTORY PAGE...    PAGE: <recNo>-<ifIndex>, the charts of a port;
//                                      access or trunk, the summary of such ports
//
// Prints "page <microseconds>" for each. Fails where anything was reported or a day has no figure.
#include <fmt/core.h>

#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "in_process.h"
#include "platform/number_text.h"
#include "queries/port_name.h"
#include "queries/switch_hist45.h"
#include "queries/switch_summary.h"
#include "render/chart_blocks.h"
#include "reports.h"

namespace {

using namespace quillon;

constexpr ConnectionId kSlot = 1;

struct Port {
  std::int32_t recNo = 0;
  std::int32_t ifIndex = 0;
};

bool StartsWithDigit(const std::string& text) {
  return !text.empty() && text.front() >= '0' && text.front() <= '9';
}

// True where both series have a figure and a bar on each day.
bool IsComplete(const Panel& panel) {
  for (int day = 1; day <= panel.Left.kSize; ++day) {
    if (!StartsWithDigit(panel.Left[day]) || !IsNumeric(panel.LeftBar[day])) return false;
    if (!StartsWithDigit(panel.Right[day]) || !IsNumeric(panel.RightBar[day])) return false;
  }
  return true;
}

class ChartPages {
 public:
  explicit ChartPages(const std::string& directory) : reports_(clock_, SettingsOf(directory)) {
    reports_.words.LangWord.Fill("a word of the site");
  }

  Microseconds OpenPort(const Port& port) {
    const auto work = TimeOf([&] {
      std::string device;
      std::string name;
      SqlPortNameLookup(reports_.queries, port.recNo, port.ifIndex, device, name);
      SqHist45SwitchControl(reports_.queries, kSlot, port.recNo, port.ifIndex, device, name, false);
      charts_.clear();
      PortChartBlocks(reports_.render, kSlot, charts_);
    });
    const Hist45SwitchRecord& record = reports_.records.Hist45SwitchRep[kSlot];
    if (record.Device == "n/a") throw std::runtime_error("there is no such port");
    Expect({&record.Volume, &record.Broadcast, &record.Errors}, "id='c345'");
    return work;
  }

  Microseconds OpenSummary(bool isTrunk) {
    const auto work = TimeOf([&] {
      SqHist45dSwitchSum(reports_.queries, kSlot, isTrunk);
      charts_.clear();
      SwitchSummaryBlocks(reports_.render, kSlot, charts_);
    });
    const Hist45dSwitchRecord& record = reports_.records.Hist45dSwitchRep[kSlot];
    Expect({&record.Volume, &record.Broadcast, &record.Errors, &record.Ports}, "id='c445'");
    return work;
  }

 private:
  void Expect(const std::vector<const Panel*>& panels, std::string_view lastPopup) const {
    ExpectNoEvent(reports_.settings);
    for (const Panel* panel : panels) {
      if (!IsComplete(*panel)) throw std::runtime_error("a chart has a day without figures");
    }
    if (charts_.find(lastPopup) == std::string::npos) {
      throw std::runtime_error("the charts end too early");
    }
  }

  SleeplessClock clock_;
  Reports reports_;
  std::string charts_;
};

// "12-34".
std::optional<Port> ReadPort(std::string_view text) {
  Port port;
  const char* end = text.data() + text.size();
  const auto [dash, recNoError] = std::from_chars(text.data(), end, port.recNo);
  if (recNoError != std::errc() || dash == end || *dash != '-') return std::nullopt;
  const auto [last, ifIndexError] = std::from_chars(dash + 1, end, port.ifIndex);
  if (ifIndexError != std::errc() || last != end) return std::nullopt;
  return port;
}

Microseconds Open(ChartPages& pages, std::string_view page) {
  if (page == "access" || page == "trunk") return pages.OpenSummary(page == "trunk");
  const std::optional<Port> port = ReadPort(page);
  if (!port) throw std::runtime_error("no page is named so: " + std::string(page));
  return pages.OpenPort(*port);
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount < 3) {
    fmt::print(stderr, "usage: chart_reports DIRECTORY PAGE...\n");
    return 2;
  }
  try {
    ChartPages pages(arguments[1]);
    for (int i = 2; i < argumentCount; ++i) {
      fmt::print("page {:.1f}\n", Open(pages, arguments[i]).count());
    }
  } catch (const std::exception& failure) {
    fmt::print(stderr, "chart_reports: {}\n", failure.what());
    return 1;
  }
  return 0;
}
