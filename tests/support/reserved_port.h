// A port that tests beside this one, and other programs of the machine, do not get.
#pragma once

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace quillon {

// A free TCP port of 127.0.0.1. While this lives, the system gives it to nobody who asks for any
// free port. Nothing listens there, and who asks for it by its number, as a service does, gets it.
class ReservedPort {
 public:
  ReservedPort() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const int on = 1;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const anyAddress = reinterpret_cast<sockaddr*>(&address);
    // Shared with those who reuse addresses, as long as this one does not listen.
    if (setsockopt(socket_, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
        bind(socket_, anyAddress, size) != 0 || getsockname(socket_, anyAddress, &size) != 0) {
      throw std::runtime_error("cannot reserve a port");
    }
    number_ = ntohs(address.sin_port);
  }
  ~ReservedPort() { close(socket_); }
  ReservedPort(const ReservedPort&) = delete;
  ReservedPort& operator=(const ReservedPort&) = delete;

  int number() const { return number_; }

 private:
  int socket_;
  int number_ = 0;
};

}  // namespace quillon
