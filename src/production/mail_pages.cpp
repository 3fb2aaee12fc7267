// Building the pages of a receiver.
#include "production/mail_pages.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "production/page_build.h"
#include "production/port_charts.h"
#include "production/report_choice.h"
#include "queries/port_name.h"
#include "queries/port_search.h"
#include "queries/switch_summary.h"
#include "queries/switch_top10.h"
#include "render/chart_blocks.h"
#include "render/chart_names.h"
#include "render/switch_tables.h"
#include "web/page_cache.h"

namespace quillon {
namespace {

constexpr std::string_view kPortColumn = "IfDescr";

// Closes a page and stores it: nobody adds the footer to a file that is mailed.
void CloseAndSave(const ProductionContext& context, const std::string& file, std::string page) {
  Page_Footer(context.render, page);
  Page_End(context.render, page);
  SaveForMail(context.diagnostics, BackgroundSlot, file, page);
}

std::string SummaryPage(ProductionContext& context, const SwitchPortKind& kind) {
  SqHist45dSwitchSum(context.queries, BackgroundSlot, kind.isTrunk);
  std::string page;
  TopHeader_MailReport(context.render, page);
  SwitchSummaryBlocks(context.render, BackgroundSlot, page);
  return page;
}

// The links to the ports' charts name the metric, where those of the site name the page.
std::string ListPage(ProductionContext& context, const SwitchPortKind& kind,
                     std::string_view sortField) {
  SqlTop10SwitchStats(context.queries, BackgroundSlot, sortField, kind.isTrunk);
  std::string page;
  TopHeader_MailReport(context.render, page);
  TableHeader_Switch(context.render, BackgroundSlot, page);
  TableData_Switch(context.render, BackgroundSlot, kind.name, sortField, page);
  return page;
}

// Builds the page of a choice and returns its file's name.
std::string BuildChosenPage(ProductionContext& context, const std::string& choiceText) {
  const auto choice = ParseReportChoice(choiceText);
  if (!choice) return kNoReport;
  EmptyRows(context.records.SwitchTableRep[BackgroundSlot]);
  std::string file = choice->File();
  CloseAndSave(context, file,
               choice->metric == nullptr
                   ? SummaryPage(context, choice->kind)
                   : ListPage(context, choice->kind, choice->metric->sortField));
  return file;
}

}  // namespace

void BuildChosenPages(ProductionContext& context, RepReceiverEntry& receiver) {
  for (std::string& report : receiver.Top10Rep) {
    if (report != kNoReport) report = BuildChosenPage(context, report);
  }
}

void BuildPortPage(ProductionContext& context, RepReceiverEntry& receiver) {
  if (!receiver.PortRep) {
    receiver.PortRepFile = kNoReport;
    return;
  }
  const std::int32_t recNo = receiver.PortRepRecNo;
  const std::int32_t ifIndex = receiver.PortRepIfIndex;
  EmptyRows(context.records.SwitchTableRep[BackgroundSlot]);
  std::string device;
  std::string port;
  SqlPortNameLookup(context.queries, recNo, ifIndex, device, port);
  SqlSearchDevicePort(context.queries, BackgroundSlot, device, port, kPortColumn,
                      PatternSource::kDatabase);
  std::string page;
  TopHeader_MailReport(context.render, page);
  if (receiver.PortRepDetails) {
    TableHeader_Switch(context.render, BackgroundSlot, page);
    TableDataSwitch_Search(context.render, BackgroundSlot, kPortColumn, page);
  }
  page += PortCharts(context, recNo, ifIndex, device, port);
  receiver.PortRepFile = PortChartsFile(recNo, ifIndex);
  CloseAndSave(context, receiver.PortRepFile, std::move(page));
}

}  // namespace quillon
