// Signals as a descriptor, and one descriptor above all others. The form can watch new ones, but
// never lets go of one.
#include "quillonctl/form/watches.h"

#include <sys/epoll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "platform/failure.h"

namespace quillon {
namespace {

constexpr std::array kSignals = {SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGTSTP, SIGCONT, SIGWINCH};

sigset_t SignalSet() {
  sigset_t set{};
  sigemptyset(&set);
  for (const int signal : kSignals) sigaddset(&set, signal);
  return set;
}

int Made(int descriptor) {
  if (descriptor >= 0) return descriptor;
  throw Failure(std::string("cannot wait for events: ") + std::strerror(errno));
}

}  // namespace

Watches::Watches() {
  const sigset_t set = SignalSet();
  signals_ = Made(signalfd(-1, &set, SFD_NONBLOCK | SFD_CLOEXEC));
  everything_ = Made(epoll_create1(EPOLL_CLOEXEC));
  sigprocmask(SIG_BLOCK, &set, &before_);
  Follow(signals_);
}

Watches::~Watches() {
  // What has come meanwhile was the form's business.
  while (NextSignal()) continue;
  sigprocmask(SIG_SETMASK, &before_, nullptr);
  close(everything_);
  close(signals_);
}

std::optional<int> Watches::NextSignal() const {
  signalfd_siginfo info{};
  if (read(signals_, &info, sizeof info) != sizeof info) return std::nullopt;
  return static_cast<int>(info.ssi_signo);
}

void Watches::Follow(int descriptor) const {
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.fd = descriptor;
  epoll_ctl(everything_, EPOLL_CTL_ADD, descriptor, &event);
}

void Watches::Forget(int descriptor) const {
  epoll_ctl(everything_, EPOLL_CTL_DEL, descriptor, nullptr);
}

}  // namespace quillon
