// An agent without a socket: it keeps what was to be sent, and fails as it is told to.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/agent.h"
#include "platform/failure.h"

namespace quillon {

class RecordingAgent : public Agent {
 public:
  struct Sent {
    TrapMessage message;
    std::string recipient;
  };

  void OpenAgent(std::int32_t port, const std::string& address) override {
    ++openings;
    if (openingFails) throw SocketFailure(*openingFails, openingFailure);
    localPort = port == 0 ? 40'161 : port;
    localAddress = address;
  }
  std::string LocalAddress() const override { return localAddress; }
  std::int32_t LocalPort() const override { return localPort; }
  void SendTrapMessage(const TrapMessage& message, const std::string& recipient) override {
    if (sendingFails) throw SocketFailure(SocketFailure::Code::kOther, "refused");
    sent.push_back({message, recipient});
  }

  int openings = 0;
  std::optional<SocketFailure::Code> openingFails;
  std::string openingFailure = "the agent did not open";
  bool sendingFails = false;
  std::string localAddress;
  std::int32_t localPort = 0;
  std::vector<Sent> sent;  // oldest first
};

}  // namespace quillon
