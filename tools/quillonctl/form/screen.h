// The terminal with all that the console shows on it. It deals with everything that is the
// terminal's alone: other sizes, being stopped and going on.
#pragma once

#include <optional>
#include <string>

#include "quillonctl/form/contents.h"
#include "quillonctl/form/form_window.h"
#include "quillonctl/form/message_box.h"
#include "quillonctl/form/terminal.h"
#include "quillonctl/form/watches.h"

namespace quillon {

struct ScreenInput {
  enum class Kind {
    kPressed,  // `button`
    kWoken,    // by what is watched beside the signals
    kLeft      // by the operator, a signal, or the end of the terminal
  };

  Kind kind = Kind::kWoken;
  Control button = Control::kExit;
};

class Screen {
 public:
  explicit Screen(const Watches& watches);

  // Waits for something that is not the terminal's own affair. What the operator has put in stands
  // in the contents then.
  ScreenInput Wait();

  const Contents& contents() const { return contents_; }

  void ShowForm(const ConsoleForm& form);
  void ShowMessage(const std::string& message);
  void MoveTo(Control control);
  // Shows the text in a box until it has been read. Its title is `title`.
  void ShowBox(const std::string& title, const std::string& text);

 private:
  struct Box {
    std::string title;
    std::string text;
  };

  Size TerminalSize() const;
  void Build();
  void OpenBox();
  void CloseBox();
  void TearDown();
  void Rebuild();
  void Stop();
  WindowInput::Kind WaitForWindow();
  bool TakeSignals();

  const Watches& watches_;
  Contents contents_;
  std::optional<Box> box_;  // to be read
  std::optional<Terminal> terminal_;
  std::optional<FormWindow> form_;        // while there is room for it
  std::optional<Window> tooSmall_;        // while there is none
  std::optional<MessageBox> messageBox_;  // above it
};

}  // namespace quillon
