// The console from its first screen to its last.
#include "quillonctl/form/console.h"

#include <unistd.h>

#include <clocale>
#include <iostream>

#include "exit_codes.h"
#include "platform/failure.h"
#include "quillonctl/form/form_actions.h"
#include "quillonctl/form/screen.h"
#include "quillonctl/form/watches.h"

namespace quillon {
namespace {

// The caption of a job that is left behind; empty where there is none.
std::string RunForm(const std::string& directory) {
  const Watches watches;
  Screen screen(watches);
  FormActions actions(directory, watches, screen);
  actions.Begin();
  while (true) {
    const ScreenInput input = screen.Wait();
    const bool isPressed = input.kind == ScreenInput::Kind::kPressed;
    const bool isExit = isPressed && input.button == Control::kExit;
    if (isExit || input.kind == ScreenInput::Kind::kLeft) return actions.RunningCaption();
    if (isPressed) {
      actions.Press(input.button);
    } else {
      actions.TakeAnswer();
    }
  }
}

}  // namespace

int RunConsole(const std::string& directory) {
  if (isatty(STDIN_FILENO) == 0 || isatty(STDOUT_FILENO) == 0) {
    throw Failure("the form needs a terminal");
  }
  // The texts are UTF-8, and so is every terminal of today, whatever the environment says.
  std::setlocale(LC_CTYPE, "C.UTF-8");
  const std::string job = RunForm(directory);
  if (!job.empty()) std::cout << job << " goes on in the service\n";
  return kExitDone;
}

}  // namespace quillon
