// The agent of the service: a UDP socket on an address of its own, from which it sends traps.
// It answers no requests.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/event_loop.h"
#include "platform/trap_message.h"

namespace quillon {

class Agent {
 public:
  virtual ~Agent() = default;

  // Opens the agent on the address; port 0 leaves the choice to the system. SocketFailure, with
  // its code for a port in use and for an address that is not the machine's.
  virtual void OpenAgent(std::int32_t localPort, const std::string& localAddress) = 0;

  // What the open agent is bound to; "" and 0 before.
  virtual std::string LocalAddress() const = 0;
  virtual std::int32_t LocalPort() const = 0;

  // Sends the message to "<address>:<port>", never waiting for anything: a trap that cannot
  // leave now is lost, as one that nobody receives is. SocketFailure where the agent is not
  // open, the recipient is none, or the system refuses it.
  virtual void SendTrapMessage(const TrapMessage& message, const std::string& recipient) = 0;
};

class UdpAgent : public Agent {
 public:
  explicit UdpAgent(EventLoop& loop);
  ~UdpAgent() override;
  UdpAgent(const UdpAgent&) = delete;
  UdpAgent& operator=(const UdpAgent&) = delete;

  void OpenAgent(std::int32_t localPort, const std::string& localAddress) override;
  std::string LocalAddress() const override;
  std::int32_t LocalPort() const override;
  void SendTrapMessage(const TrapMessage& message, const std::string& recipient) override;

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace quillon
