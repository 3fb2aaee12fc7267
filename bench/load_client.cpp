// A client that asks for one page as fast as it is answered, and costs as little as it can, so
// that the server is what limits: behind the beginning of an answer it lets the system drop the
// bytes unread. One thread, all connections in one epoll set.
//
//   load_client PORT PAGE CONNECTIONS SECONDS kept     connections stay open
//   load_client PORT PAGE CONNECTIONS SECONDS single   each request has a connection of its own,
//                                                      which the client closes behind the body
//
// Prints "requests <number>", "seconds <number>", "errors <number>", and "median", "p99" and
// "worst" in microseconds, from the request (or the connecting for it) to the last byte. An
// answer counts as an error where it is not as long as the first one or does not begin like it.
#include <arpa/inet.h>
#include <fmt/core.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "support/answer_head.h"

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr std::size_t kBeginning = 12;  // "HTTP/1.x 200": what is looked at of each answer
constexpr std::size_t kAtOnce = std::size_t{1} << 20;  // bytes that one call drops at most

constexpr std::chrono::seconds kLong{1};  // for one answer

// The client's addresses. One has fewer ports than a second has connections, and a port rests
// behind each.
constexpr std::uint32_t kFirstHost = 2;
constexpr std::uint32_t kHosts = 200;

[[noreturn]] void Fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

sockaddr_in Loopback(std::uint32_t host, std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl((INADDR_LOOPBACK & 0xFFFFFF00U) | host);
  return address;
}

