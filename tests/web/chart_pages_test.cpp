// Whole pages of charts, from rows of the databases to the answer on the socket, compared byte for
// byte with stored ones. How their figures come about is told in data/pages/README.md.
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "support/environment.h"
#include "support/report_rows.h"
#include "support/site.h"
#include "support/stored_text.h"
#include "web/expected_pages.h"

namespace quillon {
namespace {

// One day of a port or of all ports, so many days before today. The figures stand in the order of
// the charts: volume in and out, broadcast, multicast, errors in and out; of all ports also their
// number and how many of them had traffic.
struct Day {
  int age;
  const char* figures;
};

constexpr const char* kFigureColumns =
    "InHCOctetsMb24H, OutHCOctetsMb24H, InBroadCastPpm24H, InMultiCastPpm24H, InErrorsTot24H,"
    " OutErrorsTot24H";

class ChartPages : public testing::Test {
 protected:
  ChartPages() {
    site.NumberWords("W");
    History("DELETE FROM VLAN_HistCtrl");
  }

  void History(const std::string& sql) const { site.installation.Sql("History.mdb", sql); }

  // A control row for the day, late in the evening.
  void AddControlRow(int age, const std::string& histTable) const {
    History(InsertPortControl("'" + site.DayBefore(age) + " 23:59:59'", "'" + histTable + "'"));
  }

  // The day in a table of its own, between rows of ports of the same device, of the same number on
  // another device, and of the same port for a second time.
  void AddPortDay(int recNo, int ifIndex, const Day& day) const {
    const std::string table = DayTable("VLAN_Day", day.age);
    AddControlRow(day.age, table);
    AddPortFigures(table, recNo, ifIndex + 1, "1, 2, 3, 4, 5, 6");
    AddPortFigures(table, recNo + 1, ifIndex, "7, 8, 9, 10, 11, 12");
    if (day.figures == nullptr) return;
    AddPortFigures(table, recNo, ifIndex, day.figures);
    AddPortFigures(table, recNo, ifIndex, "999999999, 2, 3, 4, 5, 6");
  }

  void AddSum(bool isTrunk, const Day& day) const {
    History("INSERT INTO VLAN_HistSum (TrafficDate, IsTrunk, " + std::string(kFigureColumns) +
            ", Ports, PortsInTraffic) VALUES ('" + site.DayBefore(day.age) + " 03:10:00', " +
            (isTrunk ? "1, " : "0, ") + day.figures + ")");
  }
  void AddSums(bool isTrunk, std::initializer_list<Day> days) const {
    for (const Day& day : days) AddSum(isTrunk, day);
  }

  void AddName(int recNo, int ifIndex, const std::string& device, const std::string& port) const {
    site.installation.Sql("Reports.mdb", InsertPort({{"RecNo", std::to_string(recNo)},
                                                     {"IfIndex", std::to_string(ifIndex)},
                                                     {"DevName", device},
                                                     {"IfDescr", port}}));
  }

  void SpeakSwedish() {
    const Environment environment({"LC_ALL", "LC_TIME", "LANG", "LOCPATH"});
    environment.Set("LOCPATH", LOCALES_PATH);
    environment.Set("LC_TIME", "sv_SE.UTF-8");
    site.calendar = CalendarNames::OfEnvironment();
  }

  // The answer with a stored page.
  static std::string Expected(const std::string& page) {
    return Response("text/html", StoredPage(page));
  }

  Site site;

