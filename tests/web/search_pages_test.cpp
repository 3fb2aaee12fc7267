// Whole pages of the searches, from rows of the databases and a post as a browser sends it to the
// answer on the socket, compared byte for byte with stored ones. How their figures come about is
// told in data/pages/README.md.
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "support/report_rows.h"
#include "support/site.h"
#include "support/stored_text.h"
#include "web/expected_pages.h"

namespace quillon {
namespace {

using Clients = std::vector<std::unique_ptr<RawClient>>;

class SearchPages : public testing::Test {
 protected:
  // Volume in and out, broadcast, multicast, errors in and out, as SQL literals.
  using Figures = std::array<const char*, 6>;

  SearchPages() {
    site.NumberWords("W");
    site.period = {"2024-05-01&nbsp;&nbsp03:00", "2024-05-02&nbsp;&nbsp03:00"};
  }

  void Reports(const std::string& sql) const { site.installation.Sql("Reports.mdb", sql); }
  void History(const std::string& sql) const { site.installation.Sql("History.mdb", sql); }

  // An ordinary port of today but for this.
  void AddPort(int recNo, int ifIndex, const Figures& figures, const Columns& differing) const {
    Reports(InsertPort(With({{"RecNo", std::to_string(recNo)},
                             {"IfIndex", std::to_string(ifIndex)},
                             {"InHCOctetsMb24H", figures[0]},
                             {"OutHCOctetsMb24H", figures[1]},
                             {"InBroadCastPpm24H", figures[2]},
                             {"InMultiCastPpm24H", figures[3]},
                             {"InErrorsTot24H", figures[4]},
                             {"OutErrorsTot24H", figures[5]}},
                            differing)));
  }

  // An address seen on a port, in SQL literals.
  void AddAddress(int recNo, int ifIndex, const char* macAddr, const char* ipAddr,
                  const char* lastSeen) const {
    Reports(InsertRow("MAC", {{"RecNo", std::to_string(recNo)},
                              {"IfIndex", std::to_string(ifIndex)},
                              {"MacAddr", macAddr},
                              {"IpAddr", ipAddr},
                              {"LastSeen", lastSeen}}));
  }

  // A storage: server, its number and the storage, megabytes in all, free and used, share, trends.
  void AddStorage(const std::string& table, const char* device, int recNo,
                  const std::string& storage, const Figures& figures) const {
    History(InsertStorageOfDay(table, {{"RecNo", std::to_string(recNo)},
                                       {"DevName", device},
                                       {"StorDescr", storage},
                                       {"TotalM", figures[0]},
                                       {"FreeM", figures[1]},
                                       {"UsedM", figures[2]},
                                       {"UsedProc", figures[3]},
                                       {"Trend14d", figures[4]},
                                       {"Trend30d", figures[5]}}));
  }

  // The answer to a form's post on the connection of that number.
  std::string Post(int id, const std::string& action, const std::string& body) {
    Clients clients;
    while (static_cast<int>(clients.size()) < id) clients.push_back(site.Connect());
    const std::string head = "POST /" + action +
                             " HTTP/1.1\r\n"
                             "Host: reports.example:8080\r\n"
                             "Connection: keep-alive\r\n"
                             "Content-Length: " +
                             std::to_string(body.size()) +
                             "\r\n"
                             "Cache-Control: max-age=0\r\n"
                             "Origin: http://reports.example:8080\r\n"
                             "Content-Type: text/plain\r\n"
                             "User-Agent: Mozilla/5.0 (X11; Linux x86_64)\r\n"
                             "Accept: text/html,application/xhtml+xml;q=0.9,*/*;q=0.8\r\n"
                             "Referer: http://reports.example:8080/select?report=" +
                             action +
                             "\r\n"
                             "Accept-Language: de-DE,de;q=0.9\r\n\r\n";
    return site.Exchange(*clients.back(), head + body);
  }

  // Expects the answer to be the stored page, and that page without its end under that name in the
  // cache.
  void ExpectPage(const std::string& page, const std::string& cacheFile,
                  const std::string& answer) const {
    EXPECT_EQ(Response("text/html", StoredPage(page)), answer);
    const std::string end = StoredPiece("page_footer.html") + "</body>\r\n</html>";
    EXPECT_EQ(StoredPage(page), site.installation.Read("WebReports/Cache/" + cacheFile) + end);
    EXPECT_EQ(std::vector<std::string>{cacheFile}, site.installation.List("WebReports/Cache"));
  }

