// frmQuillonWeb as a window: where each control stands, and what is done with it.
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "quillonctl/form/contents.h"
#include "quillonctl/form/fields.h"
#include "quillonctl/form/window.h"

namespace quillon {

class FormWindow {
 public:
  // The smallest screen on which there is room for it.
  static constexpr Size kSmallestScreen{80, 24};

  FormWindow(Size screen, const Contents& contents);

  void ShowForm(const Contents& contents);
  void ShowMessage(const std::string& message);
  void MoveTo(Control control);
  // Where something will stand above it.
  void Draw() { window_.Draw(); }
  // Takes over what the operator has put in.
  void Store(Contents& contents) const;

  // Waits. What was clicked is done: only buttons are told of, by their control.
  WindowInput::Kind Wait(int watched);
  std::optional<Control> pressed() const { return pressed_; }

 private:
  void AddFrames();
  void ListControls();
  void TakeClick(const WindowInput& input);
  std::optional<Control> ControlOf(Component component) const;
  Component ComponentOf(Control control) const;

  Window window_;
  CheckBox chkDebugMode_;
  ChoiceList cboDatumFormat_;
  ChoiceList cboColorTheme_;
  Button cmdApplyChanges_;
  CheckBox chkEnabled_;
  TextField txtIpAddr_;
  TextField txtListeningPort_;
  ChoiceList cboCharSet_;
  TextPane txtStatus_;
  Button cmdRead_;
  Button cmdSave_;
  Button exit_;
  Button cmdImport_;
  Button cmdAutoCreate_;
  Button cmdMailCreate_;
  Button cmdSetRepDate_;
  TextField txtRepDate_;
  TextPane message_;
  std::vector<std::pair<Control, Component>> controls_;
  std::optional<Control> pressed_;
};

}  // namespace quillon
