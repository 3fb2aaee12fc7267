// Signals in, notices out.
#include "platform/service_host.h"

#include <algorithm>
#include <csignal>
#include <utility>

#include "platform/failure.h"

namespace quillon {

ServiceHost::ServiceHost(EventLoop& loop, const Clock& clock) : loop_(loop), clock_(clock) {}

void ServiceHost::RunService(const ServiceHostEvents& events) {
  events_ = events;
  std::signal(SIGPIPE, SIG_IGN);  // a closed standard error must not end the service
  RaiseOnSignals();
  FeedWatchdog();
  loop_.Post([this] { events_.State(ServiceState::kStart); });
  loop_.Run();
}

void ServiceHost::RaiseOnSignals() {
  for (const int signal : {SIGTERM, SIGINT}) {
    loop_.OnSignal(signal, [this] {
      stopAsked_ = true;
      events_.State(ServiceState::kStop);
    });
  }
  loop_.OnSignal(SIGTSTP, [this] {
    pauseAsked_ = true;
    events_.State(ServiceState::kPause);
  });
  loop_.OnSignal(SIGCONT, [this] {
    if (!std::exchange(pauseAsked_, false) || stopAsked_) return;
    events_.State(ServiceState::kResume);
  });
}

// The sign of life is that the loop comes round, so a handler that keeps the thread for good
// is found out. The timer feeds nothing: it only wakes an idle loop.
void ServiceHost::FeedWatchdog() {
  const auto period = notices_.WatchdogPeriod();
  if (!period) return;
  constexpr int kSignsInAPeriod = 4;
  const auto interval = std::max(*period / kSignsInAPeriod, std::chrono::milliseconds(1));
  lastFed_ = clock_.TickMs();
  watchdogTimer_ = loop_.Every(interval, [] {});
  loop_.OnTurn([this, interval] {
    if (clock_.TickMs() - lastFed_ < interval.count()) return;
    lastFed_ = clock_.TickMs();
    Tell("WATCHDOG=1");
  });
}

void ServiceHost::ReportReady(const std::string& status) {
  Tell("READY=1\nSTATUS=" + status);
}

void ServiceHost::ReportStatus(const std::string& status) {
  Tell("STATUS=" + status);
}

void ServiceHost::ReportStopping() {
  Tell("STOPPING=1");
}

void ServiceHost::Tell(const std::string& notice) {
  try {
    notices_.Send(notice);
  } catch (const SocketFailure& failure) {
    if (!events_.Error) return;
    loop_.Post([this, code = static_cast<int>(failure.code()), text = std::string(failure.what())] {
      events_.Error(code, text);
    });
  }
}

}  // namespace quillon
