// Receivers of report mails, ports and days for their pages, and verbs that tell what became of the
// mails. Each of the six metrics puts the three ports of a kind into another order.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "production/production_fixture.h"
#include "queries/port_search.h"
#include "queries/switch_hist45.h"
#include "queries/switch_summary.h"
#include "queries/switch_top10.h"
#include "render/page_frame.h"
#include "render/switch_tables.h"
#include "support/expected_charts.h"

namespace quillon {

// The queries and the renderer around records of their own, for the pages that a mail should bring.
struct Workshop {
  explicit Workshop(Site& site)
      : queries{site.diagnostics, site.settings, site.clock, site.loop,
                site.words,       site.period,   records},
        render{site.diagnostics, site.settings, site.words, site.calendar, site.period, records} {}

  ReportRecords records;
  QueryContext queries;
  RenderContext render;
};

class MailTest : public ProductionTest {
 protected:
  static constexpr ConnectionId kSlot = 15;

  MailTest() {
    Reports(InsertPorts("'Desk'", "FALSE", 10) + InsertPorts("'Core'", "TRUE", 20));
    History(
        "UPDATE VLAN_HistCtrl SET TrafficDate = '2024-05-01 03:10:00'"
        " WHERE HistTable = 'VLAN_Day01';"
        "UPDATE VLAN_HistCtrl SET TrafficDate = '2024-04-29 03:10:00'"
        " WHERE HistTable = 'VLAN_Day02';" +
        InsertPortOfDay("VLAN_Day01", {{"RecNo", "11"}, {"IfIndex", "4"}}) +
        InsertPortOfDay("VLAN_Day02", {{"RecNo", "11"}, {"IfIndex", "4"}}) +
        "INSERT INTO VLAN_HistSum VALUES"
        " ('2024-05-01 03:10:00', 0, 11, 12, 13, 14, 6000, 5000, 20, 10),"
        " ('2024-05-01 03:10:00', 1, 21, 22, 23, 24, 300, 200, 6, 3);");
  }

  // A receiver of a daily mail with attachments and links, who has chosen no report.
  static std::string InsertReceiver(const Columns& differing = {}) {
    return InsertRow("Settings_RepReceiver", With({{"Name", "'Anna'"},
                                                   {"Recipient", "'anna@example.org'"},
                                                   {"TimeSchedule", "1"},
                                                   {"WeekDay", "''"},
                                                   {"Top10Rep1", "'None'"},
                                                   {"Top10Rep2", "'None'"},
                                                   {"Top10Rep3", "'None'"},
                                                   {"Top10Rep4", "'None'"},
                                                   {"Top10Rep5", "'None'"},
                                                   {"PortRep", "FALSE"},
                                                   {"PortRepRecNo", "0"},
                                                   {"PortRepIfIndex", "0"},
                                                   {"PortRepDetails", "FALSE"},
                                                   {"AttachReport", "TRUE"},
                                                   {"IncludeUrl", "TRUE"}},
                                                  differing));
  }
  void AddReceiver(const Columns& differing = {}) const { Settings(InsertReceiver(differing)); }
  // One of that name, who has the address of Anna.
  void AddReceiverNamed(const std::string& name, const Columns& differing = {}) const {
    AddReceiver(With({{"Name", "'" + name + "'"}}, differing));
  }
  void AddReceivers(int count) const {
    std::string statements;
    for (int number = 1; number <= count; ++number) {
      statements += InsertReceiver({{"Name", "'R" + std::to_string(number) + "'"}});
    }
    Settings("BEGIN;" + statements + "COMMIT;");
  }
  static Columns PortReport(int recNo, int ifIndex, bool details) {
    return {{"PortRep", "TRUE"},
            {"PortRepRecNo", std::to_string(recNo)},
            {"PortRepIfIndex", std::to_string(ifIndex)},
            {"PortRepDetails", details ? "TRUE" : "FALSE"}};
  }

