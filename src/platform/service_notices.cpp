// The notification protocol: one datagram a notice.
#include "platform/service_notices.h"

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "platform/failure.h"

namespace quillon {
namespace {

// A service manager that is busy has its queue full for a moment; "READY=1" must not be lost.
constexpr timeval kPatience{1, 0};

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::optional<std::int64_t> Number(const std::string& text) {
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [next, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || next != end) return std::nullopt;
  return number;
}

// The watchdog that is meant for this process, and not for the one that started it.
std::optional<std::chrono::milliseconds> WatchdogOfEnvironment() {
  const std::string process = Environment("WATCHDOG_PID");
  if (!process.empty() && Number(process) != getpid()) return std::nullopt;
  const auto microseconds = Number(Environment("WATCHDOG_USEC"));
  if (!microseconds || *microseconds <= 0) return std::nullopt;
  return std::chrono::floor<std::chrono::milliseconds>(std::chrono::microseconds(*microseconds));
}

}  // namespace

ServiceNotices::ServiceNotices()
    : socketPath_(Environment("NOTIFY_SOCKET")), watchdogPeriod_(WatchdogOfEnvironment()) {}

void ServiceNotices::Send(std::string_view notice) const {
  if (socketPath_.empty()) return;
  const auto fail = [this](const std::string& reason) {
    throw SocketFailure(SocketFailure::Code::kOther,
                        "cannot tell the service manager at " + socketPath_ + ": " + reason);
  };
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (socketPath_.size() >= sizeof address.sun_path) fail("the path is too long");
  std::memcpy(address.sun_path, socketPath_.data(), socketPath_.size());
  if (socketPath_.front() == '@') address.sun_path[0] = '\0';  // a name without a file
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + socketPath_.size());

  const int socketNumber = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (socketNumber < 0) fail(std::strerror(errno));
  setsockopt(socketNumber, SOL_SOCKET, SO_SNDTIMEO, &kPatience, sizeof kPatience);
  const ssize_t sent = sendto(socketNumber, notice.data(), notice.size(), MSG_NOSIGNAL,
                              reinterpret_cast<const sockaddr*>(&address), length);
  const int error = errno;
  close(socketNumber);
  if (sent < 0) fail(std::strerror(error));
}

}  // namespace quillon
