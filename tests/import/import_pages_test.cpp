// The site while an import runs: it is answered in the pauses.
#include <gtest/gtest.h>

#include "import/import.h"
#include "support/report_rows.h"
#include "support/site.h"
#include "web/expected_pages.h"

namespace quillon {
namespace {

class ImportPagesTest : public testing::Test {
 protected:
  ImportPagesTest() {
    site.favIconData = "icon";
    site.installation.Sql("Reports.mdb", InsertPort());
    site.installation.Sql("History.mdb",
                          "UPDATE General_Info SET LastReport = '2024-05-02 03:10:00',"
                          " ReportStart = 'start of today', ReportEnd = 'end of today'");
  }

  // What the client has got by the end of an import in whose pauses its request arrived, and
  // nothing else was served behind it.
  std::string AnswerOfAnImport(const std::string& request) {
    const auto client = site.Connect();
    client->Send(request);
    bool result = false;
    Import(site.imports, result);
    EXPECT_TRUE(result);
    return client->ReceivedNow();
  }

  Site site;
};

TEST_F(ImportPagesTest, RequestIsAnsweredInAPause) {
  EXPECT_EQ(AnswerOfAnImport("GET /favicon.ico HTTP/1.1\r\n\r\n"),
            Response("image/x-icon", "icon"));
}

TEST_F(ImportPagesTest, ReportOfAPauseShowsThePeriodAndThePortsOfToday) {
  const std::string page =
      AnswerOfAnImport("GET /switch-access-port-top10-involume.htm HTTP/1.1\r\n\r\n");
  EXPECT_TRUE(page.starts_with("HTTP/1.0 200 OK\r\n"));
  for (const char* text : {">start of today<", ">end of today<", ">Core</a>"}) {
    EXPECT_NE(page.find(text), std::string::npos) << text;
  }
  EXPECT_EQ(site.Events(), std::vector<std::string>{});
}

TEST_F(ImportPagesTest, ClientThatLeavesInAPauseDisturbsNothing) {
  const auto client = site.Connect();
  site.loop.Post([&] { client->Close(); });
  EXPECT_EQ(AnswerOfAnImport("GET /favicon.ico HTTP/1.1\r\n\r\n"),
            Response("image/x-icon", "icon"));
  EXPECT_FALSE(site.tcpServer.Connected(1));
  EXPECT_EQ(site.Events(), std::vector<std::string>{});
}

}  // namespace
}  // namespace quillon
