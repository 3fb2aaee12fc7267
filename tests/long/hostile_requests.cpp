// Requests by the rules of a grammar, sent in pieces that are cut at random places, by some clients
// at once: the server takes each piece for a request. However it is asked, what it sends is made of
// whole answers, and whoever asks for the default page gets it.
//
//   hostile_requests COUNT SEED         to a site of this process, whose waits cost nothing
//   hostile_requests COUNT SEED PORT    to the service that listens on that port of the loopback
//
// Prints what it sent and how long that took. The exit status is 1 where anything else came back.
#include <fmt/core.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "hostile_arguments.h"
#include "made_files.h"
#include "network_site.h"
#include "support/hostile_texts.h"
#include "targets.h"
#include "whole_answers.h"

namespace {

using namespace quillon;
using fuzz::Require;

using SteadyClock = std::chrono::steady_clock;

constexpr std::chrono::minutes kPatience{2};  // with an answer; many may wait before it
constexpr std::chrono::seconds kAskAgain{3};  // without one
constexpr int kClients = 9;
constexpr int kRequestsOfAClient = 40;  // about
constexpr std::size_t kMostPieces = 4;
constexpr int kSomeClients = 2;  // send at once
constexpr int kBetweenTidyings = 500;

// --- what is sent -----------------------------------------------------------------------------

class HostileRequests {
 public:
  explicit HostileRequests(unsigned seed) : grammar_(seed), random_(seed) {}

  unsigned Below(std::size_t count) { return static_cast<unsigned>(random_() % count); }

  std::string Next() {
    std::string request = Below(3) == 0 ? Post() : Site::Request(Url());
    if (Below(4) == 0) Damage(request);
    return request;
  }

  // The text in one to kMostPieces parts, none of them empty.
  std::vector<std::string> Cut(const std::string& text) {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    for (unsigned more = Below(kMostPieces); more > 0 && text.size() - start > 1; --more) {
      const std::size_t length = 1 + Below(text.size() - start - 1);
      pieces.push_back(text.substr(start, length));
      start += length;
    }
    pieces.push_back(text.substr(start));
    return pieces;
  }

 private:
  std::string Url() { return Below(8) == 0 ? "DeviceId=" + grammar_.Text() : grammar_.Url(); }

  std::string Post() {
    const auto& [action, body] = kForms[Below(kForms.size())];
    std::string text = fmt::format("POST /{} HTTP/1.1\r\nHost: test\r\n\r\n{}", action, body);
    for (std::size_t place; (place = text.find('#')) != std::string::npos;) {
      text.replace(place, 1, Below(2) == 0 ? "*" : grammar_.Text());
      if (text.size() > Listener::kReadSize / 2) break;  // texts hold the sign themselves
    }
    return text;
  }

  // Changes, doubles or takes away some bytes.
  void Damage(std::string& text) {
    for (unsigned count = Below(8) + 1; count > 0 && !text.empty(); --count) {
      const std::size_t place = Below(text.size());
      switch (Below(3)) {
        case 0:
          text[place] = static_cast<char>(Below(256));
          break;
        case 1:
          text.insert(place, text.substr(place, Below(20)));
          break;
        default:
          text.erase(place, Below(20));
      }
    }
  }

  struct Form {
    std::string_view action;
    std::string_view body;  // with a sign in the place of each value
  };
  static constexpr std::array<Form, 4> kForms = {{
      {"search-mac-ip", "MacIpName=#\r\n"},
      {"search-device-port-name", "DeviceName=#\r\nPortName=#\r\n"},
      {"search-device-port-alias", "DeviceName=#\r\nPortName=#\r\n"},
      {"search-device-disk", "DeviceName=#\r\nDiskName=#\r\nOrderBy=#\r\n"},
  }};

  HostileGrammar grammar_;
  std::mt19937 random_;
};

// --- whom it is sent to -----------------------------------------------------------------------

class Server {
 public:
  Server() = default;
  virtual ~Server() = default;
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  virtual std::int32_t Port() const = 0;
  virtual void LetItWork() = 0;
  // Called behind some hundreds of requests.
  virtual void TidyUp() = 0;
};

class OtherProcess : public Server {
 public:
  explicit OtherProcess(std::int32_t port) : port_(port) {}

  std::int32_t Port() const override { return port_; }
  void LetItWork() override { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }
  void TidyUp() override {}

 private:
  std::int32_t port_;
};

class OwnSite : public Server, private fuzz::NetworkSite {
 public:
  std::int32_t Port() const override { return site.tcpServer.LocalPort(); }
  void LetItWork() override { site.loop.Pump(); }

  void TidyUp() override {
    site.clock.Set("2024-05-02 12:00:00");  // failures wait, and would make it another day
    made_.Remove();
  }

