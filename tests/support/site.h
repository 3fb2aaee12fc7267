// The web server of a test: a real listener on a free port of the loopback, driven by
// the test's own loop, and raw clients that send bytes and read what comes back.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/listener.h"
#include "support/house.h"
#include "web/connections.h"

namespace quillon {

// A client socket. Reading never blocks.
class RawClient {
 public:
  explicit RawClient(std::int32_t port);
  ~RawClient();
  RawClient(const RawClient&) = delete;
  RawClient& operator=(const RawClient&) = delete;

  void Send(std::string_view bytes);
  // Adds what has arrived to received().
  void Receive();
  const std::string& received() const { return received_; }
  // What has arrived by now, without any further event.
  const std::string& ReceivedNow();
  void ClearReceived() { received_.clear(); }
  // True after the server closed the connection and all it sent was received.
  bool closedByServer() const { return closed_; }
  void Close();
  std::int32_t localPort() const;

 private:
  int socket_ = -1;
  bool closed_ = false;
  std::string received_;
};

class Site : public House {
 public:
  Site();

  // A new client whose Connected event has run.
  std::unique_ptr<RawClient> Connect();

  // Sends the bytes and runs events until the answer is whole by its Content-Length, the
  // server closes, or nothing happens any more. Returns what came.
  std::string Exchange(RawClient& client, std::string_view bytes);

  // "GET /<url> HTTP/1.1" with its head.
  static std::string Request(std::string_view url);

  // The answer to that request on a connection of its own; Body strips its head.
  std::string Get(std::string_view url);
  static std::string Body(const std::string& response);

  // Runs events until nothing happens for a while.
  void Settle();

  std::string favIconData;
  PageMemory pageMemory;
  WebContext web{diagnostics, settings, clock,      tcpServer,  render,
                 queries,     records,  pageMemory, favIconData};
  WebServer server{web};
};

}  // namespace quillon
