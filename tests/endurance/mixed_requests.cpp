// Asks the service for a mixture of requests, on 16 connections that stay, each of which sends its
// next request when the answer to the last one is whole.
//
//   mixed_requests PORT COUNT LIST SEED
//
// LIST is a file of request_list.h. Prints "kind <name> <asked> <odd>" for each kind, an answer
// being odd that is not what the list expects, and "seconds <time>". Fails where the service closes
// a connection, or leaves a request without the answer that is due.
#include <fmt/core.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "endurance/client.h"
#include "endurance/request_list.h"

namespace {

using namespace quillon;
using SteadyClock = std::chrono::steady_clock;

constexpr int kConnections = 16;              // the service drops everybody at 20
constexpr int kLookMs = 50;                   // how often silence and patience are looked at
constexpr std::chrono::minutes kPatience{5};  // failures that are nested wait for each other

// For so long nothing may come where nothing is expected: a failure waits for half a second, and
// the next request of the connection has to stay out of it.
constexpr std::chrono::milliseconds kSilence{700};

struct Tally {
  std::uint64_t asked = 0;
  std::uint64_t odd = 0;
};

struct Asker {
  explicit Asker(std::int32_t port) : client(port) {}

  Client client;
  std::size_t request = 0;  // position in the list
  bool waits = false;       // for what the list expects of it
  SteadyClock::time_point askedAt;
};

class Load {
 public:
  Load(std::int32_t port, std::uint64_t count, const std::string& list, std::uint64_t seed)
      : requests_(ReadRequests(list)),
        first_(requests_.size()),
        mixture_(requests_, seed),
        left_(count),
        poll_(epoll_create1(EPOLL_CLOEXEC)) {
    for (int i = 0; i < kConnections; ++i) AddAsker(port);
  }
  ~Load() { close(poll_); }
  Load(const Load&) = delete;
  Load& operator=(const Load&) = delete;

  void Run() {
    for (const auto& asker : askers_) AskNext(*asker);
    while (waiting_ > 0) {
      std::array<epoll_event, kConnections> ready;
      const int count = epoll_wait(poll_, ready.data(), kConnections, kLookMs);
      for (int i = 0; i < count; ++i) {
        Take(*static_cast<Asker*>(ready.at(static_cast<std::size_t>(i)).data.ptr));
      }
      LookAtTheTime();
    }
  }

  const std::map<std::string, Tally>& tallies() const { return tallies_; }

 private:
  void AddAsker(std::int32_t port) {
    askers_.push_back(std::make_unique<Asker>(port));
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.ptr = askers_.back().get();
    epoll_ctl(poll_, EPOLL_CTL_ADD, askers_.back()->client.descriptor(), &event);
  }

  const ListedRequest& RequestOf(const Asker& asker) const { return requests_[asker.request]; }

  // A page that is removed while the service looks at it for somebody else would be served empty.
  // So one that is to be built anew is asked for by one at a time.
  std::size_t NextRequest() {
    std::size_t next = mixture_.Next();
    while (!requests_[next].freshFile.empty() && IsAskedFor(next)) next = mixture_.Next();
    return next;
  }

  bool IsAskedFor(std::size_t request) const {
    return std::any_of(askers_.begin(), askers_.end(), [request](const auto& asker) {
      return asker->waits && asker->request == request;
    });
  }

  void AskNext(Asker& asker) {
    if (left_ == 0) return;
    --left_;
    asker.request = NextRequest();
    const ListedRequest& request = RequestOf(asker);
    MakeReady(request);
    asker.client.Ask(request.text);
    asker.askedAt = SteadyClock::now();
    asker.waits = true;
    ++waiting_;
    ++tallies_[request.kind].asked;
  }

  void Take(Asker& asker) {
    asker.client.Receive();
    if (asker.client.closed()) throw std::runtime_error("the service closed a connection");
    if (asker.client.HasWholeAnswer()) End(asker, IsExpected(asker));
  }

  void End(Asker& asker, bool isExpected) {
    if (!isExpected) NoteOdd(asker);
    if (!asker.waits) return;  // odd: something came behind the answer
    asker.waits = false;
    --waiting_;
    AskNext(asker);
  }

  bool IsExpected(const Asker& asker) {
    if (!asker.waits || !asker.client.HasRightAnswer()) return false;
    const Expected expected = RequestOf(asker).expected;
    if (expected != Expected::kSame) return expected == Expected::kPage;
    std::string& first = first_[asker.request];
    if (first.empty()) first = asker.client.received();
    return first == asker.client.received();
  }

  void NoteOdd(const Asker& asker) {
    const ListedRequest& request = RequestOf(asker);
    if (tallies_[request.kind].odd++ > 0) return;
    fmt::print(stderr, "an odd answer of {} bytes to '{}'\n", asker.client.received().size(),
               request.text);
  }

  // Looks at all of them, but not behind each answer.
  void LookAtTheTime() {
    const SteadyClock::time_point now = SteadyClock::now();
    if (now < nextLook_) return;
    nextLook_ = now + std::chrono::milliseconds(kLookMs);
    for (const auto& asker : askers_) {
      if (!asker->waits) continue;
      const bool isSilent = RequestOf(*asker).expected == Expected::kNothing;
      if (isSilent && now - asker->askedAt > kSilence) {
        End(*asker, true);
      } else if (now - asker->askedAt > kPatience) {
        throw std::runtime_error("no answer to '" + RequestOf(*asker).text + "'");
      }
    }
  }

  std::vector<ListedRequest> requests_;
  std::vector<std::string> first_;  // answer to each of them
  Mixture mixture_;
  std::uint64_t left_;
  int waiting_ = 0;
  int poll_;
  SteadyClock::time_point nextLook_;
  std::vector<std::unique_ptr<Asker>> askers_;
  std::map<std::string, Tally> tallies_;
};

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 5) {
    fmt::print(stderr, "usage: mixed_requests PORT COUNT LIST SEED\n");
    return 2;
  }
  try {
    const SteadyClock::time_point start = SteadyClock::now();
    Load load(std::stoi(arguments[1]), std::stoull(arguments[2]), arguments[3],
              std::stoull(arguments[4]));
    load.Run();
    for (const auto& [kind, tally] : load.tallies()) {
      fmt::print("kind {} {} {}\n", kind, tally.asked, tally.odd);
    }
    const std::chrono::duration<double> length = SteadyClock::now() - start;
    fmt::print("seconds {:.1f}\n", length.count());
  } catch (const std::exception& failure) {
    fmt::print(stderr, "mixed_requests: {}\n", failure.what());
    return 1;
  }
  return 0;
}
