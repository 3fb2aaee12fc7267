// Notices on real sockets, and what the environment says of the service manager.
#include "platform/service_notices.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>

#include "platform/failure.h"
#include "platform/no_descriptors_left.h"
#include "support/datagram_sockets.h"
#include "support/environment.h"

namespace quillon {
namespace {

using std::chrono::milliseconds;
using Lines = std::vector<std::string>;

class ServiceNoticesTest : public testing::Test {
 protected:
  Environment environment{{"NOTIFY_SOCKET", "WATCHDOG_USEC", "WATCHDOG_PID"}};
};

TEST_F(ServiceNoticesTest, NoticeIsOneDatagramToTheSocket) {
  for (const NoticeSocket::Kind kind : {NoticeSocket::Kind::kFile, NoticeSocket::Kind::kAbstract}) {
    NoticeSocket socket(kind);
    environment.Set("NOTIFY_SOCKET", socket.name());
    const ServiceNotices notices;
    notices.Send("READY=1");
    notices.Send("STATUS=one\nSTATUS=two");
    EXPECT_EQ(socket.Arrived(), (Lines{"READY=1", "STATUS=one\nSTATUS=two"})) << socket.name();
  }
}

TEST_F(ServiceNoticesTest, LongNoticeArrivesWhole) {
  NoticeSocket socket;
  environment.Set("NOTIFY_SOCKET", socket.name());
  const std::string notice = "STATUS=" + std::string(10'000, 'x');
  ServiceNotices().Send(notice);
  EXPECT_EQ(socket.Arrived(), Lines{notice});
}

TEST_F(ServiceNoticesTest, WithoutASocketNothingIsSent) {
  const ServiceNotices notices;
  EXPECT_NO_THROW(notices.Send("READY=1"));
}

TEST_F(ServiceNoticesTest, EmptyNameIsNoSocket) {
  environment.Set("NOTIFY_SOCKET", "");
  const ServiceNotices notices;
  EXPECT_NO_THROW(notices.Send("READY=1"));
}

TEST_F(ServiceNoticesTest, SocketThatIsNotThereFails) {
  const TemporaryFolder folder;
  const std::string names[] = {
      folder.path() + "/missing",
      folder.path() + "/missing/notices",
      folder.path(),  // no socket
      "@quillon-test-that-nobody-holds",
      folder.path() + "/" + std::string(108, 'x'),  // longer than the system's addresses
      "@" + std::string(108, 'x'),
  };
  for (const std::string& name : names) {
    environment.Set("NOTIFY_SOCKET", name);
    const ServiceNotices notices;
    EXPECT_THROW(notices.Send("READY=1"), SocketFailure) << name;
  }
}

// A name that is too long must not reach the socket of its beginning.
TEST_F(ServiceNoticesTest, NameIsNotCut) {
  const TemporaryFolder folder;
  const std::string longName = folder.path() + "/" + std::string(200, 'x');
  environment.Set("NOTIFY_SOCKET", longName);
  EXPECT_THROW(ServiceNotices().Send("READY=1"), SocketFailure);
  NoticeSocket socket(NoticeSocket::Kind::kAbstract);
  environment.Set("NOTIFY_SOCKET", socket.name() + std::string(200, 'x'));
  EXPECT_THROW(ServiceNotices().Send("READY=1"), SocketFailure);
  EXPECT_EQ(socket.Arrived(), Lines{});
}

TEST_F(ServiceNoticesTest, SocketThatWentFailsAndSaysWhy) {
  NoticeSocket socket;
  environment.Set("NOTIFY_SOCKET", socket.name());
  const ServiceNotices notices;
  notices.Send("READY=1");
  socket.Close();
  try {
    notices.Send("STOPPING=1");
    FAIL() << "sent to a socket that is closed";
  } catch (const SocketFailure& failure) {
    EXPECT_STRNE(failure.what(), "");
  }
}

TEST_F(ServiceNoticesTest, NoticeWithoutADescriptorFailsAndTheNextOneArrives) {
  if (kSanitized) GTEST_SKIP() << "sanitizers need descriptors";
  NoticeSocket socket;
  environment.Set("NOTIFY_SOCKET", socket.name());
  const ServiceNotices notices;
  {
    const NoDescriptorsLeft none;
    EXPECT_THROW(notices.Send("READY=1"), SocketFailure);
  }
  notices.Send("STATUS=up");
  EXPECT_EQ(socket.Arrived(), Lines{"STATUS=up"});
}

TEST_F(ServiceNoticesTest, SocketIsTheOneOfTheConstruction) {
  NoticeSocket socket;
  environment.Set("NOTIFY_SOCKET", socket.name());
  const ServiceNotices notices;
  environment.Set("NOTIFY_SOCKET", std::nullopt);
  notices.Send("READY=1");
  EXPECT_EQ(socket.Arrived(), Lines{"READY=1"});
}

TEST_F(ServiceNoticesTest, WatchdogPeriodIsInMicroseconds) {
  struct Case {
    std::optional<std::string> period;
    std::optional<milliseconds> expected;
  };
  const Case cases[] = {
      {"30000000", milliseconds(30'000)},
      {"2000000", milliseconds(2000)},
      {"1000", milliseconds(1)},
      {"86400000000", milliseconds(86'400'000)},
      {std::nullopt, std::nullopt},
      {"", std::nullopt},
      {"0", std::nullopt},
      {"-30000000", std::nullopt},
      {"soon", std::nullopt},
      {"30s", std::nullopt},
      {"30000000x", std::nullopt},
      {"1e6", std::nullopt},
      {"0x1000000", std::nullopt},
      {"99999999999999999999999999", std::nullopt},
  };
  const NoticeSocket socket;
  environment.Set("NOTIFY_SOCKET", socket.name());
  for (const Case& row : cases) {
    environment.Set("WATCHDOG_USEC", row.period);
    EXPECT_EQ(ServiceNotices().WatchdogPeriod(), row.expected) << row.period.value_or("unset");
  }
}

TEST_F(ServiceNoticesTest, WatchdogOfAnotherProcessIsNone) {
  struct Case {
    std::optional<std::string> process;
    std::optional<milliseconds> expected;
  };
  const Case cases[] = {
      {std::to_string(getpid()), milliseconds(2000)},
      {std::nullopt, milliseconds(2000)},
      {std::to_string(getppid()), std::nullopt},
      {"1", std::nullopt},
      {"0", std::nullopt},
      {"-" + std::to_string(getpid()), std::nullopt},
      {std::to_string(getpid()) + "x", std::nullopt},
      {"self", std::nullopt},
      {"99999999999999999999999999", std::nullopt},
  };
  const NoticeSocket socket;
  environment.Set("NOTIFY_SOCKET", socket.name());
  for (const Case& row : cases) {
    environment.Set("WATCHDOG_USEC", "2000000");
    environment.Set("WATCHDOG_PID", row.process);
    EXPECT_EQ(ServiceNotices().WatchdogPeriod(), row.expected) << row.process.value_or("unset");
  }
}

}  // namespace
}  // namespace quillon
