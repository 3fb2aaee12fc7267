// The program quillonctl, started as an operator starts it, on an installation of the test's own.
// No service runs there.
#pragma once

#include <fmt/format.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "tools/quillondb_fixture.h"

namespace quillon {

// The installation is made by CreateWhole or CreateWithDemo, and is in home_.
class Quillonctl : public Quillondb {
 protected:
  // Runs the program on the installation. `input` is its standard input, which is no terminal, as
  // its outputs are none.
  Outcome Run(const std::string& arguments, const std::string& input = {}) const {
    return RunAnywhere(fmt::format("-C '{}' {}", home_.string(), arguments), input);
  }

  // The same with these arguments alone: the installation is whatever they say.
  Outcome RunAnywhere(const std::string& arguments, const std::string& input = {}) const {
    const std::string in = (root_ / "in").string();
    const std::string out = (root_ / "out").string();
    const std::string error = (root_ / "error").string();
    std::ofstream(in) << input;
    const int status = std::system(
        fmt::format("'{}' {} <'{}' >'{}' 2>'{}'", QUILLONCTL_PATH, arguments, in, out, error)
            .c_str());
    return {WEXITSTATUS(status), Content(out), Content(error)};
  }
};

}  // namespace quillon
