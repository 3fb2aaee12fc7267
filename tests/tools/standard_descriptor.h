// Standard input or output of the test process, for a scope.
#pragma once

#include <unistd.h>

namespace quillon {

// While this lives, the descriptor is another one, or closed.
class StandardDescriptor {
 public:
  explicit StandardDescriptor(int number) : number_(number), before_(dup(number)) {
    close(number_);
  }
  // Takes the other one over.
  StandardDescriptor(int number, int other) : number_(number), before_(dup(number)) {
    dup2(other, number_);
    close(other);
  }
  ~StandardDescriptor() {
    dup2(before_, number_);
    close(before_);
  }
  StandardDescriptor(const StandardDescriptor&) = delete;
  StandardDescriptor& operator=(const StandardDescriptor&) = delete;

 private:
  int number_;
  int before_;
};

}  // namespace quillon
