// The way to the running service: its socket file.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/failure.h"

namespace quillon {

// Raised where no service runs, which is no failure for those who only ask.
class ServiceIsDown : public SocketFailure {
  using SocketFailure::SocketFailure;
};

// One request and its answer. Failures are SocketFailures that an operator understands:
// ServiceIsDown, or that the service is another user's, or that it ended before its answer did.
class ServiceLink {
 public:
  // How long whoever waits for a state waits; jobs take as long as they take.
  static constexpr std::chrono::seconds kPatience{10};

  // Connects and asks. The texts are words of service/console_protocol.h. With a limit of more than
  // 0 a service that says nothing for so long is a failure.
  ServiceLink(const std::string& directory, const std::string& request,
              std::chrono::seconds limit = std::chrono::seconds(0));
  ~ServiceLink();
  ServiceLink(const ServiceLink&) = delete;
  ServiceLink& operator=(const ServiceLink&) = delete;

  // The words of the next line of the answer; nothing behind its last one. Waits for it.
  std::optional<std::vector<std::string>> Next();

  // For those who have something else to wait for: readable when more of the answer is there.
  int descriptor() const;

  // The words of the next line that is there already; nothing where none is. Reads what has come,
  // without waiting.
  std::optional<std::vector<std::string>> NextAtOnce();

  // True when the line that ends the answer has been handed out.
  bool ended() const;

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};
}  // namespace quillon
