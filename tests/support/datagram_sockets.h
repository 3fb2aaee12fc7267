// Sockets at which a test receives the datagrams of the code under test: of UDP, and of the
// kind at which a service manager listens.
#pragma once

#include <sys/socket.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "support/temporary_folder.h"

namespace quillon {

class DatagramSocket {
 public:
  ~DatagramSocket();
  DatagramSocket(const DatagramSocket&) = delete;
  DatagramSocket& operator=(const DatagramSocket&) = delete;

  // The next datagram, for which it waits up to ten seconds.
  std::optional<std::string> Next();

  // All that have come by now, oldest first.
  std::vector<std::string> Arrived();

  void Close();

 protected:
  explicit DatagramSocket(int family);

  void Bind(const sockaddr* address, socklen_t length) const;
  // The address of the socket; its length too.
  socklen_t BoundTo(sockaddr_storage& address) const;

  int socket_ = -1;
  sockaddr_storage sender_{};  // of the datagram that was taken last

 private:
  bool WaitForOne(int milliseconds) const;
  std::string Take();
};

// A UDP socket on a free port. Its constructor fails where the machine lacks the address.
class UdpSocket : public DatagramSocket {
 public:
  explicit UdpSocket(const std::string& address = "127.0.0.1", std::int32_t port = 0);

  std::int32_t port() const;

  // Who sent the datagram that was taken last.
  std::string senderAddress() const;
  std::int32_t senderPort() const;

  void SendTo(const std::string& address, std::int32_t port, const std::string& bytes) const;
};

// The socket of a service manager: a file in a folder of its own, or a name without a file.
class NoticeSocket : public DatagramSocket {
 public:
  enum class Kind { kFile, kAbstract };
  explicit NoticeSocket(Kind kind = Kind::kFile);

  // What NOTIFY_SOCKET says of it.
  const std::string& name() const { return name_; }

 private:
  TemporaryFolder folder_;
  std::string name_;
};

}  // namespace quillon
