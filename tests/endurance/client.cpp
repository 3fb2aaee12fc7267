// Sockets that block: who serves many of them asks the system first which one has something.
#include "endurance/client.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "support/answer_head.h"

namespace quillon {
namespace {

constexpr timeval kPatience{.tv_sec = 60, .tv_usec = 0};

[[noreturn]] void Fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

template <typename Option>
void SetOption(int socket, int level, int name, const Option& value) {
  if (setsockopt(socket, level, name, &value, sizeof value) != 0) Fail("setsockopt");
}

}  // namespace

Client::Client(std::int32_t port) : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    Fail("connect");
  }
  SetOption(socket_, IPPROTO_TCP, TCP_NODELAY, 1);
  SetOption(socket_, SOL_SOCKET, SO_LINGER, linger{.l_onoff = 1, .l_linger = 0});
  SetOption(socket_, SOL_SOCKET, SO_RCVTIMEO, kPatience);
}

Client::~Client() {
  close(socket_);
}

void Client::Ask(std::string_view request) {
  received_.clear();
  wholeSize_ = 0;
  Send(request);
}

void Client::Send(std::string_view bytes) {
  if (send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL) !=
      static_cast<ssize_t>(bytes.size())) {
    Fail("send");
  }
}

void Client::EndSending() {
  if (shutdown(socket_, SHUT_WR) != 0) Fail("shutdown");
}

void Client::Receive() {
  std::array<char, 65536> buffer;
  const ssize_t count = recv(socket_, buffer.data(), buffer.size(), 0);
  if (count < 0 && errno != ECONNRESET) Fail("recv");
  if (count <= 0) {
    closed_ = true;
    return;
  }
  received_.append(buffer.data(), static_cast<std::size_t>(count));
  if (wholeSize_ == 0) wholeSize_ = WholeAnswerSize(received_);
}

void Client::ReceiveAnswer() {
  while (!closed_ && !HasWholeAnswer()) Receive();
}

bool Client::HasRightAnswer() const {
  return received_.starts_with("HTTP/1.0 200 OK\r\n") && received_.size() == wholeSize_;
}

}  // namespace quillon
