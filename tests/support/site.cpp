// Raw client sockets and the exchange of bytes with the test's own loop.
#include "support/site.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <stdexcept>
#include <thread>

#include "support/answer_head.h"

namespace quillon {
namespace {

// How long nothing may happen before an exchange counts as ended. Everything is on the
// loopback and in this thread, so what is to come comes at once.
constexpr int kQuietRounds = 30;
constexpr std::chrono::milliseconds kRound{1};

sockaddr_in LoopbackAddress(std::int32_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

}  // namespace

RawClient::RawClient(std::int32_t port) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
  const sockaddr_in address = LoopbackAddress(port);
  if (connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    throw std::runtime_error("cannot connect to port " + std::to_string(port));
  }
  fcntl(socket_, F_SETFL, O_NONBLOCK);
  // Else a second small text waits 40 ms for the first one to be acknowledged.
  const int yes = 1;
  setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
}

RawClient::~RawClient() {
  Close();
}

void RawClient::Send(std::string_view bytes) {
  if (send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL) !=
      static_cast<ssize_t>(bytes.size())) {
    throw std::runtime_error("cannot send");
  }
}

void RawClient::Receive() {
  std::array<char, 65536> buffer;
  while (socket_ >= 0 && !closed_) {
    const ssize_t count = recv(socket_, buffer.data(), buffer.size(), 0);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (count <= 0) closed_ = true;
    if (count > 0) received_.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

const std::string& RawClient::ReceivedNow() {
  Receive();
  return received_;
}

void RawClient::Close() {
  if (socket_ >= 0) close(socket_);
  socket_ = -1;
}

std::int32_t RawClient::localPort() const {
  sockaddr_in address{};
  socklen_t length = sizeof address;
  getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length);
  return ntohs(address.sin_port);
}

Site::Site() {
  tcpServer.SetEvents(server);
  tcpServer.SetLocalHost("127.0.0.1");
  tcpServer.SetLocalPort(0);
  tcpServer.SetListening(true);
}

std::unique_ptr<RawClient> Site::Connect() {
  auto client = std::make_unique<RawClient>(tcpServer.LocalPort());
  Settle();
  return client;
}

std::string Site::Exchange(RawClient& client, std::string_view bytes) {
  client.ClearReceived();
  client.Send(bytes);
  for (int quiet = 0; quiet < kQuietRounds; ++quiet) {
    loop.Pump();
    const std::size_t before = client.received().size();
    client.Receive();
    if (HoldsWholeAnswer(client.received()) || client.closedByServer()) break;
    if (client.received().size() > before) quiet = 0;
    std::this_thread::sleep_for(kRound);
  }
  return client.received();
}

std::string Site::Request(std::string_view url) {
  return "GET /" + std::string(url) + " HTTP/1.1\r\nHost: test\r\n\r\n";
}

std::string Site::Get(std::string_view url) {
  RawClient client(tcpServer.LocalPort());
  const std::string response = Exchange(client, Request(url));
  client.Close();
  Settle();
  return response;
}

std::string Site::Body(const std::string& response) {
  const std::size_t headEnd = response.find("\r\n\r\n");
  return headEnd == std::string::npos ? std::string() : response.substr(headEnd + 4);
}

void Site::Settle() {
  for (int round = 0; round < 5; ++round) {
    loop.Pump();
    std::this_thread::sleep_for(kRound);
  }
}

}  // namespace quillon
