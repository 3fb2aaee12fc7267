// What listener and agent share on Asio: an address to bind to, and the failure that an
// error of the system becomes.
#pragma once

#include <asio/error_code.hpp>
#include <asio/ip/address.hpp>
#include <string>

#include "platform/failure.h"

namespace quillon {

// The address, of version 4 or 6. A text that is none raises SocketFailure with the code of
// an address that is not the machine's: names are not looked up.
asio::ip::address AddressToBind(const std::string& text);

// "<what>: <reason>", with the code that the error stands for.
SocketFailure MakeSocketFailure(const std::string& what, const asio::error_code& error);

}  // namespace quillon
