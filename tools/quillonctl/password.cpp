// Reading it byte by byte, so that nothing behind its line is taken.
#include "quillonctl/password.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <iostream>

#include "platform/failure.h"

namespace quillon {
namespace {

constexpr std::size_t kLongestPassword = 1000;

// The echo of the terminal at standard input is off while this lives; its line ends are shown.
class SilentTerminal {
 public:
  SilentTerminal() {
    tcgetattr(STDIN_FILENO, &before_);
    termios silent = before_;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    silent.c_lflag |= ECHONL;
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
  }
  ~SilentTerminal() { tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_); }
  SilentTerminal(const SilentTerminal&) = delete;
  SilentTerminal& operator=(const SilentTerminal&) = delete;

 private:
  termios before_{};
};

// The signals that end the program, or would stop it with the echo off, wait in a descriptor while
// this lives. Those that end it do so at the end, unless it was started to ignore them.
class HeldSignals {
 public:
  HeldSignals() {
    sigemptyset(&held_);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP}) sigaddset(&held_, signal);
    sigprocmask(SIG_BLOCK, &held_, &before_);
    descriptor_ = signalfd(-1, &held_, SFD_CLOEXEC | SFD_NONBLOCK);
  }
  ~HeldSignals() {
    close(descriptor_);
    if (ending_ != 0) raise(ending_);
    sigprocmask(SIG_SETMASK, &before_, nullptr);
  }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

  // Waits until there is input. False where a signal that ends the program comes first. A stop is
  // passed over: there is nothing on the screen to come back to.
  bool WaitForInput() {
    while (ending_ == 0) {
      std::array<pollfd, 2> awaited = {pollfd{STDIN_FILENO, POLLIN, 0},
                                       pollfd{descriptor_, POLLIN, 0}};
      poll(awaited.data(), awaited.size(), -1);
      TakeSignal();
      if (ending_ == 0 && awaited[0].revents != 0) return true;
    }
    return false;
  }

 private:
  void TakeSignal() {
    signalfd_siginfo signal{};
    if (read(descriptor_, &signal, sizeof signal) != sizeof signal) return;
    if (signal.ssi_signo != SIGTSTP) ending_ = static_cast<int>(signal.ssi_signo);
  }

  sigset_t held_{};
  sigset_t before_{};
  int descriptor_ = -1;
  int ending_ = 0;
};

// The next byte of standard input; nothing at its end, with a failure of the input for an end.
bool TakeByte(char& byte) {
  ssize_t count = 0;
  do {
    count = read(STDIN_FILENO, &byte, 1);
  } while (count < 0 && errno == EINTR);
  return count == 1;
}

// `mayRead` waits for a byte, and tells whether one is to be read. What was typed before it says no
// is no password.
template <typename MayRead>
std::string TakeFirstLine(const MayRead& mayRead) {
  std::string line;
  char byte = 0;
  while (mayRead()) {
    if (!TakeByte(byte)) {
      if (line.empty()) break;
      return line;
    }
    if (byte == '\n') return line;
    line += byte;
    if (line.size() > kLongestPassword) throw Failure("the password is too long");
  }
  throw Failure("no password was given");
}

std::string AskOnTerminal() {
  HeldSignals signals;
  const SilentTerminal silent;
  std::cerr << "Password of the mail account (nothing removes it): " << std::flush;
  return TakeFirstLine([&] { return signals.WaitForInput(); });
}

}  // namespace

std::string AskPassword() {
  if (isatty(STDIN_FILENO) == 1) return AskOnTerminal();
  return TakeFirstLine([] { return true; });
}

}  // namespace quillon
