// A client that does all right: one connection, which asks for one page again and again, at a
// steady pace, and takes each answer at once.
//
//   honest_client PORT URL SECONDS RATE   so many requests a second
//   honest_client PORT URL SECONDS 0      the next one when the last one is answered
//
// Prints "answers <number>", and "median", "p99" and "worst" in microseconds. With a rate they
// count from the moment at which the request was due: a stall then shows in all that it held up.
// Fails where an answer is missing, or is another one than the first.
#include <fmt/core.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "endurance/client.h"

namespace {

using namespace quillon;
using SteadyClock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kRest{50};  // without a rate, behind each answer

class Honest {
 public:
  Honest(std::int32_t port, const std::string& url, int rate)
      : client_(port),
        request_("GET /" + url + " HTTP/1.1\r\nHost: quillon\r\n\r\n"),
        pace_(rate > 0 ? SteadyClock::duration(std::chrono::seconds(1)) / rate
                       : SteadyClock::duration(0)) {
    first_ = Answer();
  }

  // The times of all answers, shortest first.
  std::vector<SteadyClock::duration> AskFor(std::chrono::seconds length) {
    std::vector<SteadyClock::duration> times;
    const SteadyClock::time_point start = SteadyClock::now();
    for (SteadyClock::time_point due = start; due < start + length; due = NextDue(due)) {
      std::this_thread::sleep_until(due);
      if (Answer() != first_) throw std::runtime_error("an answer is not the first one");
      times.push_back(SteadyClock::now() - due);
    }
    std::sort(times.begin(), times.end());
    return times;
  }

 private:
  const std::string& Answer() {
    client_.Ask(request_);
    client_.ReceiveAnswer();
    if (!client_.HasRightAnswer()) throw std::runtime_error("a request was not answered");
    return client_.received();
  }

  SteadyClock::time_point NextDue(SteadyClock::time_point due) const {
    return pace_.count() > 0 ? due + pace_ : SteadyClock::now() + kRest;
  }

  Client client_;
  std::string request_;
  SteadyClock::duration pace_;
  std::string first_;
};

void Print(const char* name, SteadyClock::duration time) {
  fmt::print("{} {:.0f}\n", name, std::chrono::duration<double, std::micro>(time).count());
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 5) {
    fmt::print(stderr, "usage: honest_client PORT URL SECONDS RATE\n");
    return 2;
  }
  try {
    Honest client(std::stoi(arguments[1]), arguments[2], std::stoi(arguments[4]));
    const auto times = client.AskFor(std::chrono::seconds(std::stoi(arguments[3])));
    if (times.empty()) throw std::runtime_error("nothing was asked");
    fmt::print("answers {}\n", times.size());
    Print("median", times[times.size() / 2]);
    Print("p99", times[times.size() * 99 / 100]);
    Print("worst", times.back());
  } catch (const std::exception& failure) {
    fmt::print(stderr, "honest_client: {}\n", failure.what());
    return 1;
  }
  return 0;
}
