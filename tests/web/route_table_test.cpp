// Which report a request yields: the order of the tests, where each of them looks, and
// the page of everything that no report knows.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/site.h"
#include "web/expected_pages.h"

namespace quillon {
namespace {

class RouteTable : public testing::Test {
 protected:
  RouteTable() {
    site.words.LangWord[2] = "access list";
    site.words.LangWord[3] = "trunk list";
    site.favIconData = "icon";
    site.installation.Write("WebReports/qws.css", "stylesheet");
    for (const char* name :
         {"disk-physical-top10-x.htm", "disk-virtual-top10-x.htm", "disk-windows-top10-x.htm",
          "disk-unix-top10-x.htm", "disk-mem-summary.htm"}) {
      site.installation.Write(std::string("WebReports/Cache/") + name, name);
    }
  }

  // What the answer to a request is: "default", "css", "icon", "access", "trunk", the
  // name of a stored page, or "nothing".
  std::string Answer(const std::string& request) {
    const auto client = site.Connect();
    const std::string response = site.Exchange(*client, request);
    client->Close();
    site.Settle();
    return response.empty() ? "nothing" : NameOf(response);
  }

  std::string NameOf(const std::string& response) const {
    if (response == DefaultResponse(site.render)) return "default";
    if (response == Response("text/css", "stylesheet")) return "css";
    if (response == Response("image/x-icon", "icon")) return "icon";
    if (response.find("<td width='190px'>access list</td>") != std::string::npos) return "access";
    if (response.find("<td width='190px'>trunk list</td>") != std::string::npos) return "trunk";
    const std::string page = Site::Body(response);
    const std::string name = page.substr(0, page.find(".htm") + 4);
    return response == ClosedResponse(site.render, name) ? name : "something else: " + response;
  }

  // The answer to a GET of the URL with a header line.
  std::string Get(const std::string& url, const std::string& header = "Host: test") {
    return Answer("GET " + url + " HTTP/1.1\r\n" + header + "\r\n\r\n");
  }

  void ForgetPage(const std::string& name) const {
    std::filesystem::remove(site.installation.path() + "/WebReports/Cache/" + name);
  }

