// The TCP listener with the events and properties that the web server is built on:
// connections numbered from 1, one read of the socket one event, one assignment one
// response. It knows nothing of HTTP.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/event_loop.h"

namespace quillon {

// Number of a connection: the lowest that is free, from 1 on. That of a client who left inside an
// event of his is given away before the event ends only when no other one up to kKeptApart is free;
// inside the event it means his connection all the same.
using ConnectionId = std::int16_t;

// What the listener tells. Every call runs as an event on the loop, may be nested in
// the wait of another one, and has an error exit of its own: it does not throw.
class ListenerEvents {
 public:
  virtual ~ListenerEvents() = default;
  virtual void Connected(ConnectionId id, int statusCode, const std::string& description) = 0;
  // `text` is all that one read of the socket gave, at most 64 KiB.
  virtual void DataIn(ConnectionId id, std::string text) = 0;
  virtual void Disconnected(ConnectionId id, int statusCode, const std::string& description) = 0;
  virtual void Error(int errorCode, const std::string& description) = 0;
};

class Listener {
 public:
  // Assignments that wait for one client to read, in bytes: the next one fails.
  static constexpr std::size_t kPendingLimit = std::size_t{16} * 1024 * 1024;
  // What one read takes at most.
  static constexpr std::size_t kReadSize = std::size_t{64} * 1024;
  // Depth of nested events, on top of the last job, from which no further read is started until it
  // falls, so that clients cannot grow the stack without end. Nor is one started while a job is
  // overdue.
  static constexpr int kDepthLimit = 32;

  // The largest number that is kept apart so. What is filled for a number, over some waits, is not
  // to be mixed up with what the next client asks for.
  static constexpr ConnectionId kKeptApart = 19;

  explicit Listener(EventLoop& loop);
  ~Listener();
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  // Who is told; set once, before the first SetListening.
  void SetEvents(ListenerEvents& events);

  // Address and port to listen on; they take effect with SetListening(true). Reading
  // them while listening gives what the socket is bound to.
  void SetLocalHost(const std::string& address);
  void SetLocalPort(std::int32_t port);
  std::string LocalHost() const;
  std::int32_t LocalPort() const;

  // Opens or closes the listening socket. Open connections stay. Opening raises
  // SocketFailure, with its code for an address in use and one that is not the machine's.
  void SetListening(bool listening);
  bool Listening() const;

  // Is that connection up? False for ids that never were.
  bool Connected(ConnectionId id) const;

  // Ends the connection; the Disconnected event follows. Nothing for one that is not up.
  void Drop(ConnectionId id);

  // Sends the text whole, behind what still waits. It does not block: what the client
  // does not take now is sent as it reads. SocketFailure for a connection that is not up
  // and where more than kPendingLimit is waiting.
  void DataToSend(ConnectionId id, std::string text);

  // Peer of the connection; "" and 0 for one that is not up.
  std::string RemoteHost(ConnectionId id) const;
  std::int32_t RemotePort(ConnectionId id) const;

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace quillon
