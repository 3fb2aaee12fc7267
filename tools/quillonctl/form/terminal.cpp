// Setting the terminal up and back.
#include "quillonctl/form/terminal.h"

#include <newt.h>
#include <slang.h>

#include <csignal>
#include <cstdlib>
#include <string>

#include "platform/failure.h"

namespace quillon {
namespace {

// Clicks are reported, with positions in decimal; and no longer.
constexpr const char* kMouseOn = "\033[?1000h\033[?1006h";
constexpr const char* kMouseOff = "\033[?1006l\033[?1000l";

void Send(const char* sequence) {
  SLtt_write_string(const_cast<char*>(sequence));
  SLtt_flush_output();
}

// Asked first, since the library ends the process where it does not know the terminal.
void CheckKind() {
  if (SLtt_initialize(nullptr) == 0) return;
  const char* kind = std::getenv("TERM");
  throw Failure("the form cannot be shown on a terminal of the kind \"" +
                std::string(kind == nullptr ? "" : kind) + "\"");
}

}  // namespace

Terminal::Terminal() {
  CheckKind();
  if (newtInit() != 0) throw Failure("the form cannot be shown on this terminal");
  // Ctrl-Z as a signal: the library would wait for another key behind it.
  SLtty_set_suspend_state(1);
  newtCls();
  newtGetScreenSize(&columns_, &rows_);
  Send(kMouseOn);
}

Terminal::~Terminal() {
  Send(kMouseOff);
  newtFinished();
}

void StopUntilContinued() {
  sigset_t stop{};
  sigset_t before{};
  sigemptyset(&stop);
  sigaddset(&stop, SIGTSTP);
  raise(SIGTSTP);
  sigprocmask(SIG_UNBLOCK, &stop, &before);  // here it stops
  sigprocmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace quillon