  Site site;
};

TEST_F(SearchPages, PortsByName) {
  site.settings.DatumFormat = "DD/MM/YYYY";
  site.words.LangWord[15] = "Ger\xE4t";
  site.words.LangWord[17] = "S\xF6k <'>";
  const Columns south = {{"DevName", "'Büro Süd \"A\" & <Söhne>'"}};
  const Columns north = {{"DevName", "'BÜRO Nord'"}};
  const Columns old = {{"DevName", "'Altes büro Ж→1'"}};
  const Columns blanks = {{"DevName", "' Büro '"}};
  const Figures any = {"1", "2", "3", "4", "5", "6"};
  AddPort(101, 10101, {"124200000", "113400000", "1234", "60", "12345", "0"},
          With(south, {{"IfDescr", "'Gi1/0/1'"},
                       {"IfAlias", "'O''Neil''s <b>'"},
                       {"IpAddr", "'10.0.0.101'"}}));
  AddPort(90, 1, any, {{"DevName", "'Büro'"}});
  AddPort(101, 10102, {"1234", "1534", "61", "-1", "1440", "1441"},
          With(south, {{"IfDescr", "'gi1/0/2 \"x\"'"}, {"IfAlias", "' both ends '"}}));
  AddPort(91, 1, any, {{"DevName", "NULL"}});
  AddPort(102, 1, {"10", "500", "60", "90", "2160", "3600"}, With(north, {{"IfDescr", "'GI0/1'"}}));
  AddPort(92, 1, any, With(north, {{"IfDescr", "'TenGi0/1'"}}));
  AddPort(102, 2, {"11", "5", "150", "1233", "2000000", "100.5"},
          With(north, {{"IfDescr", "'Gi0/2'"}}));
  AddPort(93, 1, any, {{"DevName", "'Buro Nord'"}});
  AddPort(103, 1, any,
          With(old, {{"IfDescr", "'Gi[1]%_'"},
                     {"VlanID", "-1"},
                     {"InOctetsDate", "'2024-05-01 23:59:59'"}}));
  AddPort(103, 2, any, With(old, {{"IfDescr", "'Gi'"}, {"InOctetsDate", "NULL"}}));
  AddPort(94, 1, any, With(old, {{"IfDescr", "NULL"}}));
  AddPort(
      104, 1, {"-1", "-1", "-1", "-1", "-1", "-1"},
      With(blanks, {{"IfAlias", "''"}, {"IfSpeed", "''"}, {"IfAdmin", "''"}, {"IfOper", "''"}}));
  AddPort(104, 2, {"0", "0", "0", "0", "0", "0"}, With(blanks, {{"IfDescr", "'Gi0/2'"}}));
  AddPort(105, 1, {"12344678", "999500", "0.5", "2.5", "0.5", "1.5"},
          {{"DevName", "'Büro " + std::string(300, 'x') + "'"}, {"IsTrunk", "TRUE"}});
  AddPort(2147483647, 2147483647, {"1499", "1500", "999999", "1000000", "1234567", "86400"},
          {{"DevName", "'Büro -10'"}, {"IfDescr", "'Gi&nbsp;0'"}, {"VlanID", "4094"}});
  AddPort(106, 1, any, north);
  AddPort(107, 1, any, north);
  AddAddress(101, 10101, "'00 1B 2C 3D 4E 01'", "'10.1.1.1'", "'2023-12-31 23:59:59'");
  AddAddress(101, 10101, "'00 1B 2C 3D 4E 99'", "'10.1.1.99'", "'2024-05-02 10:00:00'");
  AddAddress(102, 10102, "'00 1B 2C 3D 4E 98'", "'10.1.1.98'", "'2024-05-02 10:00:00'");
  AddAddress(102, 1, "'00 1b 2c 3d 4e 5f'", "''", "'2024-05-02 00:00:00'");
  AddAddress(102, 2, "'größe'", "'it''s'", "'2024-02-01 12:00:00'");
  AddAddress(103, 1, "''", "'<10.1.1.3>'", "'1899-12-30 00:00:00'");
  AddAddress(105, 1, "'00 1B 2C 3D 4E 05'", "'10.1.1.5'", "'2024-05-02 11:59:59'");

  const std::string answer = Post(1, "search-device-port-name",
                                  "DeviceName=  *B\xDCRO+*  \r\n"
                                  "PortName= gi* \r\n");
  ExpectPage("port_search.html", "switch-device-port-name-1.htm", answer);
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(SearchPages, PortsByAliasInUtf8) {
  site.clock.Set("2024-02-29 00:00:00");
  site.settings.CharSet = "UTF-8";
  site.settings.DatumFormat = "MM/DD/YYYY";
  site.period = {"", ""};
  site.words.LangWord[32] = "Bezeichnung Ж";
  const Columns today = {{"InOctetsDate", "'2024-02-29 00:00:00'"}, {"IfDescr", "'Fa0/1'"}};
  const Figures any = {"1", "2", "3", "4", "5", "6"};
  const auto add = [&](int recNo, const char* ipAddr, const char* alias) {
    AddPort(recNo, 1, any, With(today, {{"IpAddr", ipAddr}, {"IfAlias", alias}}));
  };
  add(190, "'10.0.3.7'", "NULL");
  AddPort(201, 1, {"999", "1000", "575", "300", "7200", "5040"},
          With(today, {{"DevName", "'Zürich-Ж'"},
                       {"IpAddr", "'10.0.3.7'"},
                       {"IfAlias", "'\"Zur <ärzte>\"'"}}));
  add(191, "'10.1.3.7'", "'\"Zur <ärzte>\"'");
  add(192, "'10.0.3.77'", "'\"Zur <ärzte>\"'");
  add(193, "'10.0.3.7'", "'Zur \"<ärzte>'");
  add(194, "'10.0.3.7'", "'\"Zur <Garten>'");
  AddPort(202, 1, any,
          {{"DevName", "'it''s <Graz>'"},
           {"IpAddr", "'10.0.12.7'"},
           {"IfDescr", "'Fa0/1'"},
           {"IfAlias", "'\"<жук & Käfer'"},
           {"InOctetsDate", "'2024-02-28 23:59:59'"}});
  AddPort(
      195, 1, any,
      With(today, {{"DevName", "'10.0.3.7'"}, {"IpAddr", "'192.0.2.1'"}, {"IfAlias", "'\"<ä'"}}));
  AddPort(203, 7, {"16200", "27000", "210", "270", "6480", "7920"},
          With(today, {{"DevName", "'Linz €'"},
                       {"IpAddr", "'10.0.200.7'"},
                       {"IfDescr", "''"},
                       {"IfAlias", "'\"x <otto'"},
                       {"IsTrunk", "TRUE"}}));
  AddAddress(201, 1, "'00 1B 2C 3D 4E 0A'", "'10.0.9.1'", "'2024-02-29 08:00:00'");

  const std::string answer = Post(2, "search-device-port-alias",
                                  "DeviceName=10.0.*.7\r\n"
                                  "PortName=\"*<[ÄOЖ]*\r\n");
  ExpectPage("alias_search.html", "switch-device-port-alias-2.htm", answer);
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(SearchPages, AddressesSeenLastFirst) {
  site.words.LangWord[33] = "MAC <&> IP";
  AddPort(9, 1, {"27", "81", "1000", "999", "1", "2"},
          {{"DevName", "'Wien'"}, {"IfDescr", "'Fa0/1'"}});
  AddPort(7, 4, {"54000000", "10800000", "61.5", "10", "1300.5", "100"},
          {{"DevName", "'Zürich <Kern>'"}, {"IfDescr", "'Te1/1 ''Ring'''"}, {"IsTrunk", "TRUE"}});
  AddPort(8, 10105, {"1", "2", "3", "4", "5", "6"},
          {{"DevName", "'O''Neil''s switch'"},
           {"IfDescr", "'Fa0/5'"},
           {"VlanID", "-1"},
           {"InOctetsDate", "'2024-05-01 12:00:00'"}});
  AddAddress(7, 4, "'00 1B 2D 00 00 00'", "'10.0.0.9'", "'2024-05-02 11:00:00'");
  AddAddress(7, 4, "'00 1B 2C 3D 4E 01'", "'10.0.0.1'", "'2024-04-30 10:00:00'");
  AddAddress(7, 4, "'00 1b 2c aa bb cc'", "''", "'2024-05-02 09:00:00'");
  AddAddress(99, 1, "'00 1B 2C 00 00 99'", "'10.0.0.99'", "'2024-05-01 09:00:00'");
  AddAddress(8, 10105, "'00 1B 2C 3D 4E 02'", "'größe Ж'", "'2024-05-01 08:00:00'");
  AddAddress(9, 1, "'00 1B 2C 3D 4E 03'", "'10.0.0.3'", "'2024-05-01 08:00:00'");
  AddAddress(9, 1, "'00:1B:2C:00:00:01'", "'10.0.0.4'", "'2024-05-02 11:00:00'");
  AddAddress(9, 1, "'A0 00 1B 2C 3D 4E'", "'10.0.0.5'", "'2024-05-02 11:00:00'");
  AddAddress(8, 10105, "'00 1B 2C 3D 4E 04 <x>'", "'it''s'", "'2023-12-31 23:59:59'");

  const std::string answer = Post(19, "search-mac-ip", "MacIpName=00:1b:2C:*\r\n");
  ExpectPage("mac_search.html", "switch-mac-ip-19.htm", answer);
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(SearchPages, DisksByFreeMegabytes) {
  site.clock.Set("2024-05-02 22:59:59");
  site.words.LangWord[68] = "Festplatte & <R\xE4ume>";
  History("DELETE FROM Disk_HistCtrl;" +
          InsertStorageControl("'2024-05-02 00:30:00'", "'Disk_Day09'") +
          InsertStorageControl("'2024-05-01 00:30:00'", "'Disk_Day07'") +
          InsertStorageControl("'2024-05-01 03:10:00'", "'Disk_Day08'"));
  const Figures any = {"9", "2", "7", "78", "1", "1"};
  AddStorage("Disk_Day08", "'Särv-1 of another table'", 1, "'C:'", any);
  AddStorage("Disk_Day09", "'Särv-1 of today'", 1, "'C:'", any);
  const std::string table = "Disk_Day07";
  AddStorage(table, "'särv-3 \"€\"'", 903, "'/'",
             {"1234567890", "1.5", "1234567890", "100", "1", "-1"});
  AddStorage(table, "'SÄrv-5y'", 905, "'/home/my " + std::string(200, 'x') + " /end'",
             {"99999", "12499", "87500", "87.5", "2", "-2.5"});
  AddStorage(table, "'Särv-4'", 910, "'C:'", any);
  AddStorage(table, "'SÄRV-2 <b>'", 902, "'/var/log'", {"500", "0", "500", "100", "12.25", "100"});
  AddStorage(table, "'Särv-3Xa'", 911, "'C:'", {"NULL", "0", "NULL", "NULL", "NULL", "NULL"});
  AddStorage(table, "'Särv-1a ''Nord'''", 901, "'Physical'",
             {"8192", "0", "8192", "100", "0", "0"});
  AddStorage(table, "'Särv-1a ''Nord'''", 901, "'Virtual'",
             {"0.9", "0.4", "0.5", "55.6", "0.4", "-0.4"});
  AddStorage(table, "'Särv-7b'", 906, "'/'", {"20000", "12500", "7500", "37.5", "0", "0"});
  AddStorage(table, "'Särv-8b'", 907, "'/'", {"NULL", "123456.75", "1", "0", "0", "0"});
  AddStorage(table, "'Särv-1a ''Nord'''", 901, "'C:\\ Label:Süd  Serial 1a2b'",
             {"-1", "-1", "-1", "-1", "-1", "0"});
  AddStorage(
      table, "'särv-3 \"€\"'", 903, "'physical'",
      {"12344678", "0.5", "12344678", "99.99999", "33.333333333333336", "-33.333333333333336"});
  AddStorage(table, "'Sarv-1a'", 912, "'C:'", any);
  AddStorage(table, "'Särv-4 '", 904, "'D: & <Data>'", {"999.5", "999.5", "0.5", "0", "0", "0"});
  AddStorage(table, "'Särv-4 '", 904, "''", {"9999500", "999", "9998501", "99", "0.01", "-0.01"});
  AddStorage(table, "'xSärv-1a'", 913, "'C:'", any);
  AddStorage(table, "'Särv-99'", 2147483647, "'\\\\host\\a:b/c'",
             {"10000", "9999", "1", "0.01", "1000000", "-1000000"});

  const std::string answer = Post(10, "search-device-disk",
                                  "DeviceName=S\xC4rv-#[!x]*\r\n"
                                  "DiskName=\r\n"
                                  "OrderBy=freebytes-asc\r\n");
  ExpectPage("disk_search.html", "disk-search-10.htm", answer);
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(SearchPages, QuoteInASearchTextGivesAnEmptyTable) {
  AddPort(7, 1, {"1", "2", "3", "4", "5", "6"}, {{"DevName", "'O''Neil''s <b>\"Kärn\"</b>'"}});
  const std::string answer = Post(1, "search-device-port-name",
                                  "DeviceName=O'Neil's <b>\"K\xE4rn\"</b>\r\n"
                                  "PortName=\r\n");
  ExpectPage("quote_search.html", "switch-device-port-name-1.htm", answer);
  ASSERT_EQ(1u, site.Events().size());
  EXPECT_EQ(0u, site.Events()[0].find("1\tmodSelectSql_SqlSearchDevicePort\t"));
}

TEST_F(SearchPages, EmptyForms) {
  site.words.LangWord[15] = "Ger\xE4t <'>";
  site.words.HelpText = "<p>Hilfe f\xFCr \"alle\"</p>\r\n";
  const struct {
    std::string report;
    std::string page;
  } forms[] = {{"search-device-port-name", "port_form.html"},
               {"search-device-port-alias", "alias_form.html"},
               {"search-mac-ip", "mac_form.html"},
               {"search-device-disk", "disk_form.html"}};
  for (const auto& form : forms) {
    EXPECT_EQ(Response("text/html", StoredPage(form.page)),
              site.Get("select?report=" + form.report));
  }
  EXPECT_TRUE(site.installation.List("WebReports/Cache").empty());
  EXPECT_TRUE(site.Events().empty());
}

}  // namespace
}  // namespace quillon
