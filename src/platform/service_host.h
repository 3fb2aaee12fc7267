// The service manager's side of the process: what it asks for arrives as states, what it
// wants to know leaves as notices. Under systemd both are there; in a terminal the signals
// alone are.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/service_notices.h"

namespace quillon {

// What the service manager asks for.
enum class ServiceState { kStop = 0, kPause = 1, kStart = 2, kResume = 3 };

// Both run as events on the loop.
struct ServiceHostEvents {
  std::function<void(ServiceState state)> State;
  std::function<void(int code, const std::string& description)> Error;
};

class ServiceHost {
 public:
  ServiceHost(EventLoop& loop, const Clock& clock);

  // Hands the process over to the loop until its end. The start state is the first event.
  // SIGTERM and SIGINT are the stop, SIGTSTP is the pause, and a SIGCONT after it the resume;
  // one that follows no pause, as the service manager sends with every stop, is ignored.
  void RunService(const ServiceHostEvents& events);

  // Tells the service manager how far the service is, each with a line that its status shows.
  void ReportReady(const std::string& status);
  void ReportStatus(const std::string& status);
  void ReportStopping();

 private:
  void RaiseOnSignals();
  void FeedWatchdog();
  void Tell(const std::string& notice);

  EventLoop& loop_;
  const Clock& clock_;
  ServiceNotices notices_;
  ServiceHostEvents events_;
  std::unique_ptr<EventLoop::Timer> watchdogTimer_;
  std::int64_t lastFed_ = 0;  // ms of the clock's tick
  bool pauseAsked_ = false;   // a resume may follow
  bool stopAsked_ = false;
};

}  // namespace quillon
