// A socket file over which programs of the same user ask this process for something: one line asks,
// lines answer, and the process hangs up. Nobody else can open the file, and neither noise nor a
// client that stalls or leaves disturbs the process.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/event_loop.h"

namespace quillon {

class LocalServer {
 public:
  // A request is one line of at most so many bytes, and comes within this time: whoever sends more,
  // nothing, or half a line is hung up on.
  static constexpr std::size_t kLongestRequest = 1024;
  static constexpr std::chrono::seconds kRequestTime{10};
  // Clients at a time, those included whose answer is on its way. One more is hung up on.
  static constexpr int kMaxClients = 8;
  // Bytes that wait for a client to read. Beyond, he is hung up on.
  static constexpr std::size_t kPendingLimit = std::size_t{256} * 1024;

  // Sends a line of the answer; to a client who has left, nowhere. Never fails and never waits.
  using Answer = std::function<void(std::string_view line)>;

  // Carries out a request, which it gets without its line end. Runs as an event of its own that is
  // no request of a browser, behind those that browsers wait for already (or after two seconds of
  // a flood of them), and may wait; when it returns, the answer is complete.
  using Handler = std::function<void(const std::string& request, const Answer& answer)>;

  explicit LocalServer(EventLoop& loop);
  ~LocalServer();  // removes the file
  LocalServer(const LocalServer&) = delete;
  LocalServer& operator=(const LocalServer&) = delete;

  // Who carries out requests; set once, before Open.
  void SetHandler(Handler handler);

  // Makes the file in the directory, mode 0600, in place of one that an earlier process has left,
  // and takes clients from now on. SocketFailure where something else has that name, and where the
  // file cannot be made; FileFailure where there is no such directory.
  void Open(const std::string& directory, const std::string& name);

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace quillon
