// A window in the middle of the screen with controls in it, and the wait for what the operator does
// there. What its controls hold is the affair of fields.h.
#pragma once

#include <string>
#include <vector>

#include "quillonctl/form/mouse.h"

struct newtComponent_struct;

namespace quillon {

// A control on the screen. It lives as long as its window.
using Component = newtComponent_struct*;

// What ended a wait.
struct WindowInput {
  enum class Kind {
    kPressed,  // `component`, a button
    kClicked,  // `component`, in the row that begins at `row` on the screen
    kLeft,     // by a key that leaves
    kWoken,    // by what is watched
    kLost      // the terminal has gone
  };

  Kind kind = Kind::kWoken;
  Component component = nullptr;
  Place row;
};

// Size or place in columns and rows; places of controls count from the window's inner corner.
struct Size {
  int columns = 0;
  int rows = 0;
};

class Window {
 public:
  // `size` without the border, on a screen of that size.
  Window(Size size, Size screen, const std::string& title);
  ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  // Adds a control; the keys go from one to the next in this order.
  Component Add(Component component);
  void AddLabel(Place place, const char* text);
  // A label in a window without a control, which holds the cursor: somebody has to.
  void AddLine(Place place, const char* text);
  void AddFrame(Place place, Size size, const char* caption);

  // The control that has the cursor.
  Component Current() const;
  void SetCurrent(Component component);

  // Draws the window where it is not waited in at once.
  void Draw();

  // Draws the window and waits. Readiness of the descriptor is one of the ends.
  WindowInput Wait(int watched);

 private:
  WindowInput AtEscape();
  Component Under(Place place) const;

  Component form_;
  Place origin_;  // on the screen
  std::vector<Component> components_;
};

}  // namespace quillon
