// The client of the fuzzers: what it hands back, and what it calls a finding.
#include "asking_client.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "web/expected_pages.h"

namespace quillon::fuzz {
namespace {

const std::string kScan = Site::Request("login.cgi");
const std::string kFailure = "no line end";  // whose event waits

class AskingClientTest : public testing::Test {
 protected:
  // In the next wait.
  void DropSoon() {
    site_.loop.Post([this] { site_.tcpServer.Drop(1); });
  }

  Site site_;
  AskingClient client_{site_};
};

TEST_F(AskingClientTest, HandsBackTheAnswers) {
  const std::string page = DefaultResponse(site_.render);
  EXPECT_EQ(client_.Ask({Site::Request("x")}), page);
  EXPECT_EQ(client_.Ask({Site::Request("x"), Site::Request("y")}), page + page);
}

TEST_F(AskingClientTest, IsDroppedWhereItScansForGapsAndRequestsAreLogged) {
  const std::string page = DefaultResponse(site_.render);
  EXPECT_EQ(client_.Ask({kScan}), page);
  site_.settings.DebugMode = true;
  EXPECT_EQ(client_.Ask({kScan}), "");
  EXPECT_EQ(client_.Ask({Site::Request("x")}), page);
}

TEST_F(AskingClientTest, CallsAnyOtherDropAFinding) {
  client_.Ask({});  // it is connected
  DropSoon();
  EXPECT_THROW(client_.Ask({kFailure}), std::logic_error);
  client_.Ask({});
  site_.settings.DebugMode = true;
  DropSoon();
  EXPECT_THROW(client_.Ask({kFailure}), std::logic_error);
}

}  // namespace
}  // namespace quillon::fuzz
