// What the form waits for beside the keyboard: signals, and the answer of the service.
#pragma once

#include <sys/signalfd.h>

#include <csignal>
#include <optional>

namespace quillon {

class Watches {
 public:
  // From here on the signals that end, stop or resize the form interrupt nothing: they wait to be
  // taken. When it goes they do again what they did before.
  Watches();
  ~Watches();
  Watches(const Watches&) = delete;
  Watches& operator=(const Watches&) = delete;

  // Readable when something has come: one descriptor for everything.
  int descriptor() const { return everything_; }

  // The next signal that has come; none where none has.
  std::optional<int> NextSignal() const;

  // Has `descriptor` become readable when that one is.
  void Follow(int descriptor) const;
  void Forget(int descriptor) const;

 private:
  sigset_t before_{};
  int signals_ = -1;
  int everything_ = -1;
};

}  // namespace quillon