  // The operations on all mails so far whose line begins so.
  Lines Operations(std::string_view beginning) const {
    Lines lines;
    std::copy_if(mails.operations.begin(), mails.operations.end(), std::back_inserter(lines),
                 [&](const std::string& line) { return line.starts_with(beginning); });
    return lines;
  }
  // Names of the receivers whose mails were sent, in order.
  Lines Served() const {
    Lines names;
    std::string name;
    for (const std::string& line : mails.operations) {
      constexpr std::string_view kAdd = "AddRecipient ";
      if (line.starts_with(kAdd)) name = line.substr(kAdd.size(), line.find(" <") - kAdd.size());
      if (line == "SendMessage") names.push_back(name);
    }
    return names;
  }
  // Events without their texts: "2\tmodMail_SendMailSMTP".
  Lines EventHeads() const {
    Lines heads;
    for (const std::string& event : site.Events()) {
      heads.push_back(event.substr(0, event.find('\t', 2)));
    }
    return heads;
  }

  // The listener as it stands in the links; it is closed then.
  void ListenAt(const std::string& address, std::int32_t port) {
    site.tcpServer.SetListening(false);
    site.tcpServer.SetLocalHost(address);
    site.tcpServer.SetLocalPort(port);
  }
  std::string PathOfPage(const std::string& file) const {
    return site.installation.path() + "/WebReports/Mail/" + file;
  }
  std::string PathOfStylesheet() const { return site.installation.path() + "/WebReports/qws.css"; }

  // The pages as they should be now.
  std::string ListPage(std::string_view kind, std::string_view field) {
    const auto work = std::make_unique<Workshop>(site);
    SqlTop10SwitchStats(work->queries, kSlot, field, kind == "trunk");
    std::string page;
    TopHeader_MailReport(work->render, page);
    TableHeader_Switch(work->render, kSlot, page);
    TableData_Switch(work->render, kSlot, kind, field, page);
    return Closed(page);
  }
  std::string SummaryPage(std::string_view kind) {
    const auto work = std::make_unique<Workshop>(site);
    const RenderContext& render = work->render;
    SqHist45dSwitchSum(work->queries, kSlot, kind == "trunk");
    std::string page;
    TopHeader_MailReport(render, page);
    page += ExpectedSummaryCharts(render, kSlot);
    return Closed(page);
  }
  // What the charts are of is database text. The port's table is there where a search is given
  // whose device and port find it, in the charset of the pages.
  struct Search {
    std::string device;
    std::string port;
  };
  std::string PortPage(int recNo, int ifIndex, const std::string& device, const std::string& port,
                       std::optional<Search> search = {}) {
    const auto work = std::make_unique<Workshop>(site);
    const RenderContext& render = work->render;
    std::string page;
    TopHeader_MailReport(render, page);
    if (search) {
      SqlSearchDevicePort(work->queries, kSlot, search->device, search->port, "IfDescr");
      TableHeader_Switch(render, kSlot, page);
      TableDataSwitch_Search(render, kSlot, "IfDescr", page);
    }
    SqHist45SwitchControl(work->queries, kSlot, recNo, ifIndex, device, port, true);
    page += ExpectedPortCharts(render, kSlot);
    return Closed(page);
  }

  static bool Holds(const std::string& text, std::string_view words) {
    return text.find(words) != std::string::npos;
  }

 private:
  // Three ports of today with interface 4, of the devices behind that number.
  static std::string InsertPorts(const std::string& device, const std::string& isTrunk, int recNo) {
    const char* figures[][6] = {{"30", "30", "20", "20", "10", "10"},
                                {"20", "10", "30", "10", "30", "20"},
                                {"10", "20", "10", "30", "20", "30"}};
    std::string statements;
    for (const auto& figure : figures) {
      statements += InsertPort({{"RecNo", std::to_string(++recNo)},
                                {"IfIndex", "4"},
                                {"DevName", device + "||" + std::to_string(recNo)},
                                {"IsTrunk", isTrunk},
                                {"InHCOctetsMb24H", figure[0]},
                                {"OutHCOctetsMb24H", figure[1]},
                                {"InBroadCastPpm24H", figure[2]},
                                {"InMultiCastPpm24H", figure[3]},
                                {"InErrorsTot24H", figure[4]},
                                {"OutErrorsTot24H", figure[5]}});
    }
    return statements;
  }

  std::string Closed(std::string page) const {
    Page_Footer(site.render, page);
    Page_End(site.render, page);
    return page;
  }
};

}  // namespace quillon
