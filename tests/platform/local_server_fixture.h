// A socket file with a server behind it that answers as a test likes, and raw clients that send
// bytes and read what comes back.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/failure.h"
#include "platform/local_server.h"
#include "support/temporary_folder.h"
#include "support/test_clock.h"

namespace quillon {

inline constexpr const char* kTestSocket = "test.socket";

// A client of the socket file. It never blocks.
class LocalClient {
 public:
  // The way over the open directory keeps the address short, however long its path is.
  explicit LocalClient(const std::string& directory) : socket_(socket(AF_UNIX, SOCK_STREAM, 0)) {
    const int folder = open(directory.c_str(), O_PATH | O_DIRECTORY);
    const std::string path = "/proc/self/fd/" + std::to_string(folder) + "/" + kTestSocket;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int result = connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address);
    close(folder);
    if (result != 0) throw std::runtime_error("cannot connect to " + directory);
    fcntl(socket_, F_SETFL, O_NONBLOCK);
  }
  ~LocalClient() { Leave(); }
  LocalClient(const LocalClient&) = delete;
  LocalClient& operator=(const LocalClient&) = delete;

  // How many of the bytes were taken.
  std::size_t Send(std::string_view bytes) const {
    const ssize_t count = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    return count < 0 ? 0 : static_cast<std::size_t>(count);
  }
  // All that has come so far.
  const std::string& Received() {
    std::array<char, 65536> buffer;
    while (!hungUpOn_) {
      const ssize_t count = recv(socket_, buffer.data(), buffer.size(), 0);
      if (count < 0 && errno == EAGAIN) break;
      if (count <= 0) hungUpOn_ = true;
      if (count > 0) received_.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return received_;
  }
  bool HungUpOn() {
    Received();
    return hungUpOn_;
  }
  void Leave() {
    if (socket_ >= 0) close(socket_);
    socket_ = -1;
  }

 private:
  int socket_;
  bool hungUpOn_ = false;
  std::string received_;
};

class LocalServerTest : public testing::Test {
 protected:
  using Lines = std::vector<std::string>;
  static constexpr std::chrono::seconds kDeadline{5};

  LocalServerTest() {
    server->SetHandler([this](const std::string& request, const LocalServer::Answer& answer) {
      requests.push_back(request);
      const LocalServer::Handler run = onRequest;  // which may set another one
      run(request, answer);
    });
  }

  void Open() { server->Open(folder.path(), kTestSocket); }
  std::string SocketPath() const { return folder.path() + "/" + kTestSocket; }

  std::unique_ptr<LocalClient> Connect() const {
    return std::make_unique<LocalClient>(folder.path());
  }
  std::vector<std::unique_ptr<LocalClient>> ConnectMany(int count) {
    std::vector<std::unique_ptr<LocalClient>> clients;
    for (int n = 0; n < count; ++n) clients.push_back(Connect());
    Settle();
    return clients;
  }
  // All that a client gets for these bytes until the server hangs up.
  std::string Exchange(std::string_view bytes) {
    const auto client = Connect();
    client->Send(bytes);
    EXPECT_TRUE(Until([&] { return client->HungUpOn(); })) << bytes.substr(0, 50);
    return client->Received();
  }

  // Runs events until the condition holds; false where it does not within some seconds.
  bool Until(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + kDeadline;
    while (!condition()) {
      if (std::chrono::steady_clock::now() > end) return false;
      loop.Pump();
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
  }
  void Settle() {
    for (int round = 0; round < 6; ++round) {
      loop.Pump();
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }
  // Sends as long as the server takes anything, and hangs up on nobody before.
  void Flood(LocalClient& client, std::string_view bytes) {
    EXPECT_TRUE(Until([&] {
      bytes.remove_prefix(client.Send(bytes));
      return bytes.empty() || client.HungUpOn();
    }));
  }

  // What an Open tells that fails; "" of one that does not.
  std::string FailureOfOpen(const std::string& directory) {
    try {
      server->Open(directory, kTestSocket);
    } catch (const Failure& failure) {
      return failure.what();
    }
    return "";
  }

  // Leaves a socket file behind, as a process does that was killed.
  void LeaveSocketFile() {
    EventLoop otherLoop{clock};
    LocalServer other(otherLoop);
    other.Open(folder.path(), "other.socket");
    std::filesystem::create_hard_link(folder.path() + "/other.socket", SocketPath());
  }

  TemporaryFolder folder;
  TestClock clock;
  EventLoop loop{clock};
  std::unique_ptr<LocalServer> server = std::make_unique<LocalServer>(loop);
  Lines requests;  // in the order in which they were carried out
  LocalServer::Handler onRequest = [](const std::string& request,
                                      const LocalServer::Answer& answer) {
    answer("done " + request);
  };
};

}  // namespace quillon
