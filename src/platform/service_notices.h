// Notices to systemd: datagrams to the socket that its environment names (sd_notify(3)).
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace quillon {

class ServiceNotices {
 public:
  // Reads NOTIFY_SOCKET, WATCHDOG_USEC and WATCHDOG_PID of the environment.
  ServiceNotices();

  // Sends the notice, "READY=1" say; lines part several. Nothing without a socket, as in a
  // terminal. SocketFailure where it cannot be sent
  // within a second.
  void Send(std::string_view notice) const;

  // How long the service manager waits for a sign of life before it ends the process; nothing
  // where it does not.
  std::optional<std::chrono::milliseconds> WatchdogPeriod() const { return watchdogPeriod_; }

 private:
  std::string socketPath_;
  std::optional<std::chrono::milliseconds> watchdogPeriod_;
};

}  // namespace quillon