const sockaddr* AsAddress(const sockaddr_in& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

// A connected socket; `number` counts the connections.
int Connect(std::uint16_t port, std::uint32_t number) {
  const int connected = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (connected < 0) Fail("socket");
  const int on = 1;
  setsockopt(connected, IPPROTO_IP, IP_BIND_ADDRESS_NO_PORT, &on, sizeof on);
  setsockopt(connected, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  const sockaddr_in from = Loopback(kFirstHost + number % kHosts, 0);
  const sockaddr_in to = Loopback(1, port);
  if (bind(connected, AsAddress(from), sizeof from) != 0) Fail("bind");
  if (connect(connected, AsAddress(to), sizeof to) != 0) Fail("connect");
  return connected;
}

struct Conversation {
  int socket = -1;
  std::size_t received = 0;
  SteadyClock::time_point asked;
};

class Load {
 public:
  Load(std::uint16_t port, const std::string& page, bool keeps)
      : port_(port),
        request_("GET /" + page + " HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n"),
        keeps_(keeps),
        events_(epoll_create1(EPOLL_CLOEXEC)) {
    expectedSize_ = SizeOfFirstAnswer();
  }

  void Run(std::size_t connections, std::chrono::seconds length) {
    conversations_.resize(connections);
    const SteadyClock::time_point start = SteadyClock::now();
    for (Conversation& one : conversations_) Begin(one);
    while (SteadyClock::now() < start + length) Turn();
    for (const Conversation& one : conversations_) JudgeUnanswered(one);
    seconds_ = std::chrono::duration<double>(SteadyClock::now() - start).count();
  }

  void Print() {
    std::sort(times_.begin(), times_.end());
    if (times_.empty()) throw std::runtime_error("nothing was answered");
    fmt::print("requests {}\nseconds {}\nerrors {}\n", times_.size(), seconds_, errors_);
    PrintTime("median", times_[times_.size() / 2]);
    PrintTime("p99", times_[times_.size() * 99 / 100]);
    PrintTime("worst", times_.back());
  }

 private:
  static void PrintTime(const char* name, SteadyClock::duration time) {
    fmt::print("{} {:.1f}\n", name, std::chrono::duration<double, std::micro>(time).count());
  }

  std::size_t SizeOfFirstAnswer() {
    const int socket = Connect(port_, dialled_++);
    Send(socket);
    std::string answer;
    std::array<char, 65536> buffer;
    while (!quillon::HoldsWholeAnswer(answer)) {
      const ssize_t count = recv(socket, buffer.data(), buffer.size(), 0);
      if (count <= 0) throw std::runtime_error("no answer");
      answer.append(buffer.data(), static_cast<std::size_t>(count));
    }
    close(socket);
    beginning_ = answer.substr(0, kBeginning);
    if (!beginning_.ends_with("200")) throw std::runtime_error("answered with " + beginning_);
    return answer.size();
  }

  void Send(int socket) const {
    if (send(socket, request_.data(), request_.size(), MSG_NOSIGNAL) < 0) Fail("send");
  }

  void Begin(Conversation& one) {
    one.asked = SteadyClock::now();
    one.received = 0;
    if (one.socket < 0) {
      one.socket = Connect(port_, dialled_++);
      epoll_event event{.events = EPOLLIN, .data = {.ptr = &one}};
      if (epoll_ctl(events_, EPOLL_CTL_ADD, one.socket, &event) != 0) Fail("epoll_ctl");
    }
    Send(one.socket);
  }

  // It never sleeps: waking it would be work of the server's.
  void Turn() {
    std::array<epoll_event, 64> ready;
    const int count = epoll_wait(events_, ready.data(), static_cast<int>(ready.size()), 0);
    if (count < 0) Fail("epoll_wait");
    for (int index = 0; index < count; ++index) {
      Receive(*static_cast<Conversation*>(ready[static_cast<std::size_t>(index)].data.ptr));
    }
  }

  void Receive(Conversation& one) {
    if (!TakeBytes(one) || one.received > expectedSize_) {
      ++errors_;
      Leave(one);
      return Begin(one);
    }
    if (one.received < expectedSize_) return;
    times_.push_back(SteadyClock::now() - one.asked);
    if (!keeps_) Leave(one);
    Begin(one);
  }

  // False where the connection has ended, or the answer begins in another way.
  bool TakeBytes(Conversation& one) const {
    if (one.received == 0) {
      std::array<char, kBeginning> begin;
      const ssize_t count = recv(one.socket, begin.data(), begin.size(), 0);
      if (count != ssize_t{kBeginning} ||
          beginning_ != std::string_view(begin.data(), begin.size()))
        return false;
      one.received = kBeginning;
    }
    const ssize_t count =
        recv(one.socket, nullptr, std::min(kAtOnce, expectedSize_ - one.received + 1),
             MSG_TRUNC | MSG_DONTWAIT);
    if (count < 0) return errno == EAGAIN;
    one.received += static_cast<std::size_t>(count);
    return count > 0;
  }

  // What is due for long when the time is up would else be seen by nobody.
  void JudgeUnanswered(const Conversation& one) {
    const SteadyClock::duration age = SteadyClock::now() - one.asked;
    if (age < kLong) return;
    ++errors_;
    times_.push_back(age);
  }

  static void Leave(Conversation& one) {
    close(one.socket);
    one.socket = -1;
  }

  std::uint16_t port_;
  std::string request_;
  bool keeps_;
  int events_;
  std::uint32_t dialled_ = 0;
  std::string beginning_;
  std::size_t expectedSize_ = 0;
  std::vector<Conversation> conversations_;
  std::vector<SteadyClock::duration> times_;
  std::size_t errors_ = 0;
  double seconds_ = 0;
};

}  // namespace

int main(int argumentCount, char** arguments) {
  const std::string_view mode = argumentCount == 6 ? arguments[5] : "";
  if (mode != "kept" && mode != "single") {
    fmt::print(stderr, "usage: load_client PORT PAGE CONNECTIONS SECONDS kept|single\n");
    return 2;
  }
  try {
    Load load(static_cast<std::uint16_t>(std::stoi(arguments[1])), arguments[2], mode == "kept");
    load.Run(std::stoul(arguments[3]), std::chrono::seconds(std::stoi(arguments[4])));
    load.Print();
  } catch (const std::exception& failure) {
    fmt::print(stderr, "load_client: {}\n", failure.what());
    return 1;
  }
  return 0;
}
