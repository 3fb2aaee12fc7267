// A window with a text and a button above the form.
#pragma once

#include <string>

#include "quillonctl/form/fields.h"
#include "quillonctl/form/window.h"

namespace quillon {

class MessageBox {
 public:
  MessageBox(Size screen, const std::string& title, const std::string& text);

  // Waits. The button and a key that leaves both are kPressed: the box has been read.
  WindowInput::Kind Wait(int watched);

 private:
  Window window_;
  Button ok_;
};

}  // namespace quillon
