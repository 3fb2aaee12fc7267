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
          "disk-unix-top10-x.htm", "disk-mem-summary.htm", "switch-access-port-summary.htm"}) {
      site.installation.Write(std::string("WebReports/Cache/") + name, name);
    }
  }

  struct Search {
    const char* words;   // of its form and of its post
    const char* form;    // what its empty form is called here
    const char* result;  // the file that keeps what it finds
    int width;           // of the selector on its form
  };
  static constexpr Search kSearches[] = {
      {"search-device-port-name", "name form", "switch-device-port-name-1.htm", 270},
      {"search-device-port-alias", "alias form", "switch-device-port-alias-1.htm", 270},
      {"search-mac-ip", "mac form", "switch-mac-ip-1.htm", 270},
      {"search-device-disk", "disk form", "disk-search-1.htm", 250}};
  // The fields of all searches; on the network of these tests they find nothing.
  static inline const std::string kFields =
      "\r\nMacIpName=x\r\nDeviceName=x\r\nPortName=x\r\nDiskName=x\r\nOrderBy=usedpercent-desc\r\n";

  // What the answer to a request is: "default", "css", "icon", "access", "trunk", "mac form", the
  // name of a stored page, also of one that the request has stored, or "nothing".
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
    for (const Search& search : kSearches) {
      if (IsForm(response, search)) return search.form;
      if (IsStoredResult(response, search)) return search.result;
    }
    const std::string page = Site::Body(response);
    const std::string name = page.substr(0, page.find(".htm") + 4);
    return response == ClosedResponse(site.render, name) ? name : "something else: " + response;
  }

  bool IsForm(const std::string& response, const Search& search) const {
    std::string begin;
    TopHeader_Begin(site.render, search.width, search.words, begin);
    std::string end = "<br>\r\n";
    Page_End(site.render, end);
    const std::string page = Site::Body(response);
    return page.starts_with(begin) && page.ends_with(end) &&
           page.find("class='tableData'") == std::string::npos;
  }

  // Forgets the result, so that the next request is not taken for its search.
  bool IsStoredResult(const std::string& response, const Search& search) const {
    const std::string stored =
        site.installation.Read(std::string("WebReports/Cache/") + search.result);
    if (stored.empty() || response != ClosedResponse(site.render, stored)) return false;
    ForgetPage(search.result);
    return true;
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

TEST_F(RouteTable, ASearchIsChosenByItsWordsInTheWholeText) {
  for (const auto& search : kSearches) {
    const std::string form = std::string("GET /select?report=") + search.words;
    const std::string post = std::string("POST /") + search.words;
    for (const char* before : {"", "GET /unknown HTTP/1.1\r\nX: ", "\r\n", "x"}) {
      EXPECT_EQ(Answer(before + form + kFields), search.form) << before << form;
      EXPECT_EQ(Answer(before + post + kFields), search.result) << before << post;
    }
    for (const char* behind : {" HTTP/1.1", "", "&x=1 HTTP/1.1", ".htm", "x", "/"}) {
      EXPECT_EQ(Answer(form + behind + kFields), search.form) << form << behind;
      EXPECT_EQ(Answer(post + behind + kFields), search.result) << post << behind;
    }
  }
}

TEST_F(RouteTable, OtherSpellingsOfASearchGetTheDefaultPage) {
  for (const auto& search : kSearches) {
    const std::string words = search.words;
    for (const std::string& line :
         {"GET /" + words, "POST /select?report=" + words, "HEAD /select?report=" + words,
          "get /select?report=" + words, "GET  /select?report=" + words,
          "GET /select?x=1&report=" + words, "GET /any/select?report=" + words,
          "GET /select?Report=" + words, "GET /select?report=" + words.substr(0, words.size() - 1),
          "PUT /" + words, "post /" + words, "POST  /" + words, "POST /any/" + words,
          "POST http://host/" + words, "POST /S" + words.substr(1),
          "POST /" + words.substr(0, words.size() - 1)}) {
      EXPECT_EQ(Answer(line + " HTTP/1.1" + kFields), "default") << line;
    }
  }
}

TEST_F(RouteTable, SearchesHaveTheirPlaceAmongTheOtherReports) {
  const std::string nameForm = "GET /select?report=search-device-port-name";
  const std::string aliasForm = "GET /select?report=search-device-port-alias";
  const std::string macForm = "GET /select?report=search-mac-ip";
  const std::string macPost = "POST /search-mac-ip";
  const std::string namePost = "POST /search-device-port-name";
  const std::string aliasPost = "POST /search-device-port-alias";
  const std::string diskForm = "GET /select?report=search-device-disk";
  const std::string diskPost = "POST /search-device-disk";
  const struct {
    std::string firstLine;
    std::string other;
    std::string answer;
  } kCases[] = {
      {"GET /hist45-1.htm", namePost, "nothing"},
      {"GET /hist45d-switch-access-port-summary.htm", macPost, "switch-access-port-summary.htm"},
      {"GET /switch-access-port-top10-a", nameForm, "access"},
      {"GET /switch-trunk-port-top10-a", nameForm, "trunk"},
      {aliasForm, nameForm, "name form"},
      {macForm, aliasForm, "alias form"},
      {macPost, macForm, "mac form"},
      {namePost, macPost, "switch-mac-ip-1.htm"},
      {aliasPost, namePost, "switch-device-port-name-1.htm"},
      {"GET /histdisk45-1-C_-disk-mem-summary.htm", aliasPost, "switch-device-port-alias-1.htm"},
      {"GET /histdisksearch45-1.htm", aliasPost, "switch-device-port-alias-1.htm"},
      {"GET /disk-physical-top10-x.htm", macForm, "mac form"},
      {"GET /disk-mem-summary.htm", macPost, "switch-mac-ip-1.htm"},
      {"GET /histdisk45-1.htm", diskForm, "nothing"},
      {"GET /histdisksearch45-1.htm", diskPost, "nothing"},
      {"GET /disk-unix-top10-x.htm", diskForm, "disk-unix-top10-x.htm"},
      {"GET /disk-mem-summary.htm", diskPost, "disk-mem-summary.htm"},
      {diskPost, namePost, "switch-device-port-name-1.htm"},
      {diskPost, diskForm, "disk form"},
      {"GET /qws.css", diskPost, "disk-search-1.htm"},
      {"GET /favicon.ico", diskForm, "disk form"},
  };
  for (const auto& row : kCases) {
    for (const char* between : {" HTTP/1.1\r\nX: ", " HTTP/1.1\r\nHost: test\r\n\r\n"}) {
      const std::string request = row.firstLine + between + row.other + kFields;
      EXPECT_EQ(Answer(request), row.answer) << request;
    }
  }
}

TEST_F(RouteTable, TheSelectionBoxReachesTheFormsOfTheSearches) {
  for (const auto& search : kSearches) {
    EXPECT_EQ(Get(std::string("/select?report=") + search.words), search.form);
  }
}

}  // namespace
}  // namespace quillon
