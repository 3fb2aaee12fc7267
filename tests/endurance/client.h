// A client on a raw socket of the loopback, for programs that ask by the million. It judges an
// answer by its head alone; nothing is kept of one behind the next.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quillon {

class Client {
 public:
  explicit Client(std::int32_t port);
  // Leaves with a reset, so that the machine keeps no port back for it.
  ~Client();
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  int descriptor() const { return socket_; }

  // Forgets what came before it.
  void Ask(std::string_view request);
  void Send(std::string_view bytes);
  // Nothing more will be sent; what comes is still read.
  void EndSending();

  // Takes what has arrived, and waits where nothing has: for a minute at most, which is an error.
  void Receive();
  void ReceiveAnswer();

  bool closed() const { return closed_; }  // by the service
  bool HasWholeAnswer() const { return wholeSize_ != 0 && received_.size() >= wholeSize_; }
  // Whether the answer says that all is well, and is as long as it says.
  bool HasRightAnswer() const;
  const std::string& received() const { return received_; }

 private:
  int socket_;
  bool closed_ = false;
  std::string received_;
  std::size_t wholeSize_ = 0;  // head and body; 0 until the head is there
};

}  // namespace quillon
