// A site with the history of two ports and of all ports together, and words that show their
// number: word 38 is "W38". Today is 2024-05-02, noon; the newest day of a chart is the day before.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "render/page_frame.h"
#include "support/expected_charts.h"
#include "support/report_rows.h"
#include "support/site.h"
#include "web/expected_pages.h"

namespace quillon {

class ChartSite : public testing::Test {
 protected:
  using Names = std::vector<std::string>;

  // The volume of yesterday that tells the charts of port 4 of device 7 and of port 5 of device 8
  // apart, and the sums of access and trunk ports.
  static constexpr std::string_view kSeven = ": 5 000 M  (463 W44)<br>";
  static constexpr std::string_view kEight = ": 700 M  (65 W44)<br>";
  static constexpr std::string_view kAccess = ": 6 000 M  (556 W44)<br>";
  static constexpr std::string_view kTrunk = ": 300 M  (28 W44)<br>";

  ChartSite() {
    site.NumberWords("W");
    site.favIconData = "icon";
    Reports(InsertPort({{"RecNo", "7"}, {"IfIndex", "4"}, {"DevName", "'sw7'"}}) +
            InsertPort({{"RecNo", "8"}, {"IfIndex", "5"}, {"DevName", "'sw8'"}}));
    History(
        "UPDATE VLAN_HistCtrl SET TrafficDate = '2024-05-01 03:10:00'"
        " WHERE HistTable = 'VLAN_Day01';"
        "UPDATE VLAN_HistCtrl SET TrafficDate = '2024-04-29 03:10:00'"
        " WHERE HistTable = 'VLAN_Day02';"
        "INSERT INTO VLAN_Day01 VALUES (7, 4, 1, 2, 30, 40, 5000, 4000, 0),"
        " (8, 5, 3, 4, 50, 60, 700, 600, 0);"
        "INSERT INTO VLAN_Day02 VALUES (7, 4, 5, 6, 70, 80, 90, 100, 0);"
        "INSERT INTO VLAN_HistSum VALUES"
        " ('2024-05-01 03:10:00', 0, 11, 12, 13, 14, 6000, 5000, 20, 10),"
        " ('2024-05-01 03:10:00', 1, 21, 22, 23, 24, 300, 200, 6, 3);");
  }

  void Reports(const std::string& sql) const { site.installation.Sql("Reports.mdb", sql); }
  void History(const std::string& sql) const { site.installation.Sql("History.mdb", sql); }
  void RemoveDatabases() const {
    for (const char* name : {"Reports.mdb", "History.mdb"}) site.installation.Remove(name);
  }

  void Store(const std::string& name, const std::string& bytes) const {
    site.installation.Write("WebReports/Cache/" + name, bytes);
  }
  std::string Stored(const std::string& name) const {
    return site.installation.Read("WebReports/Cache/" + name);
  }
  Names CacheFiles() const { return site.installation.List("WebReports/Cache"); }
  // A folder in the cache, through which a way up would lead somewhere.
  void MakeDoor(const std::string& name) const {
    std::filesystem::create_directory(site.installation.path() + "/WebReports/Cache/" + name);
  }
  void RemoveCacheFolder() const {
    std::filesystem::remove_all(site.installation.path() + "/WebReports/Cache");
  }

  // The answer to a request, after which the connection is as good as before.
  std::string Answer(const std::string& request) {
    const auto client = site.Connect();
    const std::string response = site.Exchange(*client, request);
    EXPECT_EQ(site.Exchange(*client, Site::Request("")), DefaultResponse(site.render)) << request;
    client->Close();
    site.Settle();
    return response;
  }
  // The same of a URL; its charts are on connection 1.
  std::string Get(const std::string& url) { return Answer(Site::Request(url)); }

  // The answer that is made of this page.
  std::string Closed(const std::string& page) const { return ClosedResponse(site.render, page); }

  // Runs the action inside the first wait that lasts for so long already.
  void InTheWait(std::function<void()> action, int milliseconds = 10) {
    const auto moment = site.clock.slept() + std::chrono::milliseconds(milliseconds);
    site.Once([this, moment] { return site.clock.slept() >= moment; }, std::move(action));
  }

  // The page of a chart whose link names no table, and that of a summary, without their ends.
  std::string PageOfItsOwn(ConnectionId slot) const {
    std::string page;
    TopHeader_MailReport(site.render, page);
    return page + ExpectedPortCharts(site.render, slot);
  }
  std::string Summary(const RenderContext& render, const std::string& reportKey,
                      ConnectionId slot) const {
    std::string page;
    TopHeader_Begin(render, 580, reportKey, page);
    TopHeader_End(render, page);
    return page + ExpectedSummaryCharts(render, slot);
  }

  // The site's words around records that no report has written.
  RenderContext Untouched() const {
    return {site.diagnostics, site.settings, site.words, site.calendar, site.period, untouched_};
  }

  // "Table From Cache: ..." and "Chart From Cache: ..." of the log, in short: "TF" for a table from
  // the cache and a chart that is not.
  Names FromCache() const {
    Names answers;
    for (const std::string& line : SplitLines(site.installation.Read("Debug/WebConnections.txt"))) {
      const std::size_t at = line.find(" From Cache: ");
      if (at == std::string::npos) continue;
      if (line.find("Table") < at) answers.emplace_back();
      answers.back() += line[at + 13];
    }
    return answers;
  }

  // Heads of all events so far, without their texts: "modHtml_SaveToCache". All are failures.
  Names Failures() const {
    Names failures;
    for (const std::string& event : site.Events()) {
      EXPECT_EQ(event.substr(0, 2), "1\t") << event;
      failures.push_back(event.substr(2, event.find('\t', 2) - 2));
    }
    return failures;
  }

  static bool Holds(const std::string& text, std::string_view words) {
    return text.find(words) != std::string::npos;
  }

  Site site;

 private:
  ReportRecords untouched_;
};

}  // namespace quillon
