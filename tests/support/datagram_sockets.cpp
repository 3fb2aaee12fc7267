// Datagrams on plain sockets of the system.
#include "support/datagram_sockets.h"

#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <stdexcept>

namespace quillon {
namespace {

constexpr int kDeadlineMs = 10'000;

// The numbers of an address: no name is looked up.
sockaddr_storage UdpAddress(const std::string& address, std::int32_t port, socklen_t& length) {
  addrinfo hints{};
  hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
  hints.ai_socktype = SOCK_DGRAM;
  addrinfo* found = nullptr;
  if (getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &found) != 0) {
    throw std::runtime_error("no address: " + address);
  }
  sockaddr_storage numbers{};
  std::memcpy(&numbers, found->ai_addr, found->ai_addrlen);
  length = found->ai_addrlen;
  freeaddrinfo(found);
  return numbers;
}

int FamilyOf(const std::string& address) {
  return address.find(':') == std::string::npos ? AF_INET : AF_INET6;
}

// Address and port as texts.
std::array<std::string, 2> TextsOf(const sockaddr_storage& address) {
  std::array<char, NI_MAXHOST> host{};
  std::array<char, NI_MAXSERV> port{};
  const int failure =
      getnameinfo(reinterpret_cast<const sockaddr*>(&address), sizeof address, host.data(),
                  host.size(), port.data(), port.size(), NI_NUMERICHOST | NI_NUMERICSERV);
  if (failure != 0) throw std::runtime_error(gai_strerror(failure));
  return {host.data(), port.data()};
}

}  // namespace

DatagramSocket::DatagramSocket(int family) : socket_(socket(family, SOCK_DGRAM, 0)) {
  if (socket_ < 0) throw std::runtime_error("cannot make a socket");
}

DatagramSocket::~DatagramSocket() {
  Close();
}

void DatagramSocket::Close() {
  if (socket_ >= 0) close(socket_);
  socket_ = -1;
}

void DatagramSocket::Bind(const sockaddr* address, socklen_t length) const {
  if (bind(socket_, address, length) != 0) throw std::runtime_error("cannot bind a socket");
}

socklen_t DatagramSocket::BoundTo(sockaddr_storage& address) const {
  socklen_t length = sizeof address;
  getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length);
  return length;
}

bool DatagramSocket::WaitForOne(int milliseconds) const {
  pollfd waited{socket_, POLLIN, 0};
  return poll(&waited, 1, milliseconds) == 1;
}

std::string DatagramSocket::Take() {
  std::string bytes(65'536, '\0');
  socklen_t length = sizeof sender_;
  const ssize_t count = recvfrom(socket_, bytes.data(), bytes.size(), 0,
                                 reinterpret_cast<sockaddr*>(&sender_), &length);
  if (count < 0) throw std::runtime_error("cannot receive");
  bytes.resize(static_cast<std::size_t>(count));
  return bytes;
}

std::optional<std::string> DatagramSocket::Next() {
  if (!WaitForOne(kDeadlineMs)) return std::nullopt;
  return Take();
}

std::vector<std::string> DatagramSocket::Arrived() {
  std::vector<std::string> all;
  while (WaitForOne(0)) all.push_back(Take());
  return all;
}

UdpSocket::UdpSocket(const std::string& address, std::int32_t port)
    : DatagramSocket(FamilyOf(address)) {
  socklen_t length = 0;
  const sockaddr_storage numbers = UdpAddress(address, port, length);
  Bind(reinterpret_cast<const sockaddr*>(&numbers), length);
}

std::int32_t UdpSocket::port() const {
  sockaddr_storage address{};
  BoundTo(address);
  return std::stoi(TextsOf(address)[1]);
}

std::string UdpSocket::senderAddress() const {
  return TextsOf(sender_)[0];
}

std::int32_t UdpSocket::senderPort() const {
  return std::stoi(TextsOf(sender_)[1]);
}

void UdpSocket::SendTo(const std::string& address, std::int32_t port,
                       const std::string& bytes) const {
  socklen_t length = 0;
  const sockaddr_storage numbers = UdpAddress(address, port, length);
  if (sendto(socket_, bytes.data(), bytes.size(), 0, reinterpret_cast<const sockaddr*>(&numbers),
             length) != static_cast<ssize_t>(bytes.size())) {
    throw std::runtime_error("cannot send");
  }
}

NoticeSocket::NoticeSocket(Kind kind) : DatagramSocket(AF_UNIX) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (kind == Kind::kFile) {
    name_ = folder_.path() + "/notices";
    if (name_.size() >= sizeof address.sun_path) throw std::runtime_error("too long: " + name_);
    name_.copy(address.sun_path, name_.size());
    Bind(reinterpret_cast<const sockaddr*>(&address), sizeof address);
    return;
  }
  // Without any name the system chooses an abstract one that is free.
  Bind(reinterpret_cast<const sockaddr*>(&address), sizeof address.sun_family);
  sockaddr_storage bound{};
  const socklen_t length = BoundTo(bound);
  std::memcpy(&address, &bound, sizeof address);
  name_.assign(address.sun_path, length - offsetof(sockaddr_un, sun_path));
  name_[0] = '@';  // stands for the NUL in front
}

}  // namespace quillon
