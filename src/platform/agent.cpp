// The agent on an Asio socket.
#include "platform/agent.h"

#include <asio/ip/udp.hpp>
#include <charconv>
#include <string_view>

#include "platform/socket_errors.h"

namespace quillon {
namespace {

using asio::ip::udp;

// Nobody reads what others send to the agent, so the system need not keep it.
constexpr int kReceiveBuffer = 0;  // raised by the system to its least

std::uint16_t ToPort(std::int32_t port) {
  if (port >= 0 && port <= 65535) return static_cast<std::uint16_t>(port);
  throw SocketFailure(SocketFailure::Code::kOther, "not a UDP port: " + std::to_string(port));
}

// "<address>:<port>". An address of version 6 has colons of its own, so the last one counts.
udp::endpoint ToEndpoint(const std::string& recipient) {
  const std::size_t colon = recipient.rfind(':');
  std::uint16_t port = 0;
  if (colon != std::string::npos) {
    const char* const end = recipient.data() + recipient.size();
    const auto [next, error] = std::from_chars(recipient.data() + colon + 1, end, port);
    if (error == std::errc() && next == end) {
      return {AddressToBind(recipient.substr(0, colon)), port};
    }
  }
  throw SocketFailure(SocketFailure::Code::kOther, "not a recipient: \"" + recipient + "\"");
}

}  // namespace

struct UdpAgent::Implementation {
  explicit Implementation(asio::io_context& io) : socket(io) {}

  udp::socket socket;
};

UdpAgent::UdpAgent(EventLoop& loop)
    : implementation_(std::make_unique<Implementation>(loop.io())) {}

UdpAgent::~UdpAgent() = default;

void UdpAgent::OpenAgent(std::int32_t localPort, const std::string& localAddress) {
  const udp::endpoint endpoint(AddressToBind(localAddress), ToPort(localPort));
  udp::socket& socket = implementation_->socket;
  asio::error_code error;
  socket.close(error);
  socket.open(endpoint.protocol(), error);
  if (!error) socket.non_blocking(true, error);
  if (!error) socket.set_option(udp::socket::receive_buffer_size(kReceiveBuffer), error);
  if (!error) socket.bind(endpoint, error);
  if (!error) return;
  asio::error_code ignored;
  socket.close(ignored);
  throw MakeSocketFailure(
      "cannot open the agent on " + localAddress + " port " + std::to_string(localPort), error);
}

std::string UdpAgent::LocalAddress() const {
  const udp::socket& socket = implementation_->socket;
  return socket.is_open() ? socket.local_endpoint().address().to_string() : "";
}

std::int32_t UdpAgent::LocalPort() const {
  const udp::socket& socket = implementation_->socket;
  return socket.is_open() ? socket.local_endpoint().port() : 0;
}

void UdpAgent::SendTrapMessage(const TrapMessage& message, const std::string& recipient) {
  const std::string bytes = EncodeTrap(message);
  asio::error_code error;
  implementation_->socket.send_to(asio::buffer(bytes), ToEndpoint(recipient), 0, error);
  if (error) throw MakeSocketFailure("cannot send a trap to " + recipient, error);
}

}  // namespace quillon
