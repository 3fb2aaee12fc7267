// The message loop on Asio. Nested polling is safe here because the context is made
// without a concurrency hint and is never stopped from inside a pump: a flag of our
// own ends the loop.
#include "platform/event_loop.h"

#include <algorithm>
#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/signal_set.hpp>
#include <asio/steady_timer.hpp>
#include <deque>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "platform/standard_error.h"

namespace quillon {
namespace {

constexpr int kEventsPerPump = 256;  // so that a handler that posts itself cannot hold a pump
constexpr std::chrono::milliseconds kSlice{10};       // the sleep between two pumps of a wait
constexpr std::chrono::milliseconds kPatience{1000};  // of a job that requests hold up

}  // namespace

struct EventLoop::Implementation {
  asio::io_context io;
  asio::executor_work_guard<asio::io_context::executor_type> work = asio::make_work_guard(io);
  std::deque<asio::signal_set> signals;
  std::function<void()> onTurn = [] {};
  std::vector<std::int64_t> jobWaits;  // ticks at which the waits of jobs on the stack should end
  bool inRequest = false;              // what is at work belongs to a request
  int requests = 0;                    // on the stack
  int depth = 0;                       // of them, on top of the last job
  bool quit = false;

  // The handler as an event that is no request, whatever it runs nested on.
  std::function<void()> AsJob(std::function<void()> handler) {
    return [this, handler = std::move(handler)] {
      const ScopedFlag job(inRequest, false);
      const ScopedValue<int> onTop(depth, 0);
      handler();
    };
  }
};

namespace {

// A tick that is due already may still be waiting for its turn when its timer goes, so the
// state outlives the timer and says that it has ended.
class RepeatingTimer : public EventLoop::Timer {
 public:
  RepeatingTimer(asio::io_context& io, std::chrono::milliseconds interval,
                 std::function<void()> handler)
      : state_(std::make_shared<State>(io, interval, std::move(handler))) {
    Arm(state_);
  }
  ~RepeatingTimer() override {
    state_->ended = true;
    state_->timer.cancel();
  }
  RepeatingTimer(const RepeatingTimer&) = delete;
  RepeatingTimer& operator=(const RepeatingTimer&) = delete;

 private:
  struct State {
    State(asio::io_context& io, std::chrono::milliseconds every, std::function<void()> run)
        : interval(every), handler(std::move(run)), timer(io) {}

    std::chrono::milliseconds interval;
    std::function<void()> handler;
    asio::steady_timer timer;
    asio::steady_timer::time_point due = asio::steady_timer::clock_type::now();
    bool ended = false;
  };

  // The next tick is armed before the handler runs: a handler that waits long lets later
  // ticks arrive nested, as a window's timer does. Ticks that were missed do not pile up.
  static void Arm(const std::shared_ptr<State>& state) {
    const auto now = asio::steady_timer::clock_type::now();
    while (state->due <= now) state->due += state->interval;
    state->timer.expires_at(state->due);
    state->timer.async_wait([state](const asio::error_code& error) {
      if (error || state->ended) return;
      Arm(state);
      state->handler();
    });
  }

  std::shared_ptr<State> state_;
};

// Runs one event. Events have error exits of their own; what escapes one all the same ends
// at this event and must not unwind the one below it.
template <typename RunOne>
std::size_t OneEvent(RunOne&& runOne) {
  try {
    return runOne();
  } catch (const std::exception& failure) {
    TellStandardError(std::string("an event failed: ") + failure.what());
    return 1;
  }
}

// The wait of a job, while it is on the stack.
class JobWait {
 public:
  JobWait(std::vector<std::int64_t>& waits, bool isJob, std::int64_t due)
      : waits_(waits), isJob_(isJob) {
    if (isJob_) waits_.push_back(due);
  }
  ~JobWait() {
    if (isJob_) waits_.pop_back();
  }
  JobWait(const JobWait&) = delete;
  JobWait& operator=(const JobWait&) = delete;

 private:
  std::vector<std::int64_t>& waits_;
  bool isJob_;
};

void WaitForSignal(asio::signal_set& set, const std::function<void()>& handler) {
  set.async_wait([&set, handler](const asio::error_code& error, int) {
    if (error) return;
    WaitForSignal(set, handler);
    handler();
  });
}

}  // namespace

EventLoop::EventLoop(Clock& clock)
    : clock_(clock), implementation_(std::make_unique<Implementation>()) {}

EventLoop::~EventLoop() = default;

void EventLoop::Run() {
  try {
    while (!implementation_->quit) {
      OneEvent([this] { return implementation_->io.run_one(); });
      implementation_->onTurn();
    }
  } catch (const LoopEnded&) {
    // A job was left at its wait; its files and rows are whole.
  }
}

void EventLoop::Quit() {
  implementation_->quit = true;
  Post([] {});  // wakes Run
}

void EventLoop::Post(std::function<void()> handler) {
  asio::post(implementation_->io, implementation_->AsJob(std::move(handler)));
}

void EventLoop::Pump() {
  for (int count = 0; count < kEventsPerPump && !implementation_->quit; ++count) {
    if (OneEvent([this] { return implementation_->io.poll_one(); }) == 0) return;
  }
}

void EventLoop::DelayMs(std::int16_t milliseconds) {
  const auto slices = std::chrono::milliseconds(milliseconds) / kSlice;
  const JobWait wait(implementation_->jobWaits, !implementation_->inRequest,
                     clock_.TickMs() + milliseconds);
  for (auto slice = slices; slice > 0; --slice) {
    clock_.Sleep(kSlice);
    Pump();
    implementation_->onTurn();
    if (implementation_->quit) throw LoopEnded{};
  }
}

EventLoop::RequestMark::RequestMark(EventLoop& loop)
    : inRequest_(loop.implementation_->inRequest, true),
      requests_(loop.implementation_->requests, loop.implementation_->requests + 1),
      depth_(loop.implementation_->depth, loop.implementation_->depth + 1) {}

int EventLoop::RequestDepth() const {
  return implementation_->depth;
}

bool EventLoop::InRequest() const {
  return implementation_->inRequest;
}

bool EventLoop::HasRequest() const {
  return implementation_->requests > 0;
}

bool EventLoop::HasOverdueJob() const {
  if (implementation_->jobWaits.empty()) return false;  // without a look at the clock
  const std::int64_t limit = clock_.TickMs() - kPatience.count();
  const auto& waits = implementation_->jobWaits;
  return std::any_of(waits.begin(), waits.end(), [limit](auto due) { return due < limit; });
}

std::unique_ptr<EventLoop::Timer> EventLoop::Every(std::chrono::milliseconds interval,
                                                   std::function<void()> handler) {
  return std::make_unique<RepeatingTimer>(implementation_->io, interval,
                                          implementation_->AsJob(std::move(handler)));
}

void EventLoop::OnSignal(int signal, const std::function<void()>& handler) {
  asio::signal_set& set = implementation_->signals.emplace_back(implementation_->io, signal);
  WaitForSignal(set, implementation_->AsJob(handler));
}

void EventLoop::OnTurn(std::function<void()> handler) {
  implementation_->onTurn = std::move(handler);
}

asio::io_context& EventLoop::io() {
  return implementation_->io;
}

}  // namespace quillon
