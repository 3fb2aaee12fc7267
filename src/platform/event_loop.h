// The one message loop: posted events, timers, signals, and the pumping wait inside
// which other events run nested. The listener hangs its sockets on the same loop.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/clock.h"
#include "platform/scoped_flag.h"

namespace asio {
class io_context;
}

namespace quillon {

// Leaves a handler that waits when the service ends: it is thrown by DelayMs after
// Quit, passes every error exit (it is no std::exception) and ends in Run.
struct LoopEnded {};

class EventLoop {
 public:
  explicit EventLoop(Clock& clock);
  ~EventLoop();
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;

  // Runs events until Quit. Events have error exits of their own; an exception that escapes
  // one ends at that event, with a line on standard error.
  void Run();

  // Ends Run, and every DelayMs on the stack, as soon as control returns to them.
  void Quit();

  // Runs the handler as an event of its own.
  void Post(std::function<void()> handler);

  // Runs the events that are ready now, at most 256, on top of the caller.
  void Pump();

  // The pumping wait: n / 10 times, rounded down, a sleep of 10 ms and one Pump. Any
  // event may run inside, to its end, requests among them; a caller holds no reference
  // into a container that such an event can change. `milliseconds` is a 16-bit number.
  void DelayMs(std::int16_t milliseconds);

  // What runs while this lives is a request of a client. Everything else - the start, the stop, a
  // tick and its jobs - has precedence over requests: see HasOverdueJob.
  class RequestMark {
   public:
    explicit RequestMark(EventLoop& loop);

   private:
    ScopedFlag inRequest_;
    ScopedValue<int> requests_;
    ScopedValue<int> depth_;
  };

  // How many requests are nested on one another: on top of the last job, where one is on the stack.
  // Those below it have to wait for its end.
  int RequestDepth() const;

  // True in what runs on behalf of a client: a request, and what it calls.
  bool InRequest() const;

  // True while a request is on the stack, whatever runs on top of it.
  bool HasRequest() const;

  // True while a wait outside of all requests has been lasting a second longer than it should,
  // since requests nest on it. Whoever takes requests in holds them back meanwhile: else
  // clients that never pause could keep a job from ever going on.
  bool HasOverdueJob() const;

  // Calls the handler every `interval` from now on, until the returned timer goes, which
  // it may do inside a tick. A tick that falls due while the thread is busy comes once, late, and
  // not in a burst.
  class Timer {
   public:
    virtual ~Timer() = default;
  };
  std::unique_ptr<Timer> Every(std::chrono::milliseconds interval, std::function<void()> handler);

  // Calls the handler on each delivery of the signal, as an event.
  void OnSignal(int signal, const std::function<void()>& handler);

  // Calls the handler whenever the loop has come round: after each event of Run and each slice
  // of a wait. It stays silent while one event keeps the thread.
  void OnTurn(std::function<void()> handler);

  // For the sockets, which live on the same loop.
  asio::io_context& io();

 private:
  struct Implementation;
  Clock& clock_;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace quillon
