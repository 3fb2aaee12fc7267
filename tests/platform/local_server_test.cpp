// The socket file: who may open it, what counts as a request, and how it is answered. What clients
// do to each other is in local_server_clients_test.
#include "platform/local_server.h"

#include <sys/stat.h>

#include <fstream>
#include <iterator>

#include "platform/local_server_fixture.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

TEST_F(LocalServerTest, OneLineAsksLinesAnswerAndTheServerHangsUp) {
  onRequest = [](const std::string&, const LocalServer::Answer& answer) {
    answer("first");
    answer("");
    answer("last");
  };
  Open();
  EXPECT_EQ(Exchange("a request\twith words\n"), "first\n\nlast\n");
  EXPECT_EQ(requests, Lines{"a request\twith words"});
}

TEST_F(LocalServerTest, RequestWithoutAnAnswerIsHungUpOnAllTheSame) {
  onRequest = [](const std::string&, const LocalServer::Answer&) {};
  Open();
  EXPECT_EQ(Exchange("status\n"), "");
  EXPECT_EQ(requests, Lines{"status"});
}

TEST_F(LocalServerTest, FileIsForItsOwnerAlone) {
  const mode_t before = umask(0);
  Open();
  EXPECT_EQ(umask(before), 0u);
  EXPECT_TRUE(fs::is_socket(SocketPath()));
  EXPECT_EQ(fs::status(SocketPath()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(LocalServerTest, FileGoesWithTheServer) {
  Open();
  server.reset();
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(LocalServerTest, ServerThatNeverOpenedTakesNoFileAway) {
  LeaveSocketFile();
  server.reset();
  EXPECT_TRUE(fs::is_socket(SocketPath()));
}

TEST_F(LocalServerTest, FileOfAnEarlierProcessIsReplaced) {
  LeaveSocketFile();
  ASSERT_TRUE(fs::is_socket(SocketPath()));
  EXPECT_THROW(Connect(), std::runtime_error);
  Open();
  EXPECT_EQ(Exchange("status\n"), "done status\n");
}

TEST_F(LocalServerTest, AnythingElseOfThatNameIsAFailureAndStays) {
  struct Case {
    const char* kind;
    std::function<void()> make;
  };
  const Case cases[] = {
      {"file", [this] { std::ofstream(SocketPath()) << "kept"; }},
      {"empty file", [this] { std::ofstream(SocketPath()).flush(); }},
      {"folder", [this] { fs::create_directory(SocketPath()); }},
      {"pipe", [this] { mkfifo(SocketPath().c_str(), 0600); }},
      {"link to nothing", [this] { fs::create_symlink("nothing", SocketPath()); }},
      {"link to a socket",
       [this] {
         LeaveSocketFile();
         fs::rename(SocketPath(), folder.path() + "/elsewhere");
         fs::create_symlink("elsewhere", SocketPath());
       }},
  };
  for (const Case& row : cases) {
    row.make();
    const fs::file_type before = fs::symlink_status(SocketPath()).type();
    const auto entries = [this] {
      return std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator());
    };
    const auto entriesBefore = entries();
    EXPECT_NE(FailureOfOpen(folder.path()).find(kTestSocket), std::string::npos) << row.kind;
    EXPECT_EQ(fs::symlink_status(SocketPath()).type(), before) << row.kind;
    EXPECT_EQ(entries(), entriesBefore) << row.kind;
    if (std::string(row.kind) == "file") {
      EXPECT_EQ(fs::file_size(SocketPath()), 4u);
    }
    fs::remove(SocketPath());
  }
  server->Open(folder.path(), kTestSocket);
  EXPECT_EQ(Exchange("status\n"), "done status\n");
}

TEST_F(LocalServerTest, FileThatWasRefusedStaysWhenTheServerGoes) {
  std::ofstream(SocketPath()) << "kept";
  EXPECT_THROW(Open(), SocketFailure);
  server.reset();
  EXPECT_EQ(fs::file_size(SocketPath()), 4u);
}

TEST_F(LocalServerTest, FolderThatIsNotThereIsAFailure) {
  EXPECT_NE(FailureOfOpen(folder.path() + "/none"), "");
}

TEST_F(LocalServerTest, NameThatCannotBeMadeIsAFailureAndAnotherOneIsMade) {
  EXPECT_THROW(server->Open(folder.path(), "none/" + std::string(kTestSocket)), SocketFailure);
  Open();
  EXPECT_EQ(Exchange("status\n"), "done status\n");
}

TEST_F(LocalServerTest, PathMayBeLongerThanAnAddress) {
  std::string directory = folder.path();
  for (int level = 0; level < 4; ++level) directory += "/" + std::string(60, 'd');
  fs::create_directories(directory);
  const fs::path place = fs::current_path();
  server->Open(directory, kTestSocket);
  EXPECT_EQ(fs::current_path(), place);
  EXPECT_TRUE(fs::is_socket(directory + "/" + kTestSocket));
  EXPECT_EQ(fs::status(directory + "/" + kTestSocket).permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
  LocalClient client(directory);
  client.Send("status\n");
  EXPECT_TRUE(Until([&] { return client.HungUpOn(); }));
  EXPECT_EQ(client.Received(), "done status\n");
  server.reset();
  EXPECT_TRUE(fs::is_empty(directory));
}

TEST_F(LocalServerTest, RequestMayComeInPieces) {
  Open();
  const auto client = Connect();
  for (const char piece : std::string("import")) {
    client->Send(std::string(1, piece));
    Settle();
    EXPECT_EQ(requests, Lines{});
    EXPECT_FALSE(client->HungUpOn());
  }
  client->Send("\n");
  EXPECT_TRUE(Until([&] { return client->HungUpOn(); }));
  EXPECT_EQ(client->Received(), "done import\n");
}

TEST_F(LocalServerTest, LongestRequestIsCarriedOut) {
  Open();
  const std::string request(LocalServer::kLongestRequest - 1, 'x');
  EXPECT_EQ(Exchange(request + "\n"), "done " + request + "\n");
}

TEST_F(LocalServerTest, NoiseIsHungUpOnAndCarriesOutNothing) {
  std::string bytes;
  for (int n = 0; n < 1024 * 1024; ++n) bytes += static_cast<char>(n % 251);
  std::erase(bytes, '\n');
  const std::string noises[] = {
      std::string(LocalServer::kLongestRequest + 1, 'x') + "\n",
      std::string(1024 * 1024, 'x'),
      std::string(1024 * 1024, 'x') + "\nstatus\n",
      std::string(1024 * 1024, '\0'),
      bytes,
  };
  Open();
  for (const std::string& noise : noises) {
    const auto client = Connect();
    Flood(*client, noise);
    EXPECT_TRUE(Until([&] { return client->HungUpOn(); }));
    EXPECT_EQ(client->Received(), "");
  }
  EXPECT_EQ(requests, Lines{});
  EXPECT_EQ(Exchange("status\n"), "done status\n");
}

TEST_F(LocalServerTest, OfTwoRequestsInOneWriteTheFirstIsCarriedOut) {
  Open();
  EXPECT_EQ(Exchange("status\nimport\n"), "done status\n");
  Settle();
  EXPECT_EQ(requests, Lines{"status"});
}

TEST_F(LocalServerTest, BytesThatComeDuringAnAnswerAreNoRequest) {
  Open();
  const auto client = Connect();
  onRequest = [&](const std::string&, const LocalServer::Answer& answer) {
    client->Send("import\n");
    loop.DelayMs(50);
    answer("done");
  };
  client->Send("status\n");
  EXPECT_TRUE(Until([&] { return client->HungUpOn(); }));
  Settle();
  EXPECT_EQ(client->Received(), "done\n");
  EXPECT_EQ(requests, Lines{"status"});
}

}  // namespace
}  // namespace quillon
