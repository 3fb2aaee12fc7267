// The summary charts: what their bands name, and which panels they can show.
#include "render/summary_charts.h"

#include <functional>

#include "render/chart_band.h"
#include "render/chart_body.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

constexpr std::string_view kModule = "modHtml";
constexpr int kReportWord = 18;
constexpr int kNumberWord = 86;
constexpr const char* kBlank = "&nbsp";

constexpr ChartKind<Hist45dSwitchRecord> kPortKinds[] = {
    {"volume", &Hist45dSwitchRecord::Volume, 100},
    {"broadcast", &Hist45dSwitchRecord::Broadcast, 200},
    {"errors", &Hist45dSwitchRecord::Errors, 300},
    {"ports", &Hist45dSwitchRecord::Ports, 400},
};
constexpr ChartKind<Hist45dDiskRecord> kStorageKinds[] = {
    {"physical", &Hist45dDiskRecord::Physical, 100},
    {"virtual", &Hist45dDiskRecord::Virtual, 200},
    {"windows", &Hist45dDiskRecord::Windows, 300},
    {"unix", &Hist45dDiskRecord::Unix, 400},
};

// The band names the report; its second row is blank.
void SummaryBand(const RenderContext& context, const std::function<std::string()>& report,
                 const ChartWords& words, std::string& page) {
  ChartBand({{"50px", context.LangWord(kReportWord) + ":", "190px", report},
             {"50px", kBlank, "200px", [] { return std::string(kBlank); }}},
            words, page);
}

}  // namespace

void ChartHeader45d_SwitchSum(const RenderContext& context, ConnectionId slot,
                              std::string_view title, std::string_view leftWord,
                              std::string_view rightWord, std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "ChartHeader45d_SwitchSum", [&] {
    const auto report = [&] { return context.records.Hist45dSwitchRep[slot].Report; };
    SummaryBand(context, report, {title, leftWord, rightWord}, pageHtml);
  });
}

void ChartHeader45d_DiskSum(const RenderContext& context, ConnectionId, std::string_view title,
                            std::string_view reportWord, std::string_view leftWord,
                            std::string_view rightWord, std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "ChartHeader45d_DiskSum", [&] {
    SummaryBand(
        context, [&] { return std::string(reportWord); }, {title, leftWord, rightWord}, pageHtml);
  });
}

void ChartData45d_SwitchSum(const RenderContext& context, ConnectionId slot,
                            std::string_view chartKind, std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "ChartData45d_SwitchSum", [&] {
    ChartBody(context,
              ChartOf<Hist45dSwitchRecord>(kPortKinds, chartKind, context.records.Hist45dSwitchRep,
                                           slot, &Hist45dSwitchRecord::TrafficDate),
              pageHtml);
  });
}

void ChartData45d_DiskSum(const RenderContext& context, ConnectionId slot,
                          std::string_view chartKind, std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "ChartData45d_DiskSum", [&] {
    ChartBody(
        context,
        ChartOf<Hist45dDiskRecord>(kStorageKinds, chartKind, context.records.Hist45dDiskRep, slot,
                                   &Hist45dDiskRecord::StorageDate, context.LangWord(kNumberWord)),
        pageHtml);
  });
}

}  // namespace quillon
