// Connects and breaks off, again and again: eight clients at once, each of whom leaves at another
// point of its request or of the answer to it. Behind them an honest client asks for a page on its
// own connection, which none of that may disturb.
//
//   aborted_connections PORT COUNT LIST SEED
//
// LIST is a file of request_list.h; what cannot be cut in its line and behind it is left out, and
// the first one of the rest is the request of the honest client. Prints "way <name> <connections>"
// for each way to leave. Fails where the honest client loses its answer or its connection, or one
// that only ended its sending does not get all of its page.
#include <fmt/core.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "endurance/client.h"
#include "endurance/request_list.h"

namespace {

using namespace quillon;

constexpr std::string_view kLineEnd = "\r\n";
constexpr int kAtOnce = 8;  // twice as many may be open until the service has seen all of them go

using Dice = std::mt19937_64;

std::size_t Within(Dice& dice, std::size_t least, std::size_t most) {
  return std::uniform_int_distribution<std::size_t>(least, most)(dice);
}

// One with something in its line and behind it, so that it can be cut in both.
bool HasTwoParts(const ListedRequest& request) {
  const std::size_t line = request.text.find(kLineEnd);
  return line != 0 && line != std::string::npos && line + kLineEnd.size() < request.text.size();
}

std::vector<ListedRequest> RequestsToCut(const std::string& list) {
  std::vector<ListedRequest> requests = ReadRequests(list);
  std::erase_if(requests, std::not_fn(HasTwoParts));
  if (requests.empty()) throw std::runtime_error("no request to cut in " + list);
  return requests;
}

// --- what is sent ---------------------------------------------------------------------------

void SendNothing(Client&, const std::string&, Dice&) {}

void EndAtOnce(Client& client, const std::string&, Dice&) {
  client.EndSending();
}

void SendPartOfLine(Client& client, const std::string& request, Dice& dice) {
  client.Send(std::string_view(request).substr(0, Within(dice, 1, request.find(kLineEnd))));
}

void SendPartOfHead(Client& client, const std::string& request, Dice& dice) {
  const std::size_t line = request.find(kLineEnd) + kLineEnd.size();
  client.Send(std::string_view(request).substr(0, Within(dice, line, request.size() - 1)));
}

void SendAll(Client& client, const std::string& request, Dice&) {
  client.Ask(request);
}

void SendAllAndEnd(Client& client, const std::string& request, Dice&) {
  client.Ask(request);
  client.EndSending();
}

// --- what is waited for ---------------------------------------------------------------------

void TakeNothing(Client&) {}

void TakeSome(Client& client) {
  client.Receive();
}

void TakeAll(Client& client) {
  client.ReceiveAnswer();
  if (!client.HasRightAnswer()) throw std::runtime_error("a half closed client got no whole page");
}

void TakeEnd(Client& client) {
  client.Receive();
  if (!client.closed()) throw std::runtime_error("an answer to nothing");
}

struct Way {
  std::string_view name;
  double weight;
  void (*send)(Client& client, const std::string& request, Dice& dice);
  void (*take)(Client& client);
  // Asks for the page that is stored: one that is built with waits does not go out any more to a
  // client who has ended its sending meanwhile.
  bool asksForStored = false;
};

// What is no line fails, and its half second holds up all the others: so it is rare.
constexpr std::array<Way, 7> kWays = {{
    {"without_a_word", 100, SendNothing, TakeNothing},
    {"inside_the_line", 1, SendPartOfLine, TakeNothing},
    {"inside_the_head", 200, SendPartOfHead, TakeNothing},
    {"behind_the_request", 200, SendAll, TakeNothing},
    {"inside_the_answer", 299, SendAll, TakeSome},
    {"half_closed_behind_the_request", 150, SendAllAndEnd, TakeAll, true},
    {"half_closed_without_a_word", 50, EndAtOnce, TakeEnd},
}};

std::discrete_distribution<std::size_t> ChanceOfWays() {
  std::array<double, kWays.size()> weights{};
  for (std::size_t way = 0; way < kWays.size(); ++way) weights.at(way) = kWays.at(way).weight;
  return {weights.begin(), weights.end()};
}

class Aborts {
 public:
  Aborts(std::int32_t port, const std::string& list, std::uint64_t seed)
      : port_(port),
        requests_(RequestsToCut(list)),
        mixture_(requests_, seed),
        dice_(seed),
        honest_(port) {}

  void Run(std::uint64_t count) {
    const std::string page = HonestAnswer();
    for (std::uint64_t done = 0; done < count; done += kAtOnce) {
      Batch();
      if (HonestAnswer() != page) throw std::runtime_error("the honest client got another page");
    }
  }

  const std::array<std::uint64_t, kWays.size()>& counts() const { return counts_; }

 private:
  struct Leaving {
    explicit Leaving(std::int32_t port) : client(port) {}

    Client client;
    std::size_t way = 0;
  };

  void Batch() {
    std::vector<std::unique_ptr<Leaving>> all;
    for (int i = 0; i < kAtOnce; ++i) all.push_back(Begin());
    for (std::unique_ptr<Leaving>& one : all) {
      kWays.at(one->way).take(one->client);
      one.reset();
    }
  }

  std::unique_ptr<Leaving> Begin() {
    auto one = std::make_unique<Leaving>(port_);
    one->way = chance_(dice_);
    ++counts_.at(one->way);
    const Way& way = kWays.at(one->way);
    const ListedRequest& request = requests_[way.asksForStored ? 0 : mixture_.Next()];
    MakeReady(request);
    way.send(one->client, request.text, dice_);
    return one;
  }

  const std::string& HonestAnswer() {
    honest_.Ask(requests_.front().text);
    honest_.ReceiveAnswer();
    if (!honest_.HasRightAnswer()) throw std::runtime_error("the honest client got no answer");
    return honest_.received();
  }

  std::int32_t port_;
  std::vector<ListedRequest> requests_;
  Mixture mixture_;
  Dice dice_;
  std::discrete_distribution<std::size_t> chance_ = ChanceOfWays();
  Client honest_;
  std::array<std::uint64_t, kWays.size()> counts_{};
};

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 5) {
    fmt::print(stderr, "usage: aborted_connections PORT COUNT LIST SEED\n");
    return 2;
  }
  try {
    Aborts aborts(std::stoi(arguments[1]), arguments[3], std::stoull(arguments[4]));
    aborts.Run(std::stoull(arguments[2]));
    for (std::size_t way = 0; way < kWays.size(); ++way) {
      fmt::print("way {} {}\n", kWays.at(way).name, aborts.counts().at(way));
    }
  } catch (const std::exception& failure) {
    fmt::print(stderr, "aborted_connections: {}\n", failure.what());
    return 1;
  }
  return 0;
}