  Site site;
};

TEST_F(RouteTable, AWordInTheUrlChoosesTheReport) {
  const struct {
    const char* url;
    const char* answer;
  } kCases[] = {
      {"/switch-access-port-top10-involume.htm", "access"},
      {"/switch-access-port-top10", "access"},
      {"/any/folder/switch-access-port-top10-inerrors.htm", "access"},
      {"/xswitch-access-port-top10x", "access"},
      {"/switch-trunk-port-top10-involume.htm", "trunk"},
      {"/disk-physical-top10-x.htm", "disk-physical-top10-x.htm"},
      {"/disk-virtual-top10-x.htm", "disk-virtual-top10-x.htm"},
      {"/disk-windows-top10-x.htm", "disk-windows-top10-x.htm"},
      {"/disk-unix-top10-x.htm", "disk-unix-top10-x.htm"},
      {"/disk-mem-summary.htm", "disk-mem-summary.htm"},
      {"/hist45d-disk-mem-summary.htm", "disk-mem-summary.htm"},
      {"/qws.css", "css"},
      {"/qws.css?theme=2", "css"},
      {"/favicon.ico", "icon"},
  };
  for (const auto& row : kCases) EXPECT_EQ(Get(row.url), row.answer) << row.url;
}

TEST_F(RouteTable, TheSelectionBoxReachesTheSameReports) {
  const struct {
    const char* option;
    const char* answer;
  } kCases[] = {
      {"none", "default"},
      {"switch-access-port-top10-inerrors.htm", "access"},
      {"switch-trunk-port-top10-inerrors.htm", "trunk"},
      {"disk-physical-top10-x.htm", "disk-physical-top10-x.htm"},
      {"disk-virtual-top10-x.htm", "disk-virtual-top10-x.htm"},
      {"disk-windows-top10-x.htm", "disk-windows-top10-x.htm"},
      {"disk-unix-top10-x.htm", "disk-unix-top10-x.htm"},
      {"hist45d-disk-mem-summary.htm", "disk-mem-summary.htm"},
  };
  for (const auto& row : kCases) {
    EXPECT_EQ(Get(std::string("/select?report=") + row.option), row.answer) << row.option;
  }
}

TEST_F(RouteTable, TheFirstTestThatHitsDecides) {
  const struct {
    const char* firstLine;
    const char* header;
    const char* answer;
  } kCases[] = {
      {"GET /switch-trunk-port-top10-x?switch-access-port-top10 HTTP/1.1", "", "access"},
      {"GET /disk-physical-top10-x-switch-access-port-top10 HTTP/1.1", "", "access"},
      {"GET /disk-mem-summary-switch-trunk-port-top10 HTTP/1.1", "", "trunk"},
      {"GET /switch-access-port-top10-a HTTP/1.1", "POST /search-mac-ip", "access"},
      {"GET /switch-trunk-port-top10-a HTTP/1.1", "GET /qws.css", "trunk"},
      {"GET /disk-unix-top10-x.htm HTTP/1.1", "GET /qws.css", "disk-unix-top10-x.htm"},
      {"GET /disk-unix-top10-x.htm HTTP/1.1", "GET /favicon.ico", "disk-unix-top10-x.htm"},
      {"GET /disk-unix-top10-missing.htm HTTP/1.1", "GET /qws.css", "nothing"},
      {"GET /favicon.ico HTTP/1.1", "GET /qws.css", "css"},
      {"GET /qws.css HTTP/1.1", "GET /favicon.ico", "css"},
  };
  for (const auto& row : kCases) {
    const std::string request = std::string(row.firstLine) + "\r\n" + row.header + "\r\n\r\n";
    EXPECT_EQ(Answer(request), row.answer) << request;
  }
}

TEST_F(RouteTable, StylesheetAndIconAreLookedForInTheWholeText) {
  EXPECT_EQ(Get("/unknown", "Referer: GET /qws.css"), "css");
  EXPECT_EQ(Get("/unknown", "Referer: GET /favicon.ico"), "icon");
  EXPECT_EQ(Answer("POST /unknown HTTP/1.1\r\n\r\nbody GET /favicon.ico"), "icon");
  EXPECT_EQ(Get("/x?GET /qws.css"), "css");
  EXPECT_EQ(Answer("\r\nGET /qws.css"), "css");
}

TEST_F(RouteTable, TheWordsOfReportsCountInTheFirstLineOnly) {
  for (const char* word :
       {"hist45-1-2.htm", "hist45d-switch-access-port-summary.htm", "-port-summary",
        "switch-access-port-top10-involume.htm", "switch-trunk-port-top10-involume.htm",
        "histdisk45-1-C_.htm", "histdisksearch45-1-C_-disk-search-1.htm",
        "disk-physical-top10-x.htm", "disk-virtual-top10-x.htm", "disk-windows-top10-x.htm",
        "disk-unix-top10-x.htm", "disk-mem-summary.htm"}) {
    EXPECT_EQ(Get("/", std::string("Referer: http://host/") + word), "default") << word;
  }
}

TEST_F(RouteTable, TheMethodCountsOnlyWhereARouteNamesIt) {
  EXPECT_EQ(Answer("POST /switch-access-port-top10-a HTTP/1.1\r\n\r\n"), "access");
  EXPECT_EQ(Answer("HEAD /disk-mem-summary.htm HTTP/1.1\r\n\r\n"), "disk-mem-summary.htm");
  EXPECT_EQ(Answer("switch-trunk-port-top10\r\n"), "trunk");
  EXPECT_EQ(Answer("POST /qws.css HTTP/1.1\r\n\r\n"), "default");
  EXPECT_EQ(Answer("HEAD /favicon.ico HTTP/1.1\r\n\r\n"), "default");
  EXPECT_EQ(Answer("GET  /qws.css HTTP/1.1\r\n\r\n"), "default");
  EXPECT_EQ(Answer("GET http://host/qws.css HTTP/1.1\r\n\r\n"), "default");
}

TEST_F(RouteTable, UnknownUrlsGetTheDefaultPage) {
  for (const char* url : {"/",
                          "",
                          "*",
                          "/index.html",
                          "/select",
                          "/select?report=",
                          "/select?report=none",
                          "/select?report=unknown",
                          "/Switch-Access-Port-Top10-InVolume.htm",
                          "/switch-access-port",
                          "/switch-access-port-top1",
                          "/SWITCH-TRUNK-PORT-TOP10",
                          "/Disk-Mem-Summary.htm",
                          "/disk-top10.htm",
                          "/disk-solaris-top10-x.htm",
                          "/disk-search-1.htm",
                          "/hist45",
                          "/hist45d-disk.htm",
                          "/histdisk.htm",
                          "/QWS.css",
                          "/qws",
                          "/Favicon.ico",
                          "/favicon.png",
                          "/search-mac-ip",
                          "/search-device-port-name",
                          "/WebReports/qws.css",
                          "/Quillon.mdb"}) {
    EXPECT_EQ(Get(url), "default") << url;
  }
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(RouteTable, TheDefaultPageIsTheSelectionBoxOnNoneAndNothingMore) {
  site.words.LangWord[1] = "choose";
  const std::string response = site.Get("");
  EXPECT_EQ(response, DefaultResponse(site.render));
  EXPECT_EQ(response.find("HTTP/1.0 200 OK\r\nContent-Type: text/html\r\n"), 0u);
  EXPECT_NE(response.find("<option selected='selected' value='none'>choose</option>\r\n"),
            std::string::npos);
  EXPECT_NE(response.find("<td width='580px'"), std::string::npos);
  EXPECT_EQ(response.find("class='footer'"), std::string::npos);
  const std::string end = "<br>\r\n</body>\r\n</html>";
  EXPECT_EQ(response.substr(response.size() - end.size()), end);
}

TEST_F(RouteTable, TheDefaultPageShowsTheSettingsOfItsMoment) {
  site.Get("");
  site.settings.CharSet = "UTF-8";
  site.words.HelpText = "help \xE4\xF6";
  site.words.LangWord[1] = "none \xC3\xA4";
  const std::string response = site.Get("");
  EXPECT_EQ(response, DefaultResponse(site.render));
  EXPECT_NE(response.find("content='text/html;charset=UTF-8'"), std::string::npos);
}

TEST_F(RouteTable, ASwitchListOfTheSelectionBoxIsTheListOfItsUrl) {
  site.installation.Sql("Reports.mdb",
                        "INSERT INTO VLAN VALUES (7, 'sw7', '10.0.0.7', 1, 3, 'Port 3', '100', '',"
                        " 'up', 'up', 1, '2024-05-02', '2024-05-02', 1, 2, 3, 4, 5, 6)");
  for (const std::string name :
       {"switch-access-port-top10-involume.htm", "switch-trunk-port-top10-outerrors.htm"}) {
    const std::string selected = site.Get("select?report=" + name);
    const std::string stored = site.installation.Read("WebReports/Cache/" + name);
    ForgetPage(name);
    EXPECT_EQ(site.Get(name), selected);
    EXPECT_EQ(site.installation.Read("WebReports/Cache/" + name), stored);
    EXPECT_EQ(selected, ClosedResponse(site.render, stored));
  }
}

TEST_F(RouteTable, ReportsStillToComeSendNothingAtAll) {
  for (const char* firstLine :
       {"GET /select?report=search-device-port-name", "GET /select?report=search-device-port-alias",
        "GET /select?report=search-mac-ip", "POST /search-mac-ip", "POST /search-device-port-name",
        "POST /search-device-port-alias", "GET /select?report=search-device-disk",
        "POST /search-device-disk"}) {
    EXPECT_EQ(Answer(std::string(firstLine) + " HTTP/1.1\r\n\r\n"), "nothing") << firstLine;
  }
}

}  // namespace
}  // namespace quillon
