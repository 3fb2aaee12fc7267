// Addresses and errors of sockets.
#include "platform/socket_errors.h"

#include <asio/error.hpp>
#include <cerrno>

namespace quillon {

asio::ip::address AddressToBind(const std::string& text) {
  asio::error_code error;
  asio::ip::address address = asio::ip::make_address(text.c_str(), error);
  const bool endsAtNul = text.find('\0') != std::string::npos;
  if (!error && !endsAtNul) return address;
  throw SocketFailure(SocketFailure::Code::kAddressNotAvailable,
                      "not an IP address: \"" + text + "\"");
}

SocketFailure MakeSocketFailure(const std::string& what, const asio::error_code& error) {
  auto code = SocketFailure::Code::kOther;
  if (error == asio::error::address_in_use) code = SocketFailure::Code::kAddressInUse;
  if (error.value() == EADDRNOTAVAIL) code = SocketFailure::Code::kAddressNotAvailable;
  return {code, what + ": " + error.message()};
}

}  // namespace quillon