 private:
  void AddPortFigures(const std::string& table, int recNo, int ifIndex,
                      std::string_view figures) const {
    History("INSERT INTO " + table + " (IsTrunk, RecNo, IfIndex, " + kFigureColumns +
            ") VALUES (0, " + std::to_string(recNo) + ", " + std::to_string(ifIndex) + ", " +
            std::string(figures) + ")");
  }
};

TEST_F(ChartPages, ChartsOfAPortUnderTheirTable) {
  site.words.LangWord[12] = "Volym <\xE5>";
  site.words.LangWord[15] = "Ger\xE4t";
  SpeakSwedish();
  AddName(4711, 10102, "'another'", "'port'");
  AddName(4712, 10101, "'another'", "'device'");
  AddName(4711, 10101, "'B\xC3\xBCro \"Ost\" & <S\xC3\xB6hne>'",
          "'Gi1/0/1 ''\xD0\x96\xE2\x86\x92\xC3\x85'''");
  const Day days[] = {
      {45, "1234, 5, 0.5, -1, 12000, 1439"},
      {43, "54000000, 10800000, 61.5, 10, 1300.5, 100"},
      {31, "12499, 12500, 121, 1233, 130, 9100"},
      {30, nullptr},
      {23, "16200, 27000, 210, 270, 6480, 7920"},
      {14, "1499.5, 9999, 0.4, 2.5, 0.5, 1.5"},
      {1, "124200000, 113400000, 1234, 60, 12345, 0"},
      {2, "108000001, 108000000, 60, 61, 1440, 1441"},
      {3, "10801, 10800, 90, 150, 2160, 3600"},
      {5, "11, 10, 59.6, 60.4, 1439.6, 1440.4"},
      {6, nullptr},
      {7, "-1, -1, -1, -1, -1, -1"},
      {8, "0, 0, 0, 0, 0, 0"},
      {9, "650000, 1950000, 5, 15, 65, 195"},
      {10, "3250000, 9999500, 25, 35, 325, 455"},
      {11, "12344678, 999500, 6, 4, 12344, 5"},
      {12, "27, 81, 1000, 999, 1, 2"},
      {13, "999, 1000, 575, 300, 7200, 5040"},
  };
  for (const Day& day : days) AddPortDay(4711, 10101, day);
  AddControlRow(46, "VLAN_Day44");
  const std::string table = "switch-trunk-port-top10-outvolume.htm";
  site.installation.Write("WebReports/Cache/" + table,
                          "<table class='list'>list of B\xFCro & 'others'</table>\r\n<br>\r\n");

  const std::string expected = Expected("port_under_table.html");
  EXPECT_EQ(site.Get("hist45-4711-10101-" + table), expected);
  EXPECT_EQ(site.Get("hist45-4711-10101-" + table), expected) << "with the stored charts";
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(ChartPages, ChartsOfAPortOnAPageOfTheirOwn) {
  site.clock.Set("2024-03-10 00:00:00");
  site.settings.CharSet = "UTF-8";
  site.words.LangWord[16] =
      "\xE1\xB8\xA6"
      "afen";
  AddName(815, 2, "'Z\xC3\xBCrich-\xD0\x96 <b>'", "'it''s \"5\" & \xE2\x82\xAC'");
  const Day days[] = {
      {8, "0.5, 0.6, 7.4, 6.5, 0.4, 1.5"},
      {1, "10, 9.5, 7, 3, 2.4, 0"},
      {2, "0.4, 0.05, 1, 0, 1, 2"},
      {4, "4, 6, NULL, 5, 1, 1"},
      {6, "-1, 3.5, -1, -1, -1, -1"},
      {7, "2.5, 1.5, 5, 2.5, 0.01, 0.03"},
      {41, "1, 0, 4, 6, 0, 1"},
  };
  for (const Day& day : days) AddPortDay(815, 2, day);
  AddControlRow(5, "VLAN_DayGone");
  site.installation.Write("WebReports/Cache/hist45-815-2.htm", "not asked for");

  EXPECT_EQ(site.Get("hist45-0815-0002.htm"), Expected("port_alone.html"));
  const std::vector<std::string> events = site.Events();
  ASSERT_EQ(events.size(), 2u) << "a day without its table, and one with a null";
  for (const std::string& event : events) {
    EXPECT_EQ(event.find("1\tmodSelectSql_SqlHist45SwitchStats\t"), 0u) << event;
  }
}

TEST_F(ChartPages, SummaryOfAccessPorts) {
  site.clock.Set("2025-01-20 23:59:00");
  site.words.HelpText = "<p>Hilfe f\xFCr \"alle\"</p>\r\n";
  site.words.LangWord[34] = "Zug\xE4nge & <'45'>";
  AddSums(false, {{4, "15000000, 45000000, 5000000, 15000000, 1440, 1441, 8, 1"},
                  {1, "2147483647, 1500000000, 999999999, 60, 216000, 129600, 1234, 617"},
                  {45, "27, 81, 150, 90, 3600, 86399, 200, 1"},
                  {2, "108000001, 108000000, 60, 61, 86401, 86400, 200, 57"}});
  AddSums(true, {{1, "1, 2, 3, 4, 5, 6, 7, 8"}, {3, "9, 10, 11, 12, 13, 14, 15, 16"}});
  AddSums(false, {{5, "75000000, 10801, 25000000, -1, 1100, 3300, 0, 3"},
                  {6, "-1, -1, -1, -1, -1, -1, -1, -1"},
                  {7, "0, 0, 0, 0, 0, 0, 0, 0"},
                  {8, "10, 11, 6000000, 600, 5500, 2160, 3, 2"},
                  {15, "10800, 9999, 59, 3600, 100000, 7200, 1000, 1000"},
                  {46, "999, 999, 999, 999, 999, 999, 999, 999"}});

  const std::string expected = Expected("access_summary.html");
  EXPECT_EQ(site.Get("hist45d-switch-access-port-summary.htm"), expected);
  EXPECT_EQ(site.Get("hist45d-switch-access-port-summary.htm"), expected) << "stored";
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(ChartPages, SummaryOfTrunkPorts) {
  site.settings.CharSet = "UTF-8";
  site.words.LangWord[35] = "St\xC3\xA4mme";
  AddSums(true, {{44, "3, 3, 0, 0, 0, 0, 5, 3"},
                 {2, "1499, 5, 1, 1, 1, -1, 6, 6"},
                 {10, "100, 40, -1, 2, 2, 0, 4, 1"},
                 {1, "1234, 999, 2, -1, 0, 0, 7, 5"}});
  AddSums(false, {{1, "900000, 2, 3, 4, 5, 6, 7, 8"}, {3, "9, 10, 11, 12, 13, 14, 15, 16"}});

  const std::string expected = Expected("trunk_summary.html");
  EXPECT_EQ(site.Get("select?report=hist45d-switch-trunk-port-summary.htm"), expected);
  EXPECT_EQ(site.Get("switch-trunk-port-summary.htm"), expected) << "stored";
  EXPECT_TRUE(site.Events().empty());
}

}  // namespace
}  // namespace quillon
