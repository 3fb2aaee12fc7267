// The terminal while a form is on it: its modes, its screen, its mouse.
#pragma once

namespace quillon {

class Terminal {
 public:
  // Takes the terminal over, at the size that it has now. Fails where it is of no known kind.
  Terminal();
  ~Terminal();  // gives it back as it was
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  int columns() const { return columns_; }
  int rows() const { return rows_; }

 private:
  int columns_ = 0;
  int rows_ = 0;
};

// Stops the process as Ctrl-Z does; returns when it goes on. The terminal is its former owner's
// meanwhile, so there must be no Terminal.
void StopUntilContinued();

}  // namespace quillon
