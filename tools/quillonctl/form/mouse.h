// Clicks. A terminal reports them as escape sequences among the keys.
#pragma once

#include <optional>

namespace quillon {

// A place on the screen, or in a window; the first row and column are 0.
struct Place {
  int column = 0;
  int row = 0;
};

// What came with an escape.
struct EscapeInput {
  bool isKey = false;          // nothing did: the key itself was pressed
  std::optional<Place> click;  // of the left button
};

// Reads what came with the escape that the form has just handed out.
EscapeInput ReadBehindEscape();

}  // namespace quillon
