// The screen is built anew whenever the terminal has changed: the library keeps to the size that it
// found. What it shows stands in the contents meanwhile.
#include "quillonctl/form/screen.h"

#include <csignal>

namespace quillon {
namespace {

constexpr const char* kEnlarge = "The terminal is too small: 80x24 is needed";

bool HasRoom(Size screen) {
  return screen.columns >= FormWindow::kSmallestScreen.columns &&
         screen.rows >= FormWindow::kSmallestScreen.rows;
}

}  // namespace

Screen::Screen(const Watches& watches) : watches_(watches) {
  Build();
}

Size Screen::TerminalSize() const {
  return {terminal_->columns(), terminal_->rows()};
}

void Screen::Build() {
  terminal_.emplace();
  const Size screen = TerminalSize();
  if (!HasRoom(screen)) {
    tooSmall_.emplace(Size{screen.columns, 1}, screen, "");
    tooSmall_->AddLine({0, 0}, kEnlarge);
    return;
  }
  form_.emplace(screen, contents_);
  if (box_) OpenBox();
}

void Screen::OpenBox() {
  form_->Draw();
  messageBox_.emplace(TerminalSize(), box_->title, box_->text);
}

void Screen::TearDown() {
  if (form_) form_->Store(contents_);
  messageBox_.reset();
  form_.reset();
  tooSmall_.reset();
  terminal_.reset();
}

void Screen::Rebuild() {
  TearDown();
  Build();
}

void Screen::Stop() {
  TearDown();
  StopUntilContinued();
  Build();
}

void Screen::CloseBox() {
  messageBox_.reset();
  box_.reset();
}

void Screen::ShowForm(const ConsoleForm& form) {
  contents_.form = form;
  if (form_) form_->ShowForm(contents_);
}

void Screen::ShowMessage(const std::string& message) {
  contents_.message = message;
  if (form_) form_->ShowMessage(message);
}

void Screen::MoveTo(Control control) {
  contents_.current = control;
  if (form_) form_->MoveTo(control);
}

void Screen::ShowBox(const std::string& title, const std::string& text) {
  box_ = Box{title, text};
  if (form_) OpenBox();
}

ScreenInput Screen::Wait() {
  while (true) {
    const WindowInput::Kind kind = WaitForWindow();
    const bool goesOn = kind != WindowInput::Kind::kLost && kind != WindowInput::Kind::kLeft;
    if (!TakeSignals() || !goesOn) return {ScreenInput::Kind::kLeft};
    if (form_) form_->Store(contents_);
    if (kind == WindowInput::Kind::kWoken) return {ScreenInput::Kind::kWoken};
    if (messageBox_) {
      CloseBox();
    } else if (form_ && form_->pressed()) {
      return {ScreenInput::Kind::kPressed, *form_->pressed()};
    }
  }
}

WindowInput::Kind Screen::WaitForWindow() {
  const int watched = watches_.descriptor();
  if (messageBox_) return messageBox_->Wait(watched);
  return form_ ? form_->Wait(watched) : tooSmall_->Wait(watched).kind;
}

// False where one of them ends the console.
bool Screen::TakeSignals() {
  bool changed = false;
  while (const auto signal = watches_.NextSignal()) {
    if (*signal != SIGWINCH && *signal != SIGCONT && *signal != SIGTSTP) return false;
    if (*signal == SIGTSTP) {
      Stop();
    } else {
      changed = true;
    }
  }
  if (changed) Rebuild();
  return true;
}

}  // namespace quillon