 private:
  fuzz::MadeFiles made_{site.installation};
};

// --- how --------------------------------------------------------------------------------------

class Flood {
 public:
  Flood(Server& server, unsigned seed) : server_(server), requests_(seed), clients_(kClients) {
    RawClient client(server_.Port());
    client.Send(Site::Request(""));
    WaitUntil([&] { return IsWhole(client.ReceivedNow()); }, "no default page");
    defaultPage_ = client.received();
  }

  void Run(int count) {
    for (int sent = 0; sent < count; sent += kSomeClients) {
      SendFromSomeClients();
      if (requests_.Below(kRequestsOfAClient / kSomeClients) == 0) End(AnyClient());
      if (sent % kBetweenTidyings < kSomeClients) TidyUp();
    }
    TidyUp();
  }

  std::size_t bytes() const { return bytes_; }
  int askedAgain() const { return askedAgain_; }

 private:
  using ClientPtr = std::unique_ptr<RawClient>;  // null before it has connected

  struct Sending {
    RawClient& client;
    std::vector<std::string> pieces;
  };

  static bool IsWhole(std::string_view bytes) {
    return !bytes.empty() && fuzz::WholeAnswers(bytes) == bytes.size();
  }

  ClientPtr& AnyClient() { return clients_[requests_.Below(clients_.size())]; }

  // Piece by piece by turns: the server has one of each client to read, and what it does for the
  // one meets the others in its waits.
  void SendFromSomeClients() {
    std::vector<Sending> sendings;
    for (int n = 0; n < kSomeClients; ++n) {
      ClientPtr& client = AnyClient();
      if (client == nullptr) client = std::make_unique<RawClient>(server_.Port());
      sendings.push_back({*client, requests_.Cut(requests_.Next())});
    }
    for (std::size_t turn = 0; turn < kMostPieces; ++turn) {
      for (const auto& [client, pieces] : sendings) {
        if (turn < pieces.size()) client.Send(pieces[turn]);
      }
      server_.LetItWork();
      for (const Sending& sending : sendings) sending.client.Receive();
    }
  }

  // Asks for the default page, waits for it, and looks at all that has come. A text that is read
  // together with the one before it is a part of that, so the page may have to be asked for again.
  void End(ClientPtr& client) {
    if (client == nullptr) return;
    server_.LetItWork();
    const std::size_t before = client->ReceivedNow().size();
    client->Send(Site::Request(""));
    auto asked = SteadyClock::now();
    const auto isAnswered = [&] {
      if (HasDefaultPage(*client, before)) return true;
      if (SteadyClock::now() - asked < kAskAgain) return false;
      client->Send(Site::Request(""));
      asked = SteadyClock::now();
      ++askedAgain_;
      return false;
    };
    WaitUntil(isAnswered, "no default page among the answers");
    bytes_ += client->received().size();
    client.reset();
  }

  bool HasDefaultPage(RawClient& client, std::size_t from) const {
    const std::string& received = client.ReceivedNow();
    Require(!client.closedByServer(), "a connection that was dropped");
    return received.find(defaultPage_, from) != std::string::npos && IsWhole(received);
  }

  void TidyUp() {
    for (ClientPtr& client : clients_) End(client);
    server_.TidyUp();
  }

  void WaitUntil(const std::function<bool()>& condition, const std::string& what) {
    const auto end = SteadyClock::now() + kPatience;
    while (!condition()) {
      Require(SteadyClock::now() < end, what);
      server_.LetItWork();
    }
  }

  Server& server_;
  HostileRequests requests_;
  std::vector<ClientPtr> clients_;
  std::string defaultPage_;
  std::size_t bytes_ = 0;  // of answers
  int askedAgain_ = 0;
};

int Usage() {
  fmt::print(stderr, "usage: hostile_requests COUNT SEED [PORT]\n");
  return 2;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount < 3 || argumentCount > 4) return Usage();
  const auto count = NumberIn(arguments[1]);
  const auto seed = NumberIn(arguments[2]);
  const auto port = NumberIn(argumentCount == 4 ? arguments[3] : "0");
  if (!count || !seed || !port) return Usage();
  try {
    std::unique_ptr<Server> server;
    if (*port == 0) server = std::make_unique<OwnSite>();
    if (*port != 0) server = std::make_unique<OtherProcess>(*port);
    const auto start = SteadyClock::now();
    Flood flood(*server, static_cast<unsigned>(*seed));
    flood.Run(*count);
    const std::chrono::duration<double> took = SteadyClock::now() - start;
    fmt::print(
        "{} hostile requests in {:.0f} s: {} bytes of whole answers, and the default page for each "
        "client behind its own, which {} of them asked for again\n",
        *count, took.count(), flood.bytes(), flood.askedAgain());
    return 0;
  } catch (const std::exception& failure) {
    fmt::print("hostile requests of seed {}: {}\n", *seed, failure.what());
    return 1;
  }
}
